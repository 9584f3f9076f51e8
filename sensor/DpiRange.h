#pragma once

#include <QStringList>

#include <array>

/** Above any sensor; keeps sums and products of DPI values in an int. */
constexpr int highestDpi = 1000000;

/** A stretch of DPI values that a sensor can have: from min to max in steps. */
struct DpiRangeRow
{
    int min;
    int max;
    int step; ///< above 0
};

/** All stretches of a sensor, rising; between two there may be a gap. */
struct DpiRangeTable
{
    static constexpr int maximumRows = 4;

    std::array<DpiRangeRow, maximumRows> Rows{{{50, 10000, 50}, {}, {}, {}}};
    int DpiRangeCount = 1; ///< rows in use, 1 to 4
    int DpiRangeFlags = 0; ///< how the rows behind the first are coded: 0, 0x11, 0x22 or 0x33

    int minimum() const { return Rows[0].min; }
    int maximum() const { return row(DpiRangeCount - 1).max; }
    const DpiRangeRow &row(int index) const { return Rows[static_cast<std::size_t>(index)]; }
};

/**
 * Reads rows of Min, Max, Step in decimal and the flags in hexadecimal behind them.
 * \return false, with the table as it was and the reason in the log, if there are no rows or more than four, a number
 * is none or above highestDpi, a step isn't above 0 or the rows don't rise.
 */
bool parseDpiRange(const QStringList &list, DpiRangeTable &table);

/** A value that the sensor can have, and the step that holds there. */
struct SnappedDpi
{
    int value;
    int pageStep; ///< 0 outside of all rows: the step stays as it is
};

/**
 * The value that the sensor takes for `dpi`: the multiple of the step at or below it, or the start of the next row from
 * inside a gap. A value outside of all that stays.
 */
SnappedDpi Snap(const DpiRangeTable &table, int dpi);

/** One step up from a value; may pass the end of the last row. Outside of all rows the value stays. */
int stepUp(const DpiRangeTable &table, int dpi);
/** One step down; from inside a gap it is the start of the row above. May pass the start of the first row. */
int stepDown(const DpiRangeTable &table, int dpi);
