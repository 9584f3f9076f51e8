#pragma once

#include <QString>

/**
 * What may be the name of a file on every system that the program runs on. A name that a user types on one of them
 * travels with files and mice to the others.
 */
namespace FileName {

/** False for separators, control characters and what some system keeps for itself. */
bool isCharacter(QChar character);

/**
 * True if the text, with an extension behind it, names a file of its own in whatever folder it is put. False for the
 * empty name, one that starts with a dot or ends in a dot or a blank, names that Windows reserves (`CON`, `LPT1`, ...),
 * and what no encoding of text holds.
 */
bool isPortable(const QString &name);

} // namespace FileName
