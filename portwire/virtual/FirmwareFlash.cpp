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

/** One event of 5 bytes as the 8 bytes of the record: action, kind, code and delay. */
void exportEvent(const std::uint8_t *in, std::uint8_t *out)
{
    static constexpr std::uint8_t kinds[4] = {0, 1, 2, 4};
    const unsigned low = in[0] + 256u * in[1];
    const unsigned delay = in[1] / 32u + in[2] * 8u + in[3] * 2048u + in[4] * 524288u;
    const unsigned code = low / 8 % 1024;
    out[0] = low % 2;
    out[1] = kinds[low / 2 % 4];
    out[2] = static_cast<std::uint8_t>(code % 256);
    out[3] = static_cast<std::uint8_t>(code / 256);
    for (int i = 0; i < 4; ++i)
        out[4 + i] = static_cast<std::uint8_t>(delay >> (8 * i));
}

struct Run
{
    std::size_t imageAt, recordAt, size;
};

/** What stands in the record of the PC as it does in the image. */
constexpr Run sameInRecord[] = {
    {flash::reportRate, 0, 2}, // and the level count
    {flash::currentLevel, 2, 1},
    {flash::reserved, 3, 2},
    {flash::sensorSwitches, 5, 10},
    {flash::levels, 15, flash::mostLevels *flash::levelSize},
    {flash::indicator, 63, 4},
    {flash::light, 67, 7},
    {flash::keyFunctions, 74, flash::slots *flash::keyFunctionSize + 2}, // and the gap
};

constexpr std::size_t recordSize = 10428;
constexpr std::size_t recordEventSize = 8;

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

std::vector<std::uint8_t> FirmwareFlash::record() const
{
    std::vector<std::uint8_t> out(recordSize, 0);
    for (const Run &run : sameInRecord)
        std::copy_n(bytes.begin() + static_cast<long>(run.imageAt), run.size,
                    out.begin() + static_cast<long>(run.recordAt));
    for (std::size_t slot = 0; slot < flash::slots; ++slot) {
        const std::uint8_t *sequence = keySequence(slot);
        std::uint8_t *keys = &out[124 + 52 * slot];
        keys[0] = std::min<std::uint8_t>(sequence[0], flash::mostSequenceEvents);
        for (std::size_t event = 0; event < flash::mostSequenceEvents; ++event)
            exportEvent(sequence + flash::sequenceEvents + flash::eventSize * event,
                        keys + 4 + recordEventSize * event);

        const std::uint8_t *stored = macro(slot);
        std::uint8_t *exported = &out[956 + 592 * slot];
        exported[0] = std::min<std::uint8_t>(stored[0], flash::longestName);
        std::copy_n(stored + flash::macroName, flash::longestName, exported + 1);
        exported[31] = std::min<std::uint8_t>(stored[flash::macroEventCount], flash::mostMacroEvents);
        for (std::size_t event = 0; event < flash::mostMacroEvents; ++event)
            exportEvent(stored + flash::macroEvents + flash::eventSize * event,
                        exported + 32 + recordEventSize * event);
    }
    return out;
}

} // namespace portwire
