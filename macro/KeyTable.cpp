#include "macro/KeyTable.h"

#include <algorithm>
#include <cstddef>

namespace {

using namespace KeyKind;

// Codes of keyboard keys are those of the HID usage page 7.
constexpr std::array<MacroKey, KeyTable::keyCount> table = {{
    {"Tab", 0x2B, keyboard},       {"0", 0x27, keyboard},
    {"1", 0x1E, keyboard},         {"2", 0x1F, keyboard},
    {"3", 0x20, keyboard},         {"4", 0x21, keyboard},
    {"5", 0x22, keyboard},         {"6", 0x23, keyboard},
    {"7", 0x24, keyboard},         {"8", 0x25, keyboard},
    {"9", 0x26, keyboard},         {"A", 0x04, keyboard},
    {"B", 0x05, keyboard},         {"C", 0x06, keyboard},
    {"D", 0x07, keyboard},         {"E", 0x08, keyboard},
    {"F", 0x09, keyboard},         {"G", 0x0A, keyboard},
    {"H", 0x0B, keyboard},         {"I", 0x0C, keyboard},
    {"J", 0x0D, keyboard},         {"K", 0x0E, keyboard},
    {"L", 0x0F, keyboard},         {"M", 0x10, keyboard},
    {"N", 0x11, keyboard},         {"O", 0x12, keyboard},
    {"P", 0x13, keyboard},         {"Q", 0x14, keyboard},
    {"R", 0x15, keyboard},         {"S", 0x16, keyboard},
    {"T", 0x17, keyboard},         {"U", 0x18, keyboard},
    {"V", 0x19, keyboard},         {"W", 0x1A, keyboard},
    {"X", 0x1B, keyboard},         {"Y", 0x1C, keyboard},
    {"Z", 0x1D, keyboard},         {"Esc", 0x29, keyboard},
    {"BackSpace", 0x2A, keyboard}, {"CapsLock", 0x39, keyboard},
    {"Insert", 0x49, keyboard},    {"Del", 0x4C, keyboard},
    {"Home", 0x4A, keyboard},      {"End", 0x4D, keyboard},
    {"PgUp", 0x4B, keyboard},      {"PgDn", 0x4E, keyboard},
    {"Scroll", 0x47, keyboard},    {"Pause", 0x48, keyboard},
    {"Screen", 0x46, keyboard},    {"←", 0x50, keyboard},
    {"→", 0x4F, keyboard},         {"↑", 0x52, keyboard},
    {"↓", 0x51, keyboard},         {"`", 0x35, keyboard},
    {"-", 0x2D, keyboard},         {"=", 0x2E, keyboard},
    {"APPs", 0x65, keyboard},      {"Space", 0x2C, keyboard},
    {"[", 0x2F, keyboard},         {"]", 0x30, keyboard},
    {"\\", 0x31, keyboard},        {"Enter", 0x28, keyboard},
    {";", 0x33, keyboard},         {"'", 0x34, keyboard},
    {",", 0x36, keyboard},         {".", 0x37, keyboard},
    {"/", 0x38, keyboard},         {"Num/", 0x54, keyboard},
    {"Num*", 0x55, keyboard},      {"Num-", 0x56, keyboard},
    {"Num+", 0x57, keyboard},      {"Num0", 0x62, keyboard},
    {"Num1", 0x59, keyboard},      {"Num2", 0x5A, keyboard},
    {"Num3", 0x5B, keyboard},      {"Num4", 0x5C, keyboard},
    {"Num5", 0x5D, keyboard},      {"Num6", 0x5E, keyboard},
    {"Num7", 0x5F, keyboard},      {"Num8", 0x60, keyboard},
    {"Num9", 0x61, keyboard},      {"Num.", 0x63, keyboard},
    {"NumLock", 0x53, keyboard},   {"F1", 0x3A, keyboard},
    {"F2", 0x3B, keyboard},        {"F3", 0x3C, keyboard},
    {"F4", 0x3D, keyboard},        {"F5", 0x3E, keyboard},
    {"F6", 0x3F, keyboard},        {"F7", 0x40, keyboard},
    {"F8", 0x41, keyboard},        {"F9", 0x42, keyboard},
    {"F10", 0x43, keyboard},       {"F11", 0x44, keyboard},
    {"F12", 0x45, keyboard},       {"", 0x00, keyboard},
    {"LCtrl", 0x01, modifier},     {"LShift", 0x02, modifier},
    {"LAlt", 0x04, modifier},      {"LWin", 0x08, modifier},
    {"RCtrl", 0x10, modifier},     {"RShift", 0x20, modifier},
    {"RAlt", 0x40, modifier},      {"RWin", 0x80, modifier},
    {nullptr, 0x01, mouseButton}, // left, right, middle, back, forward
    {nullptr, 0x02, mouseButton},  {nullptr, 0x04, mouseButton},
    {nullptr, 0x08, mouseButton},  {nullptr, 0x10, mouseButton},
}};

/** A run of virtual keys whose codes run along. */
struct VirtualKeys
{
    int first;
    int last;
    std::uint8_t code; ///< of the first
    std::uint8_t kind;
};

constexpr VirtualKeys virtualKeys[] = {
    {48, 48, 0x27, keyboard},   // 0
    {49, 57, 0x1E, keyboard},   // 1 to 9
    {65, 90, 0x04, keyboard},   // A to Z
    {112, 123, 0x3A, keyboard}, // F1 to F12
    {96, 96, 0x62, keyboard},   // Num0
    {97, 105, 0x59, keyboard},  // Num1 to Num9
    {9, 9, 0x2B, keyboard},     // Tab
    {27, 27, 0x29, keyboard},   // Esc
    {8, 8, 0x2A, keyboard},     // BackSpace
    {20, 20, 0x39, keyboard},   // CapsLock
    {45, 45, 0x49, keyboard},   // Insert
    {46, 46, 0x4C, keyboard},   // Del
    {36, 36, 0x4A, keyboard},   // Home
    {35, 35, 0x4D, keyboard},   // End
    {33, 33, 0x4B, keyboard},   // PgUp
    {34, 34, 0x4E, keyboard},   // PgDn
    {145, 145, 0x47, keyboard}, // Scroll
    {19, 19, 0x48, keyboard},   // Pause
    {44, 44, 0x46, keyboard},   // Screen
    {13, 13, 0x28, keyboard},   // Enter
    {37, 37, 0x50, keyboard},   // left
    {39, 39, 0x4F, keyboard},   // right
    {38, 38, 0x52, keyboard},   // up
    {40, 40, 0x51, keyboard},   // down
    {192, 192, 0x35, keyboard}, // `
    {189, 189, 0x2D, keyboard}, // -
    {187, 187, 0x2E, keyboard}, // =
    {219, 219, 0x2F, keyboard}, // [
    {221, 221, 0x30, keyboard}, // ]
    {220, 220, 0x31, keyboard}, // backslash
    {186, 186, 0x33, keyboard}, // ;
    {222, 222, 0x34, keyboard}, // '
    {188, 188, 0x36, keyboard}, // ,
    {190, 190, 0x37, keyboard}, // .
    {191, 191, 0x38, keyboard}, // /
    {32, 32, 0x2C, keyboard},   // Space
    {93, 93, 0x65, keyboard},   // APPs
    {144, 144, 0x53, keyboard}, // NumLock
    {111, 111, 0x54, keyboard}, // Num/
    {106, 106, 0x55, keyboard}, // Num*
    {109, 109, 0x56, keyboard}, // Num-
    {107, 107, 0x57, keyboard}, // Num+
    {110, 110, 0x63, keyboard}, // Num.
    {12, 12, 0x00, keyboard},   // the 5 of a number pad without NumLock: an event without a key
    {162, 162, 0x01, modifier}, // LCtrl
    {160, 160, 0x02, modifier}, // LShift
    {164, 164, 0x04, modifier}, // LAlt
    {91, 91, 0x08, modifier},   // LWin
    {163, 163, 0x10, modifier}, // RCtrl
    {161, 161, 0x20, modifier}, // RShift
    {165, 165, 0x40, modifier}, // RAlt
    {92, 92, 0x80, modifier},   // RWin
};

struct CodeAndKind
{
    std::uint8_t code;
    std::uint8_t kind;
};

/** What a code in a mouse's macro means where the usages of keys and the bits of modifiers meet. */
struct SharedCode
{
    std::uint8_t code;
    CodeAndKind asKey;      ///< with kind 1
    CodeAndKind asModifier; ///< with kind 0
    CodeAndKind otherwise;
};

constexpr CodeAndKind nothing = {0x00, keyboard};
/** Row of the empty name in the table. */
constexpr std::size_t noKeyRow = 95;

constexpr SharedCode sharedCodes[] = {
    {0x20, {0x20, keyboard}, {0x20, modifier}, nothing},          // 3, RShift
    {0x04, {0x04, keyboard}, {0x04, modifier}, nothing},          // A, LAlt
    {0x08, {0x08, keyboard}, {0x08, modifier}, nothing},          // E, LWin
    {0x10, {0x10, keyboard}, {0x10, modifier}, nothing},          // M, RCtrl
    {0x40, {0x40, keyboard}, {0x40, modifier}, {0x40, keyboard}}, // F7, RAlt
    {0x01, {0x01, modifier}, {0x01, modifier}, {0x01, modifier}}, // LCtrl
    {0x02, {0x02, modifier}, {0x02, modifier}, {0x02, modifier}}, // LShift
    {0x80, {0x80, modifier}, {0x80, modifier}, {0x80, modifier}}, // RWin
    {0x58, {0x28, keyboard}, {0x28, keyboard}, {0x28, keyboard}}, // the Enter of the number pad
};

std::size_t buttonNumber(const MacroKey &key)
{
    std::size_t number = 0;
    while (number < 4 && key.code >> number != 1)
        ++number;
    return number;
}

} // namespace

MouseButtonNames &MouseButtonNames::current()
{
    static MouseButtonNames names{{QStringLiteral("左键"), QStringLiteral("右键"), QStringLiteral("中键"),
                                   QStringLiteral("后退键"), QStringLiteral("前进键")}};
    return names;
}

const std::array<MacroKey, KeyTable::keyCount> &KeyTable::keys() { return table; }

const MacroKey &KeyTable::noKey()
{
    static_assert(table[noKeyRow].code == nothing.code && table[noKeyRow].kind == nothing.kind, "the empty name");
    return table[noKeyRow];
}

const MacroKey &KeyTable::find(int code, int kind)
{
    const auto found = std::find_if(table.begin(), table.end(),
                                    [=](const MacroKey &key) { return key.code == code && key.kind == kind; });
    return found != table.end() ? *found : noKey();
}

const MacroKey *KeyTable::find(const QString &name, const MouseButtonNames &buttons)
{
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const MacroKey &key) { return KeyTable::name(key, buttons) == name; });
    return found != table.end() ? &*found : nullptr;
}

const MacroKey *KeyTable::findVirtualKey(int virtualKey)
{
    for (const VirtualKeys &run : virtualKeys) {
        if (virtualKey >= run.first && virtualKey <= run.last)
            return &find(run.code + virtualKey - run.first, run.kind);
    }
    return nullptr;
}

const MacroKey &KeyTable::findInMouse(int code, int kind)
{
    if (kind == mouseButton)
        return find(code, kind);
    for (const SharedCode &shared : sharedCodes) {
        if (shared.code != code)
            continue;
        const CodeAndKind &meant = kind == keyboard   ? shared.asKey
                                   : kind == modifier ? shared.asModifier
                                                      : shared.otherwise;
        return find(meant.code, meant.kind);
    }
    return find(code, keyboard);
}

QString KeyTable::name(const MacroKey &key, const MouseButtonNames &buttons)
{
    return key.kind == mouseButton ? buttons.names[buttonNumber(key)] : QString::fromUtf8(key.name);
}
