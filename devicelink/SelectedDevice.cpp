#include "devicelink/SelectedDevice.h"

#include "productdata/ModelData.h"

Snapshot<DeviceAllInfo> &SelectInfo()
{
    static auto *const info = new Snapshot<DeviceAllInfo>;
    return *info;
}

Snapshot<QByteArray> &DevicePath()
{
    static auto *const path = new Snapshot<QByteArray>(QByteArrayLiteral("a"));
    return *path;
}

Snapshot<QString> &LoadFileName()
{
    static auto *const name = new Snapshot<QString>;
    return *name;
}

Snapshot<QString> &SaveFileName()
{
    static auto *const name = new Snapshot<QString>;
    return *name;
}

bool isRecordOfSelected() { return !SaveFileName().get().isEmpty(); }

QString selectedSection() { return ModelData::section(SelectInfo().get().ModelIndex); }
