#include "productdata/ModelData.h"

#include "platform/Registry.h"
#include "productdata/ConfigStore.h"

#include <QDebug>

namespace {

const QString option = QStringLiteral("Option");

/** No product has had more than a dozen models; a damaged number must not turn into millions of reads. */
constexpr int mostModels = 64;

/** Name of the registry value with the last seen version of a model. */
QString mouseVersionName(int modelIndex)
{
    const ConfigStore *store = ConfigStore::instance();
    return QStringLiteral("MouseVer") + store->value(option, QStringLiteral("CID")) +
           store->value(ModelData::section(modelIndex), QStringLiteral("MID"));
}

} // namespace

const char *const ModelData::registryKey = "HKEY_CURRENT_USER\\Software\\Velko\\Velko\\Mouse Drive Test";
const char *const ModelData::installerKey = "HKEY_CURRENT_USER\\Software\\VelkoA\\Halvarion\\Halvarion";

int ModelData::deviceTotal(const ConfigStore &store)
{
    const int total = store.number(option, QStringLiteral("DeviceTotal"));
    if (total < 0 || total > mostModels) {
        qWarning() << "DeviceTotal is out of range:" << total;
        return qBound(0, total, mostModels);
    }
    return total;
}

std::optional<int> ModelData::companyId(const ConfigStore &store)
{
    bool isNumber = false;
    const int id = store.value(option, QStringLiteral("CID")).toInt(&isNumber);
    if (!isNumber || id < 0 || id > 255)
        return std::nullopt;
    return id;
}

QString ModelData::section(int modelIndex) { return QStringLiteral("Drive") + QString::number(modelIndex + 1); }

int ModelData::modelId(int modelIndex, const ConfigStore &store)
{
    return store.number(section(modelIndex), QStringLiteral("MID"));
}

int ModelData::modelIndexOf(int deviceKind, const ConfigStore &store)
{
    const int total = deviceTotal(store);
    for (int index = 0; index < total; ++index) {
        bool isNumber = false;
        const int kind = store.value(section(index), QStringLiteral("MID")).toInt(&isNumber);
        if (isNumber && kind == deviceKind)
            return index;
    }
    return total;
}

ModelData::UsbIds ModelData::usbIds(const ConfigStore &store)
{
    return {store.value(option, QStringLiteral("VID")), store.valueList(option, QStringLiteral("USB_PID")),
            store.valueList(option, QStringLiteral("Wireless_PID")),
            store.valueList(option, QStringLiteral("Wireless2_PID")),
            store.valueList(option, QStringLiteral("Wireless4_PID"))};
}

QString ModelData::updateFailInfo()
{
    return QString::fromStdString(platform::registryText(registryKey, "UpdateFailInfo"));
}

void ModelData::storeUpdateFailInfo(const QString &info)
{
    const bool isDone = info.isEmpty() ? platform::removeRegistryValue(registryKey, "UpdateFailInfo")
                                       : platform::setRegistryText(registryKey, "UpdateFailInfo", info.toStdString());
    if (!isDone)
        qWarning() << "the unfinished firmware update could not be noted:" << info;
}

QString ModelData::mouseVersion(int modelIndex)
{
    return QString::fromStdString(platform::registryText(registryKey, mouseVersionName(modelIndex).toStdString()));
}

void ModelData::storeMouseVersion(int modelIndex, const QString &version)
{
    const QString name = mouseVersionName(modelIndex);
    if (!platform::setRegistryText(registryKey, name.toStdString(), version.toStdString()))
        qWarning() << "the firmware version could not be stored:" << name;
}
