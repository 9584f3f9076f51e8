#pragma once

#include "macro/MacroRows.h"

#include <QString>
#include <QVector>

#include <cstdint>

/** A key of a macro in time, from its press to its release. */
struct MacroBar
{
    std::uint8_t code;
    std::uint8_t kind;
    qint64 from;    ///< ms from the start
    qint64 to;      ///< ms; the end of the macro for a key that is never let go
    bool isLetGo;   ///< false for that key
    int lane;       ///< from 0; bars of one lane don't overlap
    int pressRow;   ///< row in the list, -1 for a release without a press
    int releaseRow; ///< -1 for a key that is never let go
};

/** What the time line draws of a macro. */
struct MacroTimes
{
    QVector<MacroBar> bars;
    QVector<qint64> rowTimes; ///< ms from the start at which each row begins
    qint64 length = 0;        ///< ms
    int lanes = 0;
};

/** The times of a macro's rows. */
MacroTimes macroTimes(const MacroRows &rows);

/** "850 ms", "12.35 s", "20 s". */
QString durationText(qint64 milliseconds);
