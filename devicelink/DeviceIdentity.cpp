#include "devicelink/DeviceIdentity.h"

#include "devicelink/ReceiverClasses.h"
#include "devicelink/SelectedDevice.h"
#include "portwire/portwire.h"
#include "productdata/ModelData.h"

#include <QDebug>

#include <array>

namespace {

/** A device that was just plugged in may need a few reports before it knows its own ids. */
constexpr int idTries = 10;

std::array<std::uint8_t, 3> readIds(const char *path)
{
    std::array<std::uint8_t, 3> ids{};
    for (int attempt = 0; attempt < idTries && ids[0] == 0 && ids[1] == 0; ++attempt)
        UsbFinderC_GetDeviceInfo(path, ids.data());
    return ids;
}

void takeOverSelection(const DeviceAllInfo &info)
{
    SelectInfo().update([&info](DeviceAllInfo &selected) {
        if (selected.Path != info.Path)
            return;
        const QString mouseVersion = selected.MouseVersion;
        const QString usbVersion = selected.UsbVersion;
        selected = info;
        if (!mouseVersion.isEmpty())
            selected.MouseVersion = mouseVersion;
        if (!usbVersion.isEmpty())
            selected.UsbVersion = usbVersion;
    });
}

} // namespace

bool isKnownModel(const DeviceAllInfo &info) { return info.ModelIndex < ModelData::deviceTotal(); }

bool isCordedClass(std::uint8_t receiverClass) { return receiverRateOf(receiverClass) == 0; }

int receiverRateOf(std::uint8_t receiverClass) { return ReceiverClasses::kindOf(receiverClass).rate; }

void refreshOnline(DeviceAllInfo &info)
{
    std::array<std::uint8_t, 10> answer{};
    UsbFinderC_GetDeviceOnLineWithUsbAddress(info.Path.toUtf8().constData(), answer.data());
    info.Online = answer[6] == 1;
    info.UsbAddress = {answer[7], answer[8], answer[9]};
    info.HasUsbAddress = true;
}

Identity identifyDevice(DeviceAllInfo &info)
{
    const QByteArray path = info.Path.toUtf8();
    const auto [cid, kind, receiverClass] = readIds(path.constData());
    info.IsCorded = isCordedClass(receiverClass);
    info.ModelIndex = ModelData::deviceTotal();
    if (cid == 0 && kind == 0) {
        qWarning() << "a device tells no ids:" << info.Path;
        return Identity::NoAnswer;
    }
    const bool ours = ModelData::companyId() == int{cid};
    const int model = ours ? ModelData::modelIndexOf(kind) : info.ModelIndex;
    if (model == info.ModelIndex)
        return ours ? Identity::OtherModel : Identity::OtherMaker;

    info.Cid = cid;
    info.DeviceKind = kind;
    info.ReceiverClass = receiverClass;
    info.ModelIndex = model;
    const DeviceAllInfo selected = SelectInfo().get();
    if (selected.Path.isEmpty()) {
        info.Online = UsbFinderC_GetDeviceOnLine(path.constData()) != 0;
        return Identity::Known;
    }
    refreshOnline(info);
    if (selected.Path == info.Path)
        takeOverSelection(info);
    return Identity::Known;
}
