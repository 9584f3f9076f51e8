#include "productdata/SafeFile.h"

#include <QDebug>
#include <QFile>
#include <QSaveFile>

bool replaceFile(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit()) {
        qWarning() << "a file could not be written:" << path << file.errorString();
        return false;
    }
    return true;
}

bool holdsBinaryValues(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = file.readAll();
    return content.contains("@Variant(") || content.contains("@DateTime(");
}
