#pragma once

#include <QString>

#include <array>
#include <cstdint>

/** What an event of a macro stands for: how its code is to be read. The mouse uses the same numbers. */
namespace KeyKind {
constexpr std::uint8_t modifier = 0;    ///< one bit of the HID modifier byte
constexpr std::uint8_t keyboard = 1;    ///< a HID keyboard usage
constexpr std::uint8_t mouseButton = 4; ///< one bit of the mouse button byte
} // namespace KeyKind

/** A key or mouse button that a macro can press. */
struct MacroKey
{
    const char *name; ///< UTF-8, the same in every language; null for a mouse button, whose name is a text
    std::uint8_t code;
    std::uint8_t kind; ///< see KeyKind
};

/** The names of the mouse buttons in the language of the user, in the order of their bits. */
struct MouseButtonNames
{
    /** left, right, middle, back, forward: bits 0 to 4 */
    std::array<QString, 5> names;

    /** Those of the language that the program shows. The macro page sets them; GUI thread only. */
    static MouseButtonNames &current();
};

/** The one table of keys. Everybody who has a name, a code or a virtual key of a macro asks it. */
namespace KeyTable {

constexpr int keyCount = 109;

/** All keys: keyboard, modifiers, mouse buttons. */
const std::array<MacroKey, keyCount> &keys();

/** The key with the empty name, which presses nothing. It stands for whatever isn't in the table. */
const MacroKey &noKey();

/** The key of exactly this code and kind; noKey() if the table holds none. */
const MacroKey &find(int code, int kind);

/** The key of this name, compared exactly; null for an unknown name. The empty name is known: it is noKey(). */
const MacroKey *find(const QString &name, const MouseButtonNames &buttons = MouseButtonNames::current());

/** The key of a Windows virtual-key code; null for one that no macro can hold. */
const MacroKey *findVirtualKey(int virtualKey);

/** The key of an event that a mouse holds. Firmware is loose about kinds, so most codes decide by themselves. */
const MacroKey &findInMouse(int code, int kind);

/** The name that a user sees. */
QString name(const MacroKey &key, const MouseButtonNames &buttons = MouseButtonNames::current());

} // namespace KeyTable
