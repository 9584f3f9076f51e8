#include "devicelink/DeviceScan.h"

#include "devicelink/DeviceIdentity.h"
#include "devicelink/SelectedDevice.h"
#include "portwire/portwire.h"
#include "productdata/FirmwareImages.h"
#include "productdata/ModelData.h"

#include <QStringList>

#include <array>

namespace {

constexpr int mostPaths = 5;
/** The interface of the settings, and the product's device number; both fixed since the first receiver. */
constexpr int settingsInterface = 1;
constexpr int settingsDevice = 5;

QStringList asList(const char *const *paths, int count)
{
    QStringList list;
    for (int index = 0; paths && index < qMin(count, mostPaths); ++index) {
        if (paths[index])
            list << QString::fromUtf8(paths[index]);
    }
    return list;
}

QString usbVersion(const QString &path)
{
    std::array<std::uint8_t, 12> attribute{};
    UsbFinderC_GetUsbDeviceAttribute(path.toUtf8().constData(), attribute.data());
    return FirmwareImages::versionText(static_cast<std::uint32_t>(attribute[8] | attribute[9] << 8));
}

} // namespace

QStringList findDefaultPaths(const QString &vid, const QString &pid)
{
    int count = mostPaths;
    const char *const *paths =
        UsbFinderC_FindHidDevicesByDefaultDeviceId(vid.toUtf8().constData(), pid.toUtf8().constData(), &count);
    return asList(paths, count);
}

QStringList findLinkPaths(const QString &vid, const QString &pid)
{
    int count = mostPaths;
    const char *const *paths = UsbFinderC_FindHidDevicesByDeviceId(vid.toUtf8().constData(), pid.toUtf8().constData(),
                                                                   settingsInterface, settingsDevice, &count);
    return asList(paths, count);
}

QList<DeviceAllInfo> findEntries(const PathFinder &finder)
{
    QList<DeviceAllInfo> entries;
    const ModelData::UsbIds ids = ModelData::usbIds();
    const QStringList pids = ids.allPids();
    QStringList seen;
    for (const QString &pid : pids) {
        const QStringList paths = finder(ids.vid, pid);
        for (const QString &path : paths) {
            // A product id that stands in two lists must not show its device twice.
            if (seen.contains(path))
                continue;
            seen << path;
            DeviceAllInfo info;
            info.Path = path;
            info.Vid = ids.vid;
            info.Pid = pid;
            info.UsbVersion = usbVersion(path);
            entries << info;
        }
    }
    return entries;
}

QList<DeviceAllInfo> scanDevices()
{
    QList<DeviceAllInfo> list;
    QList<DeviceAllInfo> entries = findEntries(findLinkPaths);
    for (DeviceAllInfo &entry : entries) {
        const Identity identity = identifyDevice(entry);
        const DeviceAllInfo selected = SelectInfo().get();
        if (selected.Path.isEmpty() || identity != Identity::Known) {
            list << entry;
        } else if (entry.ModelIndex == selected.ModelIndex) {
            if (entry.Path == selected.Path)
                DevicePath().set(entry.Path.toUtf8());
            list << entry;
        }
    }
    return list;
}
