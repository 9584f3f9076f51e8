#pragma once

#include "macro/KeyTable.h"

#include <QString>
#include <QVector>

#include <cstdint>
#include <optional>

/** One row of a macro: a key that goes down or up, or the pause behind it. Names and texts are made from it. */
struct MacroRow
{
    enum class Type : std::uint8_t { Event, Delay };
    enum class Action : std::uint8_t {
        Press,
        Release,
        Untold, ///< a damaged line of a file: no row for the user, nothing but its key for a mouse
    };

    static MacroRow event(const MacroKey &key, Action action) { return {Type::Event, key.code, key.kind, action, 0}; }
    static MacroRow delay(std::uint32_t milliseconds) { return {Type::Delay, 0, 0, Action::Press, milliseconds}; }

    bool isEvent() const { return type == Type::Event; }
    const MacroKey &key() const { return KeyTable::find(code, kind); }

    Type type;
    std::uint8_t code; ///< of an event: those of a row of the key table, never anything else
    std::uint8_t kind;
    Action action;
    std::uint32_t delayMs; ///< of a delay; may exceed 65,535, since a recorded pause isn't clipped
};

inline bool operator==(const MacroRow &a, const MacroRow &b)
{
    return a.type == b.type && a.code == b.code && a.kind == b.kind && a.action == b.action && a.delayMs == b.delayMs;
}
inline bool operator!=(const MacroRow &a, const MacroRow &b) { return !(a == b); }

/** Events and delays in turn, with an event at both ends. A damaged file can give another order. */
using MacroRows = QVector<MacroRow>;

/** What is kept of a macro beside its name. */
struct MacroContent
{
    std::optional<int> repeat; ///< see RepeatCode, normalised; nothing in a macro that was never saved
    MacroRows rows;
};

/** As many events as a mouse keeps of one macro. */
constexpr int maximumMacroEvents = 70;

int eventCount(const MacroRows &rows);

/** "10ms" and its like. */
QString delayText(std::uint32_t milliseconds);
/** The milliseconds of such a text, with or without the unit; 0 if it holds no number that a mouse can keep. */
std::uint32_t delayOfText(QString text);

/** What a row list shows: the name of the key or the delay. */
QString rowText(const MacroRow &row, const MouseButtonNames &buttons = MouseButtonNames::current());
