#pragma once

#include "devicelink/DeviceAllInfo.h"
#include "devicelink/Snapshot.h"

#include <QByteArray>

/** The device whose settings are shown. Never destroyed: a callback of the library may read them at exit. */
Snapshot<DeviceAllInfo> &SelectInfo();

/** Path of the selected device for library calls. Starts as "a", which matches no device. */
Snapshot<QByteArray> &DevicePath();

/** Cache file to read for the selected device, made at selection. Empty before. */
Snapshot<QString> &LoadFileName();

/** Cache file to write the working record to, made at each whole record. Empty before the first. */
Snapshot<QString> &SaveFileName();

/** True once the selected mouse has told its record. Until then the working record may be that of another one. */
bool isRecordOfSelected();

/** Section of the product file for the selected device, such as "Drive1". */
QString selectedSection();
