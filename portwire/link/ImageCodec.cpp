#include "portwire/link/ImageCodec.h"

#include <algorithm>
#include <cstring>

namespace portwire {

namespace {

using namespace ImageLayout;

struct ByteField
{
    std::size_t image;
    std::size_t record;
    std::size_t count;
};

#define PORTWIRE_FIELD(address, field)                                                                                 \
    ByteField { address, offsetof(FlashDataMap, field), sizeof(FlashDataMap::field) }

/** Everything of the settings block travels byte by byte; only the places differ. */
constexpr ByteField settingsFields[] = {
    PORTWIRE_FIELD(reportRate, ReportRate),
    PORTWIRE_FIELD(dpiLevelCount, DpiLevelCount),
    PORTWIRE_FIELD(2, Reserved3),
    PORTWIRE_FIELD(3, Reserved4),
    PORTWIRE_FIELD(dpiCurrentLevel, DpiCurrentLevel),
    PORTWIRE_FIELD(dpiLevels, DpiLevels),
    PORTWIRE_FIELD(53, Lod),
    PORTWIRE_FIELD(54, DebounceTime),
    PORTWIRE_FIELD(55, MotionSync),
    PORTWIRE_FIELD(56, StopCloseTime),
    PORTWIRE_FIELD(57, StraightLine),
    PORTWIRE_FIELD(58, RippeControl),
    PORTWIRE_FIELD(59, LightRippeControl),
    PORTWIRE_FIELD(60, Performance),
    PORTWIRE_FIELD(61, PerformanceTime),
    PORTWIRE_FIELD(62, SensorMode),
    PORTWIRE_FIELD(dpiIndicator, DpiLedMode),
    PORTWIRE_FIELD(dpiIndicator + 1, DpiLedBrightness),
    PORTWIRE_FIELD(dpiIndicator + 2, DpiLedSpeed),
    PORTWIRE_FIELD(dpiIndicator + 3, DpiLedOn),
    PORTWIRE_FIELD(keyFunctions, KeyFunctions),
    PORTWIRE_FIELD(gap, Gap),
    PORTWIRE_FIELD(light, LightMode),
    PORTWIRE_FIELD(light + 1, LightRed),
    PORTWIRE_FIELD(light + 2, LightGreen),
    PORTWIRE_FIELD(light + 3, LightBlue),
    PORTWIRE_FIELD(light + 4, LightSpeed),
    PORTWIRE_FIELD(light + 5, LightBrightness),
    PORTWIRE_FIELD(light + 6, LightOn),
};

#undef PORTWIRE_FIELD

/** Kinds of an event by their code in the image. */
constexpr std::uint8_t eventKinds[] = {0, 1, 2, 4};

constexpr unsigned kindShift = 1;
constexpr unsigned usageShift = 3;
constexpr unsigned usageMask = 0x3FF; ///< consumer usages go up to 0x29C
constexpr unsigned delayShift = 13;

/** 40 bits, little-endian: action 1, kind 2, code 10, delay 27. */
template<typename Event>
void encodeEvent(const Event &event, std::uint8_t *out)
{
    const auto kind = std::find(std::begin(eventKinds), std::end(eventKinds), event.Kind);
    std::uint64_t bits = event.Action ? 1 : 0;
    // A kind that no mouse knows becomes a modifier without a bit: it presses nothing and keeps its delay.
    if (kind != std::end(eventKinds)) {
        bits |= static_cast<std::uint64_t>(kind - std::begin(eventKinds)) << kindShift;
        bits |= static_cast<std::uint64_t>(event.Code & usageMask) << usageShift;
    }
    bits |= static_cast<std::uint64_t>(std::min(std::uint32_t{event.DelayMs}, maxEventDelayMs)) << delayShift;
    for (std::size_t i = 0; i < eventSize; ++i)
        out[i] = static_cast<std::uint8_t>(bits >> (8 * i));
}

template<typename Event>
void decodeEvent(const std::uint8_t *in, Event &event)
{
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < eventSize; ++i)
        bits |= static_cast<std::uint64_t>(in[i]) << (8 * i);
    event.Action = bits & 1;
    event.Kind = eventKinds[(bits >> kindShift) & 3];
    event.Code = static_cast<std::uint16_t>((bits >> usageShift) & usageMask);
    event.DelayMs = static_cast<std::uint32_t>(bits >> delayShift);
}

constexpr std::uint8_t maxSequenceEvents = 6;
constexpr std::uint8_t maxMacroEvents = 70;
constexpr std::uint8_t maxNameLength = sizeof(MacroSlot::Name);
static_assert(keySequenceEvents + maxSequenceEvents * eventSize <= keySequenceSize, "a key sequence fits");
static_assert(macroEvents + maxMacroEvents * eventSize <= macroSize, "a macro fits");

void encodeSequence(const KeySequence &sequence, std::uint8_t *out)
{
    out[0] = std::min(sequence.EventCount, maxSequenceEvents);
    out += keySequenceEvents;
    for (const KeyEvent &event : sequence.Events) {
        encodeEvent(event, out);
        out += eventSize;
    }
}

void decodeSequence(const std::uint8_t *in, KeySequence &sequence)
{
    sequence = {};
    sequence.EventCount = std::min(in[0], maxSequenceEvents);
    in += keySequenceEvents;
    for (KeyEvent &event : sequence.Events) {
        decodeEvent(in, event);
        in += eventSize;
    }
}

void encodeMacro(const MacroSlot &macro, std::uint8_t *out)
{
    out[0] = std::min(macro.NameLength, maxNameLength);
    std::memcpy(out + macroName, macro.Name, sizeof macro.Name);
    out[macroEventCount] = std::min(macro.EventCount, maxMacroEvents);
    out += macroEvents;
    for (const MacroEvent &event : macro.Events) {
        encodeEvent(event, out);
        out += eventSize;
    }
}

void decodeMacro(const std::uint8_t *in, MacroSlot &macro)
{
    macro.NameLength = std::min(in[0], maxNameLength);
    std::memcpy(macro.Name, in + macroName, sizeof macro.Name);
    macro.EventCount = std::min(in[macroEventCount], maxMacroEvents);
    in += macroEvents;
    for (MacroEvent &event : macro.Events) {
        decodeEvent(in, event);
        in += eventSize;
    }
}

} // namespace

void encodeImage(const FlashDataMap &record, DeviceImage &image)
{
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(&record);
    for (const ByteField &field : settingsFields)
        std::memcpy(image.data() + field.image, bytes + field.record, field.count);
    for (std::size_t slot = 0; slot < slots; ++slot) {
        encodeSequence(record.KeySequences[slot], image.data() + keySequences + slot * keySequenceSize);
        encodeMacro(record.MacroSlots[slot], image.data() + macros + slot * macroSize);
    }
}

void decodeImage(const DeviceImage &image, FlashDataMap &record)
{
    auto *bytes = reinterpret_cast<std::uint8_t *>(&record);
    for (const ByteField &field : settingsFields)
        std::memcpy(bytes + field.record, image.data() + field.image, field.count);
    for (std::size_t slot = 0; slot < slots; ++slot) {
        decodeSequence(image.data() + keySequences + slot * keySequenceSize, record.KeySequences[slot]);
        decodeMacro(image.data() + macros + slot * macroSize, record.MacroSlots[slot]);
    }
}

} // namespace portwire
