#include "portwire/virtual/FirmwareFlash.h"

#include "portwire/virtual/ReportRates.h"

#include <algorithm>

namespace portwire {

namespace {

/** Type and first parameter of the six buttons: left, right, middle, forward, back, DPI cycle. */
constexpr std::uint8_t factoryKeys[6][2] = {{1, 1}, {1, 2}, {1, 4}, {1, 16}, {1, 8}, {2, 1}};

struct FactoryByte
{
    std::size_t at;
    std::uint8_t value;
};

constexpr FactoryByte factoryBytes[] = {
    {flash::reportRate, 1},         // 1000 Hz
    {flash::currentLevel, 2},       // the third
    {flash::sensorSwitches, 1},     // lift-off at 1 mm
    {flash::debounceTime, 4},       // ms
    {flash::sensorSwitches + 2, 1}, // motion sync
    {flash::idleTime, 60},          // 10 minutes
    {flash::sensorSwitches + 8, 6}, // full performance for a minute
    // Indicator steady.
    {flash::indicator, 1},
    {flash::indicator + 1, 128},
    {flash::indicator + 2, 3},
    {flash::indicatorOn, 1},
    // Light flowing.
    {flash::light, 1},
    {flash::light + 2, 255},
    {flash::light + 3, 153},
    {flash::light + 4, 7},
    {flash::light + 5, 9},
    {flash::lightOn, 1},
};

} // namespace

FirmwareFlash FirmwareFlash::factory(const MouseModel &model)
{
    FirmwareFlash made;
    for (const FactoryByte &byte : factoryBytes)
        made.bytes[byte.at] = byte.value;
    made.bytes[flash::levelCount] = model.levelsInUse;
    for (std::size_t level = 0; level < flash::mostLevels; ++level) {
        const FactoryLevel &from = model.levels[level];
        const LevelCode dpi = codeOfDpi(model.sensor, from.dpi);
        const std::uint8_t bytes[] = {dpi.code, dpi.code, dpi.flags, from.red, from.green, from.blue};
        std::copy(std::begin(bytes), std::end(bytes), &made.bytes[flash::levels + flash::levelSize * level]);
    }
    for (std::size_t key = 0; key < std::size(factoryKeys); ++key)
        std::copy_n(factoryKeys[key], 2, &made.bytes[flash::keyFunctions + flash::keyFunctionSize * key]);
    return made;
}

const std::uint8_t *FirmwareFlash::keyFunction(std::size_t slot) const
{
    return &bytes[flash::keyFunctions + flash::keyFunctionSize * slot];
}

const std::uint8_t *FirmwareFlash::keySequence(std::size_t slot) const
{
    return &bytes[flash::keySequences + flash::keySequenceSize * slot];
}

const std::uint8_t *FirmwareFlash::macro(std::size_t slot) const
{
    return &bytes[flash::macros + flash::macroSize * slot];
}

int FirmwareFlash::levelCount() const
{
    return std::clamp<int>(bytes[flash::levelCount], 1, static_cast<int>(flash::mostLevels));
}

int FirmwareFlash::currentLevel() const { return std::min<int>(bytes[flash::currentLevel], levelCount() - 1); }

int FirmwareFlash::dpi(Sensor sensor) const
{
    const std::uint8_t *level = &bytes[flash::levels + flash::levelSize * static_cast<std::size_t>(currentLevel())];
    return dpiOfCode(sensor, level[0], level[2]);
}

int FirmwareFlash::rateHz() const { return hertzOfCode(bytes[flash::reportRate]); }

int FirmwareFlash::idleSeconds() const { return 10 * bytes[flash::idleTime]; }

LightState FirmwareFlash::light() const
{
    const std::uint8_t *group = &bytes[flash::light];
    return {group[6] != 0, group[0], group[1], group[2], group[3], group[4], group[5]};
}

} // namespace portwire
