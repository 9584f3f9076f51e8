#include "sensor/DpiRange.h"

#include <QDebug>

namespace {

bool readRow(const QStringList &list, int first, DpiRangeRow &row)
{
    bool isMin = false;
    bool isMax = false;
    bool isStep = false;
    row = {list.at(first).trimmed().toInt(&isMin), list.at(first + 1).trimmed().toInt(&isMax),
           list.at(first + 2).trimmed().toInt(&isStep)};
    return isMin && isMax && isStep && row.min >= 0 && row.min <= row.max && row.max <= highestDpi && row.step > 0 &&
           row.step <= highestDpi;
}

bool readTable(const QStringList &list, DpiRangeTable &table)
{
    constexpr int rowLength = 3;
    table.DpiRangeCount = (list.size() - 1) / rowLength;
    if (table.DpiRangeCount < 1 || table.DpiRangeCount > DpiRangeTable::maximumRows)
        return false;
    for (int index = 0; index < table.DpiRangeCount; ++index) {
        DpiRangeRow &row = table.Rows[static_cast<std::size_t>(index)];
        if (!readRow(list, index * rowLength, row) || (index > 0 && row.min < table.row(index - 1).max))
            return false;
    }
    bool isNumber = false;
    table.DpiRangeFlags = list.last().trimmed().toInt(&isNumber, 16);
    return isNumber;
}

bool inRow(const DpiRangeRow &row, int dpi) { return row.min <= dpi && dpi <= row.max; }

/** True in the gap above a row that isn't the last. */
bool inGapAbove(const DpiRangeTable &table, int index, int dpi)
{
    return index + 1 < table.DpiRangeCount && table.row(index).max < dpi && dpi < table.row(index + 1).min;
}

} // namespace

bool parseDpiRange(const QStringList &list, DpiRangeTable &table)
{
    DpiRangeTable read;
    if (!readTable(list, read)) {
        qWarning() << "DPIRange: not a list of at most four rising rows of Min, Max, Step and the flags:" << list;
        return false;
    }
    table = read;
    return true;
}

SnappedDpi Snap(const DpiRangeTable &table, int dpi)
{
    for (int index = 0; index < table.DpiRangeCount; ++index) {
        const DpiRangeRow &row = table.row(index);
        if (inRow(row, dpi))
            return {dpi - dpi % row.step, row.step};
        if (inGapAbove(table, index, dpi))
            return {table.row(index + 1).min, table.row(index + 1).step};
    }
    return {dpi, 0};
}

int stepUp(const DpiRangeTable &table, int dpi)
{
    // From the top down: where two rows meet, the upper one says how far the next value is.
    for (int index = table.DpiRangeCount - 1; index >= 0; --index) {
        const DpiRangeRow &row = table.row(index);
        const bool isLast = index == table.DpiRangeCount - 1;
        if (row.min <= dpi && (isLast ? dpi <= row.max : dpi < row.max))
            return dpi + row.step;
        if (!isLast && row.max <= dpi && dpi < table.row(index + 1).min)
            return table.row(index + 1).min;
    }
    return dpi;
}

int stepDown(const DpiRangeTable &table, int dpi)
{
    for (int index = 0; index < table.DpiRangeCount; ++index) {
        if (inRow(table.row(index), dpi))
            return dpi - table.row(index).step;
        if (inGapAbove(table, index, dpi))
            return table.row(index + 1).min;
    }
    return dpi;
}
