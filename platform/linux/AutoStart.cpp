#include "platform/AutoStart.h"

#include "ProgramName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

// The desktop's own way: an entry in the user's autostart folder, in the form that freedesktop.org gives such entries.

namespace {

constexpr qint64 largestEntry = qint64{64} * 1024; // bytes; ours has some 200

QString entryFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1String("/autostart/") +
           QLatin1String(platform::programName) + QLatin1String(".desktop");
}

/** A value of type string: the escapes that any line of the file needs. */
QString entryText(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    text.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    return text.replace(QLatin1Char('\t'), QLatin1String("\\t"));
}

/**
 * A command line of a path alone, quoted. A percent sign would begin a field code and is doubled; desktops look for the
 * program before they take the doubling off, and find it only behind a program whose name has none.
 */
QString commandLine(const QString &path)
{
    QString quoted;
    for (const QChar character : path) {
        if (QStringLiteral("\"`$\\").contains(character))
            quoted += QLatin1Char('\\');
        quoted += character;
        if (character == QLatin1Char('%'))
            quoted += character;
    }
    const QString program = path.contains(QLatin1Char('%')) ? QStringLiteral("env ") : QString();
    return program + QLatin1Char('"') + quoted + QLatin1Char('"');
}

/** The user's desktop turns an entry off in one of these ways, and leaves the file. */
bool isOff(const QByteArray &line)
{
    const int equals = line.indexOf('=');
    const QByteArray key = line.left(equals).trimmed();
    const QByteArray value = line.mid(equals + 1).trimmed();
    return equals > 0 &&
           ((key == "Hidden" && value == "true") || (key == "X-GNOME-Autostart-enabled" && value == "false"));
}

bool fails(const QFileDevice &file)
{
    qWarning("%s: %s", qUtf8Printable(file.fileName()), qUtf8Printable(file.errorString()));
    return false;
}

} // namespace

bool platform::startsWithSystem()
{
    QFile entry(entryFile());
    if (!entry.open(QIODevice::ReadOnly))
        return false;
    bool present = false;
    const QList<QByteArray> lines = entry.read(largestEntry).split('\n');
    for (const QByteArray &line : lines) {
        if (isOff(line))
            return false;
        present = present || line.startsWith("Exec=");
    }
    return present;
}

bool platform::setStartsWithSystem(bool on, const std::string &executable)
{
    const QString path = QString::fromStdString(executable);
    if (!on) {
        QFile entry(entryFile());
        return !entry.exists() || entry.remove() || fails(entry);
    }
    if (path.isEmpty() || path.contains(QChar(u'\0')))
        return false;
    QDir().mkpath(QFileInfo(entryFile()).path());
    QSaveFile entry(entryFile());
    if (!entry.open(QIODevice::WriteOnly))
        return fails(entry);
    const QString text = QStringLiteral("[Desktop Entry]\n"
                                        "Type=Application\n"
                                        "Name=Halvarion\n"
                                        "Terminal=false\n"
                                        "TryExec=") +
                         entryText(path) + QStringLiteral("\nExec=") + entryText(commandLine(path)) + QLatin1Char('\n');
    entry.write(text.toUtf8());
    return (entry.flush() && entry.commit()) || fails(entry); // commit() alone takes a file without room for written
}
