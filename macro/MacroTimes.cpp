#include "macro/MacroTimes.h"

#include <algorithm>
#include <cmath>

namespace {

/** The bar of this key that is still down; null if it is up. */
MacroBar *downBar(QVector<MacroBar> &bars, const MacroRow &row)
{
    const auto found = std::find_if(bars.rbegin(), bars.rend(), [&row](const MacroBar &bar) {
        return !bar.isLetGo && bar.code == row.code && bar.kind == row.kind;
    });
    return found != bars.rend() ? &*found : nullptr;
}

/** Gives each bar the first lane in which it overlaps no other. Bars come in the order of their beginnings. */
int setLanes(QVector<MacroBar> &bars)
{
    QVector<qint64> ends; // of the last bar in each lane
    for (MacroBar &bar : bars) {
        const auto isFree = [&bar](qint64 end) { return end <= bar.from; };
        const auto lane = std::find_if(ends.begin(), ends.end(), isFree);
        bar.lane = int(lane - ends.begin());
        // A bar of no length has its place all the same.
        const qint64 end = std::max(bar.to, bar.from + 1);
        if (lane == ends.end())
            ends += end;
        else
            *lane = end;
    }
    return ends.size();
}

} // namespace

MacroTimes macroTimes(const MacroRows &rows)
{
    MacroTimes times;
    for (int at = 0; at < rows.size(); ++at) {
        const MacroRow &row = rows.at(at);
        times.rowTimes += times.length;
        if (!row.isEvent()) {
            times.length += row.delayMs;
            continue;
        }
        MacroBar *down = downBar(times.bars, row);
        const bool isPress = row.action == MacroRow::Action::Press;
        if (isPress && !down) {
            times.bars += MacroBar{row.code, row.kind, times.length, times.length, false, 0, at, -1};
        } else if (!isPress && down) {
            down->to = times.length;
            down->isLetGo = true;
            down->releaseRow = at;
        } else if (!isPress) {
            times.bars += MacroBar{row.code, row.kind, times.length, times.length, true, 0, -1, at};
        }
    }
    for (MacroBar &bar : times.bars) {
        if (!bar.isLetGo)
            bar.to = times.length;
    }
    times.lanes = setLanes(times.bars);
    return times;
}

QString durationText(qint64 milliseconds)
{
    if (milliseconds < 1000)
        return QStringLiteral("%1 ms").arg(milliseconds);
    const double hundredths = std::round(double(milliseconds) / 10) / 100;
    return QStringLiteral("%1 s").arg(hundredths, 0, 'g', 12); // without zeros at the end
}
