#pragma once

#include <cstddef>
#include <cstdint>

/**
 * The record of all settings that a mouse keeps in its flash.
 *
 * The layout is a wire format: the device-link library, the cache files and the profile files hold these very bytes, so
 * every struct here is packed and its offsets are checked below. Multi-byte numbers are little-endian, as are all
 * systems that this program runs on.
 */
#pragma pack(push, 1)

/** One DPI level: the code of each axis, the step and range bits, and the colour of the indicator. */
struct DpiLevel
{
    std::uint8_t CodeX;
    std::uint8_t CodeY;
    std::uint8_t Flags;
    std::uint8_t Red;
    std::uint8_t Green;
    std::uint8_t Blue;
};

/** What a button does: a type (0 unassigned, 1 mouse button, 2 DPI step, ... 11 wheel) and two parameters. */
struct KeyFunction
{
    std::uint8_t KeyType;
    std::uint8_t KeyParam1;
    std::uint8_t KeyParam2;
};

/** One key change of a key sequence. */
struct KeyEvent
{
    std::uint8_t Action; ///< 0 press, 1 release
    std::uint8_t Kind;   ///< 0 modifier bit, 1 keyboard usage, 2 consumer usage
    std::uint16_t Code;
    std::uint32_t DelayMs; ///< 10 in a key sequence
};

/** The key combination of a button of type 5. */
struct KeySequence
{
    std::uint8_t EventCount; ///< twice the number of keys
    std::uint8_t Reserved[3];
    KeyEvent Events[6];
};

/** One event of a macro. */
struct MacroEvent
{
    std::uint8_t Action; ///< 0 press, 1 release
    std::uint8_t Kind;   ///< 1 keyboard usage, 0 modifier bit, 4 mouse button bit
    std::uint16_t Code;
    std::uint32_t DelayMs; ///< after this event; may exceed 65,535; 0 on the last
};

/** The macro of a button of type 6. */
struct MacroSlot
{
    std::uint8_t NameLength; ///< bytes of Name in use, in the local 8-bit encoding
    char Name[30];           ///< not terminated, zero padded
    std::uint8_t EventCount; ///< 0 to 70
    MacroEvent Events[70];
};

struct FlashDataMap
{
    std::uint8_t ReportRate;        ///< 8 = 125 Hz, 4 = 250, 2 = 500, 1 = 1000, 16 = 2000, 32 = 4000 Hz
    std::uint8_t DpiLevelCount;     ///< levels in use, 1 to 8
    std::uint8_t DpiCurrentLevel;   ///< active level, from 0
    std::uint8_t Reserved3;         ///< travels with the record, no page shows or changes it
    std::uint8_t Reserved4;         ///< as Reserved3
    std::uint8_t Lod;               ///< lift-off distance in mm, 1 or 2
    std::uint8_t DebounceTime;      ///< ms, 0 to 20
    std::uint8_t MotionSync;        ///< 0 or 1
    std::uint8_t StopCloseTime;     ///< idle time before sleep and light off, in units of 10 s
    std::uint8_t StraightLine;      ///< 0 or 1
    std::uint8_t RippeControl;      ///< 0 or 1
    std::uint8_t LightRippeControl; ///< 1: the light goes off while the mouse moves
    std::uint8_t Performance;       ///< full-performance switch, 0 or 1
    std::uint8_t PerformanceTime;   ///< how long full performance lasts, in units of 10 s
    std::uint8_t SensorMode;        ///< 0 LP, 1 HP, 2 Corded
    DpiLevel DpiLevels[8];
    std::uint8_t DpiLedMode;       ///< indicator effect: 1 steady, 2 breathing; kept while DpiLedOn is 0
    std::uint8_t DpiLedBrightness; ///< 16, 30, 60, 90, 128, 150, 180, 210, 230 or 255
    std::uint8_t DpiLedSpeed;      ///< 1 to 5
    std::uint8_t DpiLedOn;         ///< 0 or 1
    std::uint8_t LightMode;        ///< light effect, 1 to 5; kept while LightOn is 0
    std::uint8_t LightRed;
    std::uint8_t LightGreen;
    std::uint8_t LightBlue;
    std::uint8_t LightSpeed;      ///< the shown value less 1, 0 to 9
    std::uint8_t LightBrightness; ///< the shown value less 1, 0 to 9
    std::uint8_t LightOn;         ///< 0 off, otherwise on with LightMode
    KeyFunction KeyFunctions[16]; ///< slots 0 to 5 are the buttons that the program shows
    std::uint8_t Gap[2];          ///< never written by a page
    KeySequence KeySequences[16];
    MacroSlot MacroSlots[16];
};

#pragma pack(pop)

/** Size of the record on the wire, in cache files and in profile files. */
constexpr std::size_t flashDataMapSize = 10428;

static_assert(sizeof(DpiLevel) == 6 && sizeof(KeyFunction) == 3, "packed");
static_assert(sizeof(KeyEvent) == 8 && sizeof(KeySequence) == 52, "packed");
static_assert(sizeof(MacroEvent) == 8 && sizeof(MacroSlot) == 592, "packed");
static_assert(sizeof(FlashDataMap) == flashDataMapSize, "the record is a wire format");
static_assert(offsetof(FlashDataMap, DpiLevels) == 15, "settings head");
static_assert(offsetof(FlashDataMap, DpiLedMode) == 63 && offsetof(FlashDataMap, LightOn) == 73, "settings head");
static_assert(offsetof(FlashDataMap, KeyFunctions) == 74 && offsetof(FlashDataMap, Gap) == 122, "button table");
static_assert(offsetof(FlashDataMap, KeySequences) == 124 && offsetof(FlashDataMap, MacroSlots) == 956, "regions");
