#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

/** What a test puts on the disk, and finds there. */
namespace Files {

/** Writes a file, its folder with it; ends the test when that can't be. */
inline void put(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size())
        qFatal("no file %s", qPrintable(path));
}

/** Nothing where there is no file. */
inline QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace Files
