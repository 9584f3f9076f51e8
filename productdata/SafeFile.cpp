#include "productdata/SafeFile.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstring>

namespace {

/** Appends the character of an escape of an INI file with any number of digits, and moves `at` behind them. */
void appendEscaped(QByteArray &plain, const QByteArray &content, int &at, int base)
{
    const int first = at;
    unsigned value = 0;
    for (; at < content.size(); ++at) {
        bool isDigit = false;
        const unsigned digit = content.mid(at, 1).toUInt(&isDigit, base);
        if (!isDigit)
            break;
        value = value * static_cast<unsigned>(base) + digit;
    }
    value &= 0xffffU; // QSettings makes one UTF-16 unit of it
    if (at > first)   // and nothing of an escape without digits
        plain += value < 0x80U ? static_cast<char>(value) : '?';
}

/**
 * An INI file without what QSettings takes off before it looks at a value: quotes, escapes, joined lines and marks of
 * the byte order. Escapes of a character that no mark below has become a question mark.
 */
QByteArray unescaped(const QByteArray &content)
{
    static const char named[] = "abfnrtv\"?'\\";
    QByteArray plain;
    for (int at = 0; at < content.size();) {
        const char character = content.at(at++);
        if (character == '\\' && at < content.size()) {
            const char escape = content.at(at++);
            const bool isOctal = escape >= '0' && escape <= '7';
            if (isOctal || escape == 'x')
                appendEscaped(plain, content, isOctal ? --at : at, isOctal ? 8 : 16);
            else if (escape != '\0' && std::strchr(named, escape))
                plain += '?';
        } else if (character == '\xEF' && content.mid(at, 2) == "\xBB\xBF") {
            at += 2;
        } else if (character != '"') {
            plain += character;
        }
    }
    return plain;
}

} // namespace

bool replaceFile(const QString &path, const QByteArray &content)
{
    // A pipe or a device would be replaced by a file of its name, for whoever uses it.
    const QFileInfo place(path);
    if (place.exists() && !place.isFile()) {
        qWarning() << "what is no file is not replaced:" << path;
        return false;
    }
    QSaveFile file(path);
    // Flushed by hand: commit() would not notice that the last bytes found no room, and rename what there is.
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush() || !file.commit()) {
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
    const QByteArray plain = unescaped(file.readAll());
    for (int at = plain.indexOf('@'); at >= 0; at = plain.indexOf('@', at + 1)) {
        if (!plain.mid(at, 9).startsWith("@Variant(") && !plain.mid(at, 10).startsWith("@DateTime("))
            continue;
        int before = at - 1;
        while (before >= 0 && (plain.at(before) == ' ' || plain.at(before) == '\t'))
            --before;
        // Only the beginning of a value, or of an element of a list, is taken for such a mark.
        if (before >= 0 && (plain.at(before) == '=' || plain.at(before) == ','))
            return true;
    }
    return false;
}
