#include "app/ChooserList.h"

#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceScan.h"
#include "productdata/ModelData.h"

#include <algorithm>
#include <map>
#include <utility>

bool DuplicateDevices = false;

namespace {

/** Product ids of the receivers at the last scan: they tell the class of an entry even when its mouse doesn't answer.
 */
QStringList Wireless1Pids;
QStringList Wireless2Pids;
QStringList Wireless4Pids;

} // namespace

QList<DeviceAllInfo> &ChooserDevices()
{
    static QList<DeviceAllInfo> list;
    return list;
}

void ChooserList::scan()
{
    ChooserDevices().clear();
    const ModelData::UsbIds ids = ModelData::usbIds();
    Wireless1Pids = ids.wirelessPids;
    Wireless2Pids = ids.wireless2Pids;
    Wireless4Pids = ids.wireless4Pids;
    if (ModelData::deviceTotal() == 0)
        return;
    QList<DeviceAllInfo> entries = findEntries(findDefaultPaths);
    for (DeviceAllInfo &entry : entries)
        identifyDevice(entry);
    ChooserDevices() = entries;
}

bool ChooserList::hasDuplicates(const QList<DeviceAllInfo> &list)
{
    // Unknown devices are no model: two of them are two pictures, neither of which opens.
    std::map<std::pair<int, int>, int> counts;
    return std::any_of(list.begin(), list.end(), [&counts](const DeviceAllInfo &entry) {
        return isKnownModel(entry) && ++counts[{entry.ModelIndex, receiverKilohertz(entry)}] > 1;
    });
}

void ChooserList::hideReceivers(QList<DeviceAllInfo> &list)
{
    QList<int> cordedModels;
    for (const DeviceAllInfo &entry : std::as_const(list)) {
        if (isKnownModel(entry) && entry.IsCorded)
            cordedModels << entry.ModelIndex;
    }
    list.erase(std::remove_if(list.begin(), list.end(),
                              [&cordedModels](const DeviceAllInfo &entry) {
                                  return !entry.IsCorded && cordedModels.contains(entry.ModelIndex);
                              }),
               list.end());
}

int ChooserList::receiverKilohertz(const DeviceAllInfo &entry)
{
    if (Wireless1Pids.contains(entry.Pid))
        return 1;
    if (Wireless2Pids.contains(entry.Pid))
        return 2;
    if (Wireless4Pids.contains(entry.Pid))
        return 4;
    return 0;
}
