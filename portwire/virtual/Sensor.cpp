#include "portwire/virtual/Sensor.h"

#include <algorithm>

namespace portwire {

namespace {

/** The codes of the 3311's table. */
constexpr int first3311 = 4;
constexpr int last3311 = 127;

} // namespace

int dpiOfCode(Sensor sensor, std::uint8_t code, std::uint8_t flags)
{
    int value = 0;
    if (sensor == Sensor::Sensor3311) {
        value = 100 * (std::clamp<int>(code, first3311, last3311) - 3);
    } else {
        const int high = sensor == Sensor::Sensor3395 ? flags >> 6 : 0;
        value = (high * 256 + code + 1) * ((flags & 0x22) ? 100 : 50);
    }
    return (flags & 0x11) ? 2 * value : value;
}

bool hasCode(Sensor sensor, std::uint8_t code)
{
    return sensor != Sensor::Sensor3311 || (code >= first3311 && code <= last3311);
}

LevelCode codeOfDpi(Sensor sensor, int dpi)
{
    if (sensor == Sensor::Sensor3311)
        return {static_cast<std::uint8_t>(dpi / 100 + 3), 0};
    const int code = dpi / 50 - 1;
    const int flags = sensor == Sensor::Sensor3395 ? code / 256 * 0x44 : 0;
    return {static_cast<std::uint8_t>(code % 256), static_cast<std::uint8_t>(flags)};
}

} // namespace portwire
