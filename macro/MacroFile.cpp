#include "macro/MacroFile.h"

#include "macro/RepeatCode.h"
#include "productdata/FileName.h"
#include "productdata/SafeFile.h"
#include "productdata/UserFolders.h"

#include <QBuffer>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <utility>

namespace {

const QLatin1String extension(".ini");
const QLatin1String otherFiles("xml");

/** Bytes of a name in a mouse. */
constexpr int nameBytes = 30;
/** A whole macro has some 3 kB; what lies behind this much of a file is looked at no more. */
constexpr qint64 mostBytes = 4 << 20;
/** And so for its lines: a macro has 140. */
constexpr int mostLines = 10000;
/** No line of a macro comes near; a longer one holds nothing of use. */
constexpr int longestLine = 256;

QString folder() { return UserFolders::path(UserFolders::Folder::MacroPage); }

/** The file beside the real one in which a save was cut short: its content never counted. */
bool isLeftover(const QString &file)
{
    static const QRegularExpression temporary(QStringLiteral("\\.ini\\.[A-Za-z]{6}$"));
    return temporary.match(file).hasMatch();
}

/** A regular file. A link could lead out of the folder, and to open a pipe would wait for its other end. */
bool isOwnFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && !file.isSymLink();
}

/** One line of a file, without its line end. */
struct Line
{
    QByteArray text;
    bool isWhole; ///< it had a line end
};

MacroRow::Action actionOf(const QString &field, bool isWhole)
{
    if (isWhole && field == QLatin1String("0"))
        return MacroRow::Action::Press;
    if (isWhole && field == QLatin1String("1"))
        return MacroRow::Action::Release;
    return MacroRow::Action::Untold;
}

std::optional<MacroRow> rowOf(const Line &line)
{
    const QStringList fields = QString::fromUtf8(line.text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (fields.size() == 1)
        return MacroRow::delay(delayOfText(fields.first()));
    if (fields.size() != 3)
        return {};
    // The table spells codes with capitals, so "0x2b" is none of them.
    bool isCode = fields.first().size() == 4 && fields.first().startsWith(QLatin1String("0x")) &&
                  fields.first().midRef(2) == fields.first().midRef(2).toString().toUpper();
    const int code = isCode ? fields.first().midRef(2).toInt(&isCode, 16) : 0;
    const int kind = fields.at(1).toInt();
    const MacroKey &key = isCode ? KeyTable::find(code, kind) : KeyTable::noKey();
    return MacroRow::event(key, actionOf(fields.at(2), line.isWhole));
}

int repeatOf(const QByteArray &line)
{
    const QStringList fields = QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return RepeatCode::normalised(fields.value(0).toInt());
}

/** The next line of a text; one that is too long comes empty. */
Line takeLine(const QByteArray &text, int &at)
{
    const int end = text.indexOf('\n', at);
    const bool isWhole = end >= 0;
    const int from = at;
    int length = (isWhole ? end : text.size()) - from;
    at += length + 1;
    if (isWhole && length > 0 && text.at(end - 1) == '\r')
        --length;
    return {length <= longestLine ? text.mid(from, length) : QByteArray(), isWhole};
}

} // namespace

bool MacroFile::isFileName(const QString &name) { return FileName::isPortable(name); }

bool MacroFile::isTaken(const QString &name, const QStringList &names)
{
    return !isFileName(name) || name.contains(otherFiles) || names.contains(name, Qt::CaseInsensitive);
}

QString MacroFile::fitting(const QString &name)
{
    QString beginning = name.left(nameBytes); // a character has at least one byte
    while (beginning.toLocal8Bit().size() > nameBytes)
        beginning.chop(1);
    // What stands before the cut must be a name too: no half character, and no end that a file name can't have.
    while (!beginning.isEmpty() && (qAsConst(beginning).back().isHighSurrogate() ||
                                    beginning.endsWith(QLatin1Char(' ')) || beginning.endsWith(QLatin1Char('.'))))
        beginning.chop(1);
    return beginning;
}

QString MacroFile::path(const QString &name)
{
    return isFileName(name) ? folder() + QLatin1Char('/') + name + extension : QString();
}

QStringList MacroFile::names(XmlRule rule)
{
    QStringList found;
    bool isFirstXml = true;
    const QStringList files = QDir(folder()).entryList(QDir::Files | QDir::NoSymLinks, QDir::Name | QDir::IgnoreCase);
    for (const QString &file : files) {
        const bool isXml = file.contains(otherFiles);
        if (isXml && (rule == XmlRule::SkipAll || std::exchange(isFirstXml, false)))
            continue;
        const QString name = file.endsWith(extension) ? file.chopped(extension.size()) : file;
        // A file that another program put there, under a name that a macro can't have, couldn't be saved or sent.
        if (!isLeftover(file) && isFileName(name))
            found += name;
    }
    return found;
}

bool MacroFile::exists(const QString &name)
{
    const QString file = path(name);
    return !file.isEmpty() && isOwnFile(file);
}

std::optional<MacroContent> MacroFile::read(const QString &name)
{
    if (!exists(name))
        return {};
    QFile file(path(name));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "a macro could not be opened:" << file.fileName() << file.errorString();
        return {};
    }
    return parse(file.read(mostBytes));
}

MacroContent MacroFile::parse(const QByteArray &text)
{
    MacroContent content;
    if (text.isEmpty())
        return content;
    int at = 0;
    content.repeat = repeatOf(takeLine(text, at).text);
    int events = 0;
    for (int line = 0; at < text.size() && line < mostLines; ++line) {
        const std::optional<MacroRow> row = rowOf(takeLine(text, at));
        if (!row)
            continue;
        if (row->isEvent() && ++events > maximumMacroEvents) {
            // The delay in front of an event that isn't there.
            if (!content.rows.isEmpty() && !content.rows.last().isEvent())
                content.rows.removeLast();
            break;
        }
        // Delays alone would never end it.
        if (content.rows.size() < 2 * maximumMacroEvents)
            content.rows += *row;
    }
    return content;
}

QByteArray MacroFile::serialise(const MacroContent &content, LineEnds ends)
{
    QBuffer text;
    text.open(QIODevice::WriteOnly | QIODevice::Text); // which makes the line ends of this system
    text.write(QByteArray::number(content.repeat.value_or(RepeatCode::once)) + '\n');
    if (ends == LineEnds::BareBehindFirst)
        text.setTextModeEnabled(false);
    for (const MacroRow &row : content.rows) {
        if (!row.isEvent()) {
            text.write(delayText(row.delayMs).toLatin1() + '\n');
            continue;
        }
        const QString code = QStringLiteral("%1").arg(row.code, 2, 16, QLatin1Char('0')).toUpper();
        text.write("0x" + code.toLatin1() + ' ' + QByteArray::number(row.kind) +
                   (row.action == MacroRow::Action::Press ? " 0\n" : " 1\n"));
    }
    return text.data();
}

bool MacroFile::write(const QString &name, const MacroContent &content, LineEnds ends)
{
    const QString file = path(name);
    if (file.isEmpty() || QFileInfo(file).isSymLink()) {
        qWarning() << "no file can be made for the macro" << name;
        return false;
    }
    QDir().mkpath(folder());
    return replaceFile(file, serialise(content, ends));
}

bool MacroFile::create(const QString &name)
{
    QFile file(path(name));
    QDir().mkpath(folder());
    if (file.fileName().isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        qWarning() << "no file could be made for the macro" << name << file.errorString();
        return false;
    }
    return true;
}

bool MacroFile::rename(const QString &from, const QString &to)
{
    QFile file(path(from));
    if (file.fileName().isEmpty() || !isFileName(to) || !file.rename(path(to))) {
        qWarning() << "a macro could not be renamed:" << from << to << file.errorString();
        return false;
    }
    return true;
}

bool MacroFile::remove(const QString &name)
{
    QFile file(path(name));
    if (file.fileName().isEmpty() || !file.remove()) {
        qWarning() << "the file of a macro could not be removed:" << name << file.errorString();
        return false;
    }
    return true;
}
