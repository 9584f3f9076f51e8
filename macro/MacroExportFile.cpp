#include "macro/MacroExportFile.h"

#include "macro/ByteReader.h"
#include "macro/RepeatCode.h"

#include <QDataStream>

namespace {

const char *const magic = "Velko";
constexpr int magicBytes = 12;
constexpr int nameBytes = 48;
constexpr int repeatBytes = 12;
/** UTF-16 bytes of a row's text; a key's name has some 20 letters in any language. */
constexpr quint32 longestText = 1024;
/** Bytes of the mark of a row: "0" or "1" and NUL, written as bytes and read back as one big-endian UTF-16 unit. */
constexpr quint32 markBytes = 2;
constexpr char16_t pressMark = 0x3000;

/** A field of fixed length that holds a NUL-terminated text. */
QByteArray field(QByteArray text, int length)
{
    text.truncate(length - 1);
    return text.append(QByteArray(length - text.size(), '\0'));
}

/** The beginning of a name whose UTF-8 form leaves room for the NUL. */
QByteArray nameField(QString name)
{
    while (name.toUtf8().size() >= nameBytes || (!name.isEmpty() && qAsConst(name).back().isHighSurrogate()))
        name.chop(1);
    return field(name.toUtf8(), nameBytes);
}

void putBytes(QDataStream &stream, const QByteArray &bytes)
{
    stream.writeBytes(bytes.constData(), static_cast<uint>(bytes.size()));
}

void putRaw(QDataStream &stream, const QByteArray &bytes) { stream.writeRawData(bytes.constData(), bytes.size()); }

/** A field that must have this length, as text up to its first NUL. */
std::optional<QByteArray> takeField(ByteReader &reader, quint32 length)
{
    const quint32 given = reader.takeNumber();
    const QByteArray bytes = reader.take(given);
    if (reader.isDamaged() || given != length)
        return {};
    return bytes.left(bytes.indexOf('\0') >= 0 ? bytes.indexOf('\0') : bytes.size());
}

std::optional<MacroExportFile::Header> takeHeader(ByteReader &reader)
{
    const auto mark = takeField(reader, magicBytes);
    const auto name = mark ? takeField(reader, nameBytes) : std::nullopt;
    const auto repeat = name ? takeField(reader, repeatBytes) : std::nullopt;
    if (!repeat)
        return {};
    return MacroExportFile::Header{*mark == magic, QString::fromUtf8(*name), RepeatCode::normalised(repeat->toInt())};
}

const MacroKey &keyOfName(const QString &name, const QVector<MouseButtonNames> &languages)
{
    for (const MouseButtonNames &buttons : languages) {
        if (const MacroKey *key = KeyTable::find(name, buttons))
            return *key;
    }
    return KeyTable::noKey();
}

std::optional<MacroExportFile::Row> takeRow(ByteReader &reader, const QVector<MouseButtonNames> &buttons)
{
    const QString text = reader.takeText(longestText);
    const QByteArray picture = reader.takeIcon();
    if (reader.isDamaged())
        return {};
    if (text.contains(QLatin1String("ms")))
        return MacroExportFile::Row{MacroRow::delay(delayOfText(text)), picture};
    const QString mark = reader.takeText(markBytes);
    if (reader.isDamaged())
        return {};
    const bool isPress = mark == QChar(pressMark);
    return MacroExportFile::Row{
        MacroRow::event(keyOfName(text, buttons), isPress ? MacroRow::Action::Press : MacroRow::Action::Release),
        picture};
}

} // namespace

QByteArray MacroExportFile::write(const QString &name, int repeat, const MacroRows &rows, const Icons &icons,
                                  const MouseButtonNames &buttons)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    putBytes(stream, field(magic, magicBytes));
    putBytes(stream, nameField(name));
    putBytes(stream, field(QByteArray::number(repeat), repeatBytes));
    stream << qint32(rows.size());
    for (const MacroRow &row : rows) {
        stream << rowText(row, buttons);
        const bool isPress = row.action == MacroRow::Action::Press;
        putRaw(stream, !row.isEvent() ? icons.delay : isPress ? icons.press : icons.release);
        if (row.isEvent())
            putBytes(stream, field(isPress ? "0" : "1", markBytes));
    }
    return content;
}

std::optional<MacroExportFile::Header> MacroExportFile::readHeader(const QByteArray &content)
{
    ByteReader reader(content);
    return takeHeader(reader);
}

std::optional<QVector<MacroExportFile::Row>> MacroExportFile::readRows(const QByteArray &content,
                                                                       const QVector<MouseButtonNames> &buttons)
{
    ByteReader reader(content);
    if (!takeHeader(reader))
        return {};
    const auto count = static_cast<qint32>(reader.takeNumber());
    if (reader.isDamaged())
        return {};
    QVector<Row> rows;
    int events = 0;
    for (qint32 at = 0; at < count && !reader.atEnd(); ++at) {
        const std::optional<Row> row = takeRow(reader, buttons);
        if (!row)
            return {};
        if (row->row.isEvent() && ++events > maximumMacroEvents) {
            if (!rows.isEmpty() && !rows.last().row.isEvent())
                rows.removeLast(); // the delay in front of an event that isn't there
            break;
        }
        if (rows.size() < 2 * maximumMacroEvents)
            rows += *row;
    }
    return rows;
}
