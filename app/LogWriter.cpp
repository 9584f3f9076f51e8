#include "app/LogWriter.h"

#include "productdata/UserFolders.h"

#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QMessageLogContext>
#include <QMutex>

void writeLog(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    static QMutex mutex;
    const QMutexLocker locker(&mutex);
    if (type != QtDebugMsg)
        return;
    const QString place = QStringLiteral("File:(%1) Line:(%2)").arg(QString::fromUtf8(context.file)).arg(context.line);
    const QString time =
        QStringLiteral("(%1)").arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")));
    // One call with four arguments: a message that holds "%4" must not take the time's place.
    const QString line = QStringLiteral("%1 %2 %3 %4").arg(QStringLiteral("Debug:"), place, message, time);

    const QString day = QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd"));
    QFile file(UserFolders::path(UserFolders::Folder::Log) + QLatin1Char('/') + day + QStringLiteral(".txt"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    file.write(line.toUtf8() + "\r\n");
    file.flush();
}
