#include "macro/MacroRows.h"

#include <algorithm>

namespace {
const QLatin1String unit("ms");
}

int eventCount(const MacroRows &rows)
{
    return int(std::count_if(rows.begin(), rows.end(), [](const MacroRow &row) { return row.isEvent(); }));
}

QString delayText(std::uint32_t milliseconds) { return QString::number(milliseconds) + unit; }

std::uint32_t delayOfText(QString text) { return text.remove(unit).toUInt(); }

QString rowText(const MacroRow &row, const MouseButtonNames &buttons)
{
    return row.isEvent() ? KeyTable::name(row.key(), buttons) : delayText(row.delayMs);
}
