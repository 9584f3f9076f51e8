#pragma once

#include "portwire/virtual/DeviceModels.h"
#include "portwire/virtual/FlashLayout.h"

#include <array>
#include <vector>

namespace portwire {

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
    static constexpr std::size_t size = flash::imageSize;
    static constexpr std::size_t recordSize = 10428; ///< of the PC's record of one profile

    /** The factory state of a model. */
    static FirmwareFlash factory(const MouseModel &model);

    std::array<std::uint8_t, size> bytes{};

    const std::uint8_t *keyFunction(std::size_t slot) const; ///< three bytes; slot 0 to 15
    const std::uint8_t *keySequence(std::size_t slot) const; ///< 32 bytes
    const std::uint8_t *macro(std::size_t slot) const;       ///< 384 bytes

    int levelCount() const;       ///< 1 to 8
    int currentLevel() const;     ///< below levelCount()
    int dpi(Sensor sensor) const; ///< of the current level
    int rateHz() const;           ///< 0 for a code without a meaning
    int idleSeconds() const;      ///< until the mouse sleeps; 0 for never
    LightState light() const;

    /** This profile as the record of the PC: counts and lengths end with their arrays. */
    std::vector<std::uint8_t> record() const;
    /** Takes a record as it is, whatever it says; what the image has no bits for is lost. */
    void setRecord(const std::array<std::uint8_t, recordSize> &record);
};

} // namespace portwire
