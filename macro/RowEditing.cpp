#include "macro/RowEditing.h"

#include "macro/MacroTables.h"

#include <algorithm>

namespace {

MacroRow delay() { return MacroRow::delay(MacroTables::insertedDelay); }

RowEditing::Edited insert(MacroRows rows, int at, std::initializer_list<MacroRow> inserted)
{
    at = std::min(at, rows.size());
    int lastEvent = at;
    for (const MacroRow &row : inserted) {
        if (row.isEvent())
            lastEvent = at;
        rows.insert(at++, row);
    }
    return {rows, lastEvent};
}

bool isEnd(const MacroRows &rows, int current) { return current < 0 || current >= rows.size() - 1; }

} // namespace

RowEditing::Edited RowEditing::insertEvent(const MacroRows &rows, int current, const MacroRow &event)
{
    if (rows.isEmpty())
        return insert(rows, 0, {event});
    if (isEnd(rows, current))
        return insert(rows, rows.size(), {delay(), event});
    return insert(rows, rows.at(current).isEvent() ? current + 2 : current + 1, {event, delay()});
}

RowEditing::Edited RowEditing::insertPressAndRelease(const MacroRows &rows, int current, const MacroKey &key)
{
    const MacroRow press = MacroRow::event(key, MacroRow::Action::Press);
    const MacroRow release = MacroRow::event(key, MacroRow::Action::Release);
    if (rows.isEmpty())
        return insert(rows, 0, {press, delay(), release});
    if (isEnd(rows, current))
        return insert(rows, rows.size(), {delay(), press, delay(), release});
    if (current == 0)
        return insert(rows, 2, {press, delay(), release, delay()});
    if (!rows.at(current).isEvent())
        return insert(rows, current + 1, {press, delay(), release, delay()});
    return insert(rows, current + 1, {delay(), press, delay(), release});
}

std::optional<RowEditing::Edited> RowEditing::applyDelay(const MacroRows &rows, int current, std::uint32_t milliseconds)
{
    if (current <= 0 || current >= rows.size())
        return {};
    Edited edited{rows, current};
    if (rows.at(current).isEvent() && rows.at(current - 1).isEvent()) {
        edited.rows.insert(current, MacroRow::delay(milliseconds));
        return edited;
    }
    if (rows.at(current).isEvent())
        --edited.current;
    edited.rows[edited.current] = MacroRow::delay(milliseconds);
    return edited;
}

std::optional<RowEditing::Edited> RowEditing::remove(const MacroRows &rows, int current)
{
    constexpr int fewest = 4; // with fewer rows one pair less leaves nothing that is worth keeping
    if (rows.size() < fewest)
        return Edited{{}, -1};
    if (current < 0 || current >= rows.size())
        return {};
    const bool takesBefore = !rows.at(current).isEvent() || current == rows.size() - 1;
    const int other = takesBefore ? current - 1 : current + 1;
    Edited edited{rows, current};
    // Of two events in a row, which only a damaged file has, the other one stays.
    const bool isPair = other >= 0 && rows.at(other).isEvent() != rows.at(current).isEvent();
    edited.rows.remove(isPair ? std::min(current, other) : current, isPair ? 2 : 1);
    edited.current = std::min(isPair ? std::min(current, other) : current, edited.rows.size() - 1);
    return edited;
}
