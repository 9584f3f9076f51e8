#pragma once

#include "macro/MacroRows.h"

#include <QStringList>

/** Rows of a macro as a test writes them: "A+ 10ms A-", presses with a plus and releases with a minus behind the key.
 */
namespace MacroText {

inline QString of(const MacroRows &rows)
{
    QStringList words;
    for (const MacroRow &row : rows) {
        const char *mark = row.action == MacroRow::Action::Press     ? "+"
                           : row.action == MacroRow::Action::Release ? "-"
                                                                     : "?";
        words += rowText(row) + QLatin1String(row.isEvent() ? mark : "");
    }
    return words.join(' ');
}

inline MacroRows rows(const QString &text)
{
    MacroRows made;
    for (const QString &word : text.split(' ', Qt::SkipEmptyParts)) {
        const MacroKey *key = KeyTable::find(word.chopped(1));
        made += word.endsWith("ms")
                    ? MacroRow::delay(delayOfText(word))
                    : MacroRow::event(key ? *key : KeyTable::noKey(),
                                      word.endsWith('+') ? MacroRow::Action::Press : MacroRow::Action::Release);
    }
    return made;
}

/** So many events, with delays from 0 to 70,000 ms and keys from the whole table. */
inline MacroRows many(int events)
{
    MacroRows made;
    for (int at = 0; at < events; ++at) {
        if (at > 0)
            made += MacroRow::delay(std::uint32_t(at - 1) * 70000 / 68);
        const MacroKey &key = KeyTable::keys()[std::size_t(KeyTable::keyCount - 1 - at / 2 * 3 % KeyTable::keyCount)];
        made += MacroRow::event(key, at % 2 ? MacroRow::Action::Release : MacroRow::Action::Press);
    }
    return made;
}

} // namespace MacroText
