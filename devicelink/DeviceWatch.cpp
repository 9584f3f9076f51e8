#include "devicelink/DeviceWatch.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceScan.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/Worker.h"
#include "portwire/portwire.h"

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
    // With the mouse on its cable, the version that could be newer is that of its receiver. The second text says that a
    // newer firmware lies at hand; no image folder is shipped with this build.
    if (SelectInfo().get().IsCorded)
        postMsg()->post(&PostMsg::SigLabelTextB, pairedReceiverVersion(), QString());
}

QString pairedReceiverVersion()
{
    if (watched.size() != 2)
        return {}; // more than one receiver could be that of the mouse
    const auto receiver = std::find_if(watched.cbegin(), watched.cend(), [](const DeviceAllInfo &entry) {
        return entry.HasUsbAddress && !entry.IsCorded;
    });
    return receiver == watched.cend() ? QString() : receiver->UsbVersion;
}
