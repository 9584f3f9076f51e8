#pragma once

#include "macro/MacroRows.h"

#include <QStringList>

/**
 * The macros on this PC: one text file each in one folder. The name of a macro is the name of its file; it comes from
 * users, export files and mice, and none of these functions leaves the folder with it, whatever it is.
 */
namespace MacroFile {

/** False for what can't be the name of a file in the folder, on this or another system. */
bool isFileName(const QString &name);

/**
 * True for a name that a new macro can't have: no file name, one of `names` but for upper and lower case, or one that
 * the lists wouldn't show.
 */
bool isTaken(const QString &name, const QStringList &names);

/** The beginning of a name that fits into a mouse: 30 bytes in the local 8-bit encoding, no half character. */
QString fitting(const QString &name);

/** Full path of a macro's file; empty for what is no file name. */
QString path(const QString &name);

/** What each of the two lists of macros leaves out, of the files whose names hold "xml". */
enum class XmlRule {
    SkipAll,
    SkipFirst, ///< the first in the order of the list
};

/** The names of all macros, sorted without regard to case. Links and folders are no macros. */
QStringList names(XmlRule rule = XmlRule::SkipAll);

/** True if the macro has a file. */
bool exists(const QString &name);

/**
 * What the file holds, with at most 70 events, rows of untold action included; nothing if it isn't there or can't be
 * opened. Damaged lines, however long, cost nothing but themselves.
 */
std::optional<MacroContent> read(const QString &name);
/** The same of the bytes of a file. */
MacroContent parse(const QByteArray &text);

/** The line ends of a file: those of this system, or in what came out of a mouse bare ones behind the first line. */
enum class LineEnds { Native, BareBehindFirst };

QByteArray serialise(const MacroContent &content, LineEnds ends = LineEnds::Native);

/**
 * Replaces the file in one step or makes it: at any moment it holds the old content or the new. A repeat code that is
 * missing is written as once.
 * \return false, with the reason in the log, for what is no file name, a link, and a disk that doesn't take it.
 */
bool write(const QString &name, const MacroContent &content, LineEnds ends = LineEnds::Native);

/** Makes the empty file of a new macro. \return false if something of that name is there, or as write(). */
bool create(const QString &name);

/** \return false if it couldn't be renamed; the old file then stands as it was. Never replaces another file. */
bool rename(const QString &from, const QString &to);

bool remove(const QString &name);

} // namespace MacroFile
