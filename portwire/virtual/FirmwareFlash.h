#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace portwire {

/** How a model's sensor reads the three bytes of a DPI level. */
enum class Sensor {
    Sensor3395, ///< 10-bit code in steps of 50
    Sensor3311, ///< code table 100 to 12400 in steps of 100
    Unknown,    ///< 8-bit code in steps of 50
};

/** What the light of a mouse does. */
struct LightState
{
    bool isOn;
    int mode;
    int red, green, blue;
    int speed, brightness; ///< 0 to 9
};

/** One stored profile as the firmware understands it. Any bytes are understood somehow; none lead outside. */
class FirmwareFlash
{
public:
    static constexpr std::size_t size = 6912;

    /** What a sensor makes of the code and flags of a level. */
    static int dpiOf(Sensor sensor, std::uint8_t code, std::uint8_t flags);

    /** The factory state of a model. */
    static FirmwareFlash factory(std::string_view model);

    std::array<std::uint8_t, size> bytes{};

    int levelCount() const;       ///< 1 to 8
    int currentLevel() const;     ///< below levelCount()
    int dpi(Sensor sensor) const; ///< of the current level
    int rateHz() const;           ///< 0 for a code without a meaning
    int idleSeconds() const;      ///< until the mouse sleeps; 0 for never
    LightState light() const;

    /** This profile as the 10,428-byte record of the PC. */
    std::vector<std::uint8_t> record() const;
};

} // namespace portwire
