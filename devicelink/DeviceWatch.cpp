#include "devicelink/DeviceWatch.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceScan.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/Worker.h"
#include "portwire/portwire.h"
#include "productdata/FirmwareImages.h"
#include "productdata/ModelData.h"

#include <algorithm>

namespace {

/** The mouse that is in use on a receiver, now on its cable: the two show the same address. */
bool isSelectedMouseOnCable(const DeviceAllInfo &entry, const DeviceAllInfo &selected)
{
    const bool hasAddress = selected.HasUsbAddress && selected.UsbAddress != std::array<std::uint8_t, 3>{};
    return !selected.Path.isEmpty() && !selected.IsCorded && hasAddress && entry.ModelIndex == selected.ModelIndex &&
           entry.IsCorded && entry.Online && entry.UsbAddress == selected.UsbAddress;
}

void switchTo(const DeviceAllInfo &entry)
{
    const QByteArray path = entry.Path.toUtf8();
    if (UsbFinderC_GetDeviceOnLine(path.constData())) {
        SelectInfo().set(entry);
        DevicePath().set(path);
    }
    requestConnect();
}

QList<DeviceAllInfo> watched; // GUI thread only

} // namespace

void deviceWatch()
{
    // A device that is written to comes and goes by itself, and each look would hold up the display of its progress for
    // as long as it doesn't answer. Whoever wrote the firmware has the bus looked at when it is over.
    if (FirmwareUnderWay)
        return;
    postMsg()->post(&PostMsg::SigSetver, 4);
    const QList<DeviceAllInfo> list = scanDevices();
    watched = list;
    if (list.isEmpty()) {
        if (HotplugWatchEnabled) {
            SelectInfo().set({});
            postMsg()->post(&PostMsg::SigChangeMainDialog, 0);
        }
        return;
    }
    int others = 0;
    for (const DeviceAllInfo &entry : list) {
        if (isSelectedMouseOnCable(entry, SelectInfo().get()))
            switchTo(entry);
        const QString selectedPath = SelectInfo().get().Path;
        if (!selectedPath.isEmpty() && entry.Path != selectedPath)
            ++others;
    }
    if (others == list.size() && HotplugWatchEnabled) {
        postMsg()->post(&PostMsg::SigChangeMainDialog, 0);
        return; // the chooser scans anew; nothing here is shown any more
    }
    // With the mouse on its cable, the version that could be newer is that of its receiver.
    const DeviceAllInfo selected = SelectInfo().get();
    if (selected.IsCorded)
        offerReceiverUpdate(pairedReceiverVersion(), selected.ModelIndex, updateClass());
}

bool lookForCable()
{
    if (SelectInfo().get().IsCorded)
        return false;
    // By the product id: what doesn't answer tells nothing else of itself.
    const QStringList cables = ModelData::usbIds().usbPids;
    const bool isOne = std::any_of(watched.cbegin(), watched.cend(),
                                   [&cables](const DeviceAllInfo &entry) { return cables.contains(entry.Pid); });
    if (isOne)
        deviceWatch();
    return SelectInfo().get().IsCorded;
}

const QList<DeviceAllInfo> &watchedDevices() { return watched; }

std::optional<DeviceAllInfo> pairedReceiver()
{
    if (watched.size() != 2)
        return {}; // more than one receiver could be that of the mouse
    const auto receiver = std::find_if(watched.cbegin(), watched.cend(), [](const DeviceAllInfo &entry) {
        return entry.HasUsbAddress && !entry.IsCorded;
    });
    return receiver == watched.cend() ? std::nullopt : std::optional<DeviceAllInfo>(*receiver);
}

QString pairedReceiverVersion()
{
    const auto receiver = pairedReceiver();
    return receiver ? receiver->UsbVersion : QString();
}

int updateClass()
{
    const DeviceAllInfo selected = SelectInfo().get();
    if (!selected.IsCorded)
        return receiverRateOf(selected.ReceiverClass);
    const auto receiver = pairedReceiver();
    return receiver ? receiverRateOf(receiver->ReceiverClass) : 0;
}

void offerReceiverUpdate(const QString &version, int modelIndex, int updateClass)
{
    DongleUpdateAvailable =
        FirmwareImages::CheckUpdate(FirmwareImages::receiverRequest(modelIndex, updateClass), version);
    postMsg()->post(&PostMsg::SigLabelTextB, version, DongleUpdateAvailable ? QStringLiteral("true") : QString());
}
