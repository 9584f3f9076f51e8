#include "portwire/virtual/FirmwareFlash.h"

#include <algorithm>

// A profile as the record of the PC, and back.

namespace portwire {

namespace {

struct Run
{
    std::size_t imageAt, recordAt, size;
};

/** What stands in the record as it does in the image. */
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

/** Of the record. */
constexpr std::size_t sequencesAt = 124;
constexpr std::size_t sequenceSize = 52;
constexpr std::size_t macrosAt = 956;
constexpr std::size_t macroSize = 592;
constexpr std::size_t eventSize = 8;

constexpr std::uint8_t kinds[4] = {0, 1, 2, 4};

/** One event of 5 bytes as the 8 bytes of the record: action, kind, code and delay. */
void exportEvent(const std::uint8_t *in, std::uint8_t *out)
{
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

/** The other way. A kind that the image has no bits for presses nothing, a longer delay is cut. */
void importEvent(const std::uint8_t *in, std::uint8_t *out)
{
    constexpr std::uint32_t longestDelay = 0x7FFFFFF;
    const auto *const kind = std::find(std::begin(kinds), std::end(kinds), in[1]);
    const bool isKnown = kind != std::end(kinds);
    const unsigned code = isKnown ? (in[2] + 256u * in[3]) % 1024 : 0;
    const std::uint32_t delay = in[4] + 256u * in[5] + 65536u * in[6] + 16777216u * in[7];
    std::uint64_t packed = std::min(delay, longestDelay);
    packed = packed * 1024 + code;
    packed = packed * 4 + static_cast<unsigned>(isKnown ? kind - kinds : 0);
    packed = packed * 2 + (in[0] != 0);
    for (std::size_t i = 0; i < flash::eventSize; ++i)
        out[i] = static_cast<std::uint8_t>(packed >> (8 * i));
}

} // namespace

std::vector<std::uint8_t> FirmwareFlash::record() const
{
    std::vector<std::uint8_t> out(recordSize, 0);
    for (const Run &run : sameInRecord)
        std::copy_n(&bytes[run.imageAt], run.size, &out[run.recordAt]);
    for (std::size_t slot = 0; slot < flash::slots; ++slot) {
        const std::uint8_t *sequence = keySequence(slot);
        std::uint8_t *keys = &out[sequencesAt + sequenceSize * slot];
        keys[0] = std::min<std::uint8_t>(sequence[0], flash::mostSequenceEvents);
        for (std::size_t event = 0; event < flash::mostSequenceEvents; ++event)
            exportEvent(sequence + flash::sequenceEvents + flash::eventSize * event, keys + 4 + eventSize * event);

        const std::uint8_t *stored = macro(slot);
        std::uint8_t *exported = &out[macrosAt + macroSize * slot];
        exported[0] = std::min<std::uint8_t>(stored[0], flash::longestName);
        std::copy_n(stored + flash::macroName, flash::longestName, exported + 1);
        exported[31] = std::min<std::uint8_t>(stored[flash::macroEventCount], flash::mostMacroEvents);
        for (std::size_t event = 0; event < flash::mostMacroEvents; ++event)
            exportEvent(stored + flash::macroEvents + flash::eventSize * event, exported + 32 + eventSize * event);
    }
    return out;
}

void FirmwareFlash::setRecord(const std::array<std::uint8_t, recordSize> &record)
{
    for (const Run &run : sameInRecord)
        std::copy_n(&record[run.recordAt], run.size, &bytes[run.imageAt]);
    for (std::size_t slot = 0; slot < flash::slots; ++slot) {
        const std::uint8_t *keys = &record[sequencesAt + sequenceSize * slot];
        std::uint8_t *sequence = &bytes[flash::keySequences + flash::keySequenceSize * slot];
        sequence[0] = keys[0];
        for (std::size_t event = 0; event < flash::mostSequenceEvents; ++event)
            importEvent(keys + 4 + eventSize * event, sequence + flash::sequenceEvents + flash::eventSize * event);

        // Length and name, then the number of events, stand as in the record.
        const std::uint8_t *given = &record[macrosAt + macroSize * slot];
        std::uint8_t *stored = &bytes[flash::macros + flash::macroSize * slot];
        std::copy_n(given, flash::macroEvents, stored);
        for (std::size_t event = 0; event < flash::mostMacroEvents; ++event)
            importEvent(given + 32 + eventSize * event, stored + flash::macroEvents + flash::eventSize * event);
    }
}

} // namespace portwire
