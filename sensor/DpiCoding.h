#pragma once

#include "sensor/DpiRange.h"
#include "sensor/DriverSensor.h"

#include <cstdint>

/** What the DPI codes of a sensor depend on. */
struct SensorCoding
{
    QString SensorName;
    DriverSensor driver;
    DpiRangeTable DpiRange;
};

/** The bytes of a DPI level but for its colour. The same code serves both axes. */
struct DpiCode
{
    std::uint8_t code;
    std::uint8_t flags;
};

/** DPI value of a level; 0 if the sensor has codes of its own and this isn't one of them. */
int decodeDpi(const SensorCoding &sensor, DpiCode level);

/** Code of a DPI value. `currentFlags` are those that the level has now. Clamps nothing. */
DpiCode encodeDpi(const SensorCoding &sensor, int dpi, std::uint8_t currentFlags);

/** The coding of the selected device's sensor, kept by the sensor page. GUI thread only. */
SensorCoding &sensorCoding();
