#pragma once

#include <cstdint>

namespace portwire {

/** How a model's sensor reads the code and flags of a DPI level. */
enum class Sensor {
    Sensor3395, ///< 10-bit code in steps of 50
    Sensor3311, ///< code table 100 to 12400 in steps of 100
    Unknown,    ///< 8-bit code in steps of 50
};

/** What a sensor makes of the code and flags of a level. */
int dpiOfCode(Sensor sensor, std::uint8_t code, std::uint8_t flags);

/** Whether the sensor has this code; with another one it stays at the end of its range. */
bool hasCode(Sensor sensor, std::uint8_t code);

struct LevelCode
{
    std::uint8_t code;
    std::uint8_t flags;
};

/** The code of a DPI that the sensor has without doubling. */
LevelCode codeOfDpi(Sensor sensor, int dpi);

} // namespace portwire
