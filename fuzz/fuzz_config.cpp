/** The product file: any bytes as Config.ini, read the way the program reads each of its keys. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "productdata/ConfigStore.h"
#include "productdata/ModelData.h"
#include "productdata/SafeFile.h"

#include <QTextCodec>

namespace {

const char *const keys[] = {"DeviceTotal", "CID",      "VID",          "USB_PID",     "LabelColor", "MID",
                            "Sensor",      "MM",       "Adveanced",    "XIn1",        "KeyParam1",  "DPIRange",
                            "DPIGrade",    "DPIColor", "BatteryParam", "DPIMaxGrade", "KeyNumber"};

/** True for what QSettings makes of text alone; a value that it unpacked has most often another type. */
bool isText(const QVariant &value)
{
    switch (value.type()) {
    case QVariant::Invalid:
    case QVariant::String:
    case QVariant::StringList:
    case QVariant::ByteArray:
    case QVariant::Rect:
    case QVariant::Size:
    case QVariant::Point:
        return true;
    case QVariant::List: {
        const QVariantList list = value.toList();
        return std::all_of(list.begin(), list.end(), isText);
    }
    default:
        return false;
    }
}

/** No binary value slips by in another spelling. */
void requireTexts(const QString &path)
{
    if (holdsBinaryValues(path))
        return;
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec(QTextCodec::codecForName("UTF8"));
    const QStringList all = settings.allKeys();
    for (const QString &key : all)
        require(isText(settings.value(key)), "a value is a text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const QString path = FuzzHome::instance().newFile(input.rest());
    requireTexts(path);
    const ConfigStore store(path);
    for (const char *group : {"Option", "Drive1", "Drive2", "General"}) {
        for (const char *key : keys) {
            const QStringList list = store.valueList(group, key);
            require(store.numberList(group, key).size() == list.size(), "each element has a number");
            require(list.size() != 1 || store.value(group, key) == list.first(), "one element is the value");
            store.number(group, key);
            for (const QString &element : list)
                require(!ConfigStore::isCodedKey(key) || (!element.contains(' ') && !element.contains('\n')),
                        "a coded value has no blanks");
        }
    }
    const int total = ModelData::deviceTotal(store);
    require(total >= 0 && total <= 64, "the number of models is bounded");
    const int index = ModelData::modelIndexOf(1, store);
    require(index >= 0 && index <= total, "a model is one of them or unknown");
    const auto company = ModelData::companyId(store);
    require(!company || (*company >= 0 && *company <= 255), "a company id is a byte");
    ModelData::usbIds(store).allPids();
    return 0;
}
