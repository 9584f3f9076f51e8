#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

/**
 * A home folder that goes with the process, for readers of files. The log is silent: every input would write to it, and
 * the fuzzer has its own to say. FUZZ_LOG in the environment lets it speak.
 */
class FuzzHome
{
public:
    static FuzzHome &instance()
    {
        static FuzzHome home;
        return home;
    }

    QString path(const QString &name = QString()) const { return QDir(folder.path()).filePath(name); }

    /** A file with this content under a name that wasn't used before: QSettings keeps files that it knows by name. */
    QString newFile(const QByteArray &content)
    {
        if (!last.isEmpty())
            QFile::remove(last);
        last = path(QStringLiteral("%1.ini").arg(++count));
        write(last, content);
        return last;
    }
    static void write(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file %s: %s", qPrintable(path), qPrintable(file.errorString()));
    }

private:
    FuzzHome()
    {
        if (!folder.isValid())
            qFatal("no folder: %s", qPrintable(folder.errorString()));
        for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
            qputenv(name, QFile::encodeName(folder.path()));
        if (!qEnvironmentVariableIsSet("FUZZ_LOG"))
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
                if (type == QtFatalMsg)
                    std::fprintf(stderr, "%s\n", qPrintable(text));
            });
    }

    QTemporaryDir folder;
    QString last;
    int count = 0;
};
