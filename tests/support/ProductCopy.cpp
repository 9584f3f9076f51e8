#include "support/ProductCopy.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cstdio>

namespace {

const char *const copyMark = "HALVARION_PRODUCT_COPY";
const QByteArray tellMark = "TOLD ";

void copyTree(const QString &from, const QString &to)
{
    QDirIterator entries(from, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString source = entries.next();
        const QString target = to + QLatin1Char('/') + QDir(from).relativeFilePath(source);
        QDir().mkpath(QFileInfo(target).path());
        QFile::copy(source, target);
    }
}

QProcessEnvironment copyEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
#ifdef Q_OS_WIN // which looks for libraries beside the program, then here, and where nobody debugs loses the log
    if (ProductCopy::isCopy())
        return environment; // the libraries are where the first copy found them, and not beside it
    environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QCoreApplication::applicationDirPath());
    environment.insert(QStringLiteral("PATH"), QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) +
                                                   QLatin1Char(';') + environment.value(QStringLiteral("PATH")));
#endif
    environment.insert(QLatin1String(copyMark), QStringLiteral("1"));
    return environment;
}

} // namespace

ProductCopy::ProductCopy() : program(folder.filePath(QFileInfo(QCoreApplication::applicationFilePath()).fileName()))
{
    const QString original = QCoreApplication::applicationDirPath();
    QFile::copy(QCoreApplication::applicationFilePath(), program);
    QFile::copy(original + QStringLiteral("/driver_sensor.h"), folder.filePath(QStringLiteral("driver_sensor.h")));
    for (const char *name : {"usersetting", "Language"})
        copyTree(original + QLatin1Char('/') + QLatin1String(name), folder.filePath(QLatin1String(name)));
#ifdef Q_OS_WIN // whose links are for its desktop alone; run() says where the libraries are
    copyTree(original + QStringLiteral("/Picture"), folder.filePath(QStringLiteral("Picture")));
#else
    // The pictures are never damaged, and many: a link will do. The library is found beside the executable.
    QFile::link(original + QStringLiteral("/Picture"), folder.filePath(QStringLiteral("Picture")));
    const QStringList libraries = QDir(original).entryList({QStringLiteral("libportwire*")});
    for (const QString &library : libraries)
        QFile::link(original + QLatin1Char('/') + library, folder.filePath(library));
#endif
}

void ProductCopy::change(const QString &name, const std::function<QByteArray(QByteArray)> &changed)
{
    QFile file(path(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("there is no %s", qPrintable(name));
    const QByteArray content = changed(file.readAll());
    file.close(); // Windows doesn't remove a file that is open
    file.remove();
    if (!content.isEmpty() && file.open(QIODevice::WriteOnly))
        file.write(content);
}

ProductCopy::Result ProductCopy::run(const QString &testFunction, int milliseconds)
{
    QProcess process;
    process.setProcessEnvironment(copyEnvironment());
    process.start(program, {testFunction});
    Result result;
    if (!process.waitForFinished(milliseconds)) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        result.exitCode = process.exitCode();
    }
    result.log = process.readAllStandardError();
    const QByteArray output = process.readAllStandardOutput();
    if (result.exitCode != 0)
        result.log += output; // says which check failed
    const QList<QByteArray> lines = output.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(tellMark))
            result.told += (result.told.isEmpty() ? QString() : QStringLiteral("\n")) +
                           QString::fromUtf8(line.mid(tellMark.size())).remove(QLatin1Char('\r')); // of Windows
    }
    if (result.exitCode != 0)
        fprintf(stderr, "%s\n", result.log.constData());
    return result;
}

int ProductCopy::runInstead()
{
    QProcess process;
    process.setProcessEnvironment(copyEnvironment());
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program, QCoreApplication::arguments().mid(1));
    process.waitForFinished(-1);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

bool ProductCopy::isCopy() { return qEnvironmentVariableIsSet(copyMark); }

void ProductCopy::tell(const QString &line)
{
    fprintf(stdout, "%s%s\n", tellMark.constData(), line.toUtf8().constData());
    fflush(stdout);
}
