#include "platform/Registry.h"

#include "ProgramName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QMutex>
#include <QSaveFile>
#include <QStandardPaths>

#include <cstring>

// The registry lives in one INI file of the user's config folder: a key is a section, its values are the lines in it.
// The file is treated as lines and not through QSettings: that unpacks values of any type, and a damaged "@Variant"
// makes it ask for gigabytes. A line that means nothing here stays as it is.

namespace {

using platform::programName;

constexpr qint64 largestFile = qint64{16} * 1024 * 1024; // bytes; a file of some ten lines is usual

QMutex registryMutex;

/** A name or text in one line: what has a meaning there, and blanks at the ends, become "%" and two digits. */
QByteArray encoded(const std::string &text)
{
    static const char special[] = "%=[];#@";
    QByteArray line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        const bool outerBlank = character == ' ' && (i == 0 || i + 1 == text.size());
        const bool control = static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
        if (control || outerBlank || std::strchr(special, character))
            line += '%' + QByteArray(1, character).toHex();
        else
            line += character;
    }
    return line;
}

std::string decoded(const QByteArray &line) { return QByteArray::fromPercentEncoding(line.trimmed()).toStdString(); }

/** The name of a value as it stands in its line; "@" for the key's own value. */
QByteArray lineName(const std::string &value) { return value.empty() ? QByteArray("@") : encoded(value); }

class RegistryFile
{
public:
    RegistryFile() : locker(&registryMutex), path(pathInConfigFolder()) { load(); }

    /** Empty when there is none. */
    std::string text(const std::string &key, const std::string &value) const
    {
        const int line = seek(key, value).value;
        return line < 0 ? std::string() : decoded(lines[line].mid(lines[line].indexOf('=') + 1));
    }

    void set(const std::string &key, const std::string &value, const std::string &text)
    {
        const QByteArray line = lineName(value) + '=' + encoded(text);
        const Place place = seek(key, value);
        if (place.value >= 0) {
            lines[place.value] = line;
        } else if (place.end >= 0) {
            lines.insert(place.end, line);
        } else {
            lines << '[' + encoded(key) + ']' << line;
        }
    }

    /** Removes one line; false when there is none. */
    bool remove(const std::string &key, const std::string &value)
    {
        const int line = seek(key, value).value;
        if (line >= 0)
            lines.removeAt(line);
        return line >= 0;
    }

    bool store()
    {
        QDir().mkpath(QFileInfo(path).path());
        QSaveFile file(path);
        if (readable && file.open(QIODevice::WriteOnly)) {
            for (const QByteArray &line : qAsConst(lines))
                file.write(line + '\n');
            if (file.flush() && file.commit()) // commit() alone renames a file for which there was no room
                return true;
        }
        qWarning("%s can't be written", qUtf8Printable(path));
        return false;
    }

private:
    struct Place
    {
        int value = -1; // line of the value
        int end = -1;   // line behind the key's last one
    };

    static QString pathInConfigFolder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') +
               QLatin1String(programName) + QLatin1String("/registry.ini");
    }

    void load()
    {
        QFile file(path);
        if (!file.exists())
            return;
        readable = file.open(QIODevice::ReadOnly) && file.size() <= largestFile;
        if (!readable) {
            qWarning("%s can't be read", qUtf8Printable(path));
            return;
        }
        lines = file.readAll().split('\n');
        if (lines.last().isEmpty())
            lines.removeLast();
    }

    Place seek(const std::string &key, const std::string &value) const
    {
        Place place;
        bool inKey = false;
        for (int i = 0; i < lines.size(); ++i) {
            const QByteArray line = lines[i].trimmed();
            const int equals = line.indexOf('=');
            if (line.startsWith('[') && line.endsWith(']'))
                inKey = decoded(line.mid(1, line.size() - 2)) == key;
            else if (inKey && place.value < 0 && equals >= 0 && isNamed(line.left(equals).trimmed(), value))
                place.value = i;
            if (inKey && !line.isEmpty())
                place.end = i + 1;
        }
        return place;
    }

    static bool isNamed(const QByteArray &name, const std::string &value)
    {
        if (name.isEmpty() || name.startsWith(';') || name.startsWith('#'))
            return false;
        return name == "@" ? value.empty() : decoded(name) == value;
    }

    QMutexLocker locker;
    QString path;
    QList<QByteArray> lines;
    bool readable = true; // or missing; what can't be read isn't overwritten either
};

} // namespace

std::string platform::registryText(const std::string &key, const std::string &value)
{
    return RegistryFile().text(key, value);
}

bool platform::setRegistryText(const std::string &key, const std::string &value, const std::string &text)
{
    RegistryFile file;
    file.set(key, value, text);
    return file.store();
}

bool platform::removeRegistryValue(const std::string &key, const std::string &value)
{
    RegistryFile file;
    if (!file.remove(key, value))
        return true;
    while (file.remove(key, value)) {
        // a value that was written by hand may stand twice
    }
    return file.store();
}
