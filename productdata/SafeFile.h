#pragma once

#include <QByteArray>
#include <QString>

/**
 * Replaces a file in one step: the new content is written beside it and renamed over it, so that a crash in the middle
 * leaves the old content whole.
 * \return false, with the reason in the log, if it could not be written; the old file then stands as it was.
 */
bool replaceFile(const QString &path, const QByteArray &content);

/**
 * True if an INI file holds values in a binary form that QSettings would read with lengths taken from the file. This
 * program never writes them; in a damaged file such a length can ask for more memory than there is.
 */
bool holdsBinaryValues(const QString &path);
