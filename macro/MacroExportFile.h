#pragma once

#include "macro/MacroRows.h"

#include <QByteArray>

/**
 * The file in which users hand a macro to each other: a Qt data stream that holds the texts of the rows as they were
 * shown, their pictures, and a press or release mark.
 *
 * The reader trusts nothing: no length, no count, and no picture before its size is known.
 */
namespace MacroExportFile {

/** A `QIcon` for each kind of row, as QDataStream writes it. */
struct Icons
{
    QByteArray press;
    QByteArray release;
    QByteArray delay;
};

struct Row
{
    MacroRow row;
    QByteArray picture; ///< a PNG file, of at most 128 by 128 pixels; empty for a row without one
};

/** What stands before the rows. */
struct Header
{
    bool isMacro = false; ///< the magic is right
    QString name;         ///< as the file has it, no name that may be used for a file unseen
    int repeat = 1;       ///< see RepeatCode, normalised
};

/** `repeat` is a RepeatCode. A name of more than 47 bytes in UTF-8 is cut at a character. */
QByteArray write(const QString &name, int repeat, const MacroRows &rows, const Icons &icons,
                 const MouseButtonNames &buttons = MouseButtonNames::current());

/** The header of a file's content; nothing if even that is damaged. */
std::optional<Header> readHeader(const QByteArray &content);

/**
 * The rows behind the header, with at most 70 events; nothing if one of them is damaged. A file that ends behind a
 * whole row, whatever count it gave, holds the rows before. \param buttons names that the mouse buttons had where the
 * file was written, most likely first. A name that is unknown is a key that presses nothing.
 */
std::optional<QVector<Row>> readRows(const QByteArray &content, const QVector<MouseButtonNames> &buttons);

/** Bytes of a file that are looked at; a whole macro with pictures stays far below. */
constexpr qint64 mostBytes = 8 << 20;

} // namespace MacroExportFile
