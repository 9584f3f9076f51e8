#pragma once

#include "sensor/DriverSensor.h"

/** How a DPI lock writes its DPI, by the sensor of the model. */
namespace DpiLockCode {

/** Code of a DPI value. Only its low byte reaches the mouse. */
int DpiToCode(int dpi, const DriverSensor &driver, const QString &sensorName);
/** DPI of a code; 0 if the sensor has codes of its own and this is none of them. */
int CodeToDpi(int code, const DriverSensor &driver, const QString &sensorName);

} // namespace DpiLockCode
