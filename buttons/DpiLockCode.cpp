#include "buttons/DpiLockCode.h"

namespace {

/** DPI of one step of a sensor without codes of its own. */
constexpr int step = 50;

} // namespace

int DpiLockCode::DpiToCode(int dpi, const DriverSensor &driver, const QString &sensorName)
{
    if (!driver.hasKeysOf(sensorName))
        return dpi / step - 1;
    const int code = driver.code(QStringLiteral("SENSOR_%1_DPI_%2").arg(sensorName).arg(dpi));
    return code >= 0 ? code : dpi / step;
}

int DpiLockCode::CodeToDpi(int code, const DriverSensor &driver, const QString &sensorName)
{
    return driver.hasKeysOf(sensorName) ? driver.dpi(sensorName, code) : (code + 1) * step;
}
