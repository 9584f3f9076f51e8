/** driver_sensor.h of any bytes, and the coding of DPI values by what it says. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "sensor/DpiCoding.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzHome::instance();
    FuzzInput input(data, size);
    SensorCoding sensor;
    sensor.SensorName = QString::fromUtf8(input.text());
    const std::uint8_t flags = input.byte();
    const int wanted = input.number();
    sensor.driver = parseDriverSensor(input.rest());

    const DriverSensor &driver = sensor.driver;
    require(driver.DriverKeys.size() == driver.DriverValues.size(), "each key has a value");
    const bool hasKeys = driver.hasKeysOf(sensor.SensorName);
    for (int index = 0; index < driver.DriverKeys.size(); ++index) {
        require(driver.DriverValues.at(index) >= 0, "a code isn't negative");
        require(driver.code(driver.DriverKeys.at(index)) >= 0, "a key has a code");
        const int dpi = driver.dpi(sensor.SensorName, driver.DriverValues.at(index));
        require(dpi >= 0 && dpi <= 1000000, "a DPI value is one");
        const auto code = static_cast<std::uint8_t>(driver.DriverValues.at(index));
        require(decodeDpi(sensor, {code, flags}) >= 0, "a decoded DPI value is one");
        encodeDpi(sensor, dpi, flags);
    }
    for (int feature = 0; feature < DriverSensor::featureCount; ++feature)
        driver.supports(static_cast<DriverSensor::Feature>(feature), sensor.SensorName);
    require(!sensor.SensorName.isEmpty() || !hasKeys, "no name, no keys");
    encodeDpi(sensor, wanted, flags);
    return 0;
}
