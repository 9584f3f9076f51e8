#include "macro/ByteReader.h"

#include <QtEndian>

namespace {

/** The icon engine that Qt itself makes of picture files. */
const QLatin1String ownEngine("QPixmapIconEngine");
constexpr quint32 longestEngineName = 256;
/** UTF-16 bytes of a path. */
constexpr quint32 longestPath = 8192;
/** States of a picture times its sizes; one file is one of them. */
constexpr quint32 mostPictures = 32;
constexpr quint32 largestSide = 128;
constexpr int mostPngBytes = 256 << 10;
const QByteArray pngSignature("\x89PNG\r\n\x1a\n", 8);
constexpr quint32 chunkFrame = 12;  ///< length, type and checksum
constexpr int headerBytes = 8;      ///< width and height at the beginning of the first chunk's data
constexpr quint32 placeInIcon = 16; ///< behind each picture: its size, mode and state

} // namespace

QByteArray ByteReader::take(quint32 length)
{
    if (damaged || length > static_cast<quint32>(bytes.size() - at)) {
        fail();
        return {};
    }
    at += static_cast<int>(length);
    return bytes.mid(at - static_cast<int>(length), static_cast<int>(length));
}

quint32 ByteReader::takeNumber()
{
    const QByteArray number = take(4);
    return damaged ? 0 : qFromBigEndian<quint32>(number.constData());
}

QString ByteReader::takeText(quint32 most)
{
    constexpr quint32 null = 0xffffffff;
    const quint32 length = takeNumber();
    if (length == null)
        return {};
    if (length > most || length % 2 != 0)
        fail();
    const QByteArray units = take(length);
    QString text(units.size() / 2, Qt::Uninitialized);
    qFromBigEndian<quint16>(units.constData(), text.size(), text.data());
    return text;
}

QByteArray ByteReader::takeIcon()
{
    const QString engine = takeText(longestEngineName);
    if (engine.isEmpty())
        return {}; // an icon without a picture
    const quint32 count = takeNumber();
    if (engine != ownEngine || count > mostPictures)
        fail();
    QByteArray first;
    for (quint32 picture = 0; picture < count && !damaged; ++picture) {
        const QByteArray png = takePixmap();
        if (first.isEmpty())
            first = png;
        takeText(longestPath);
        take(placeInIcon);
    }
    return first;
}

QByteArray ByteReader::takePixmap()
{
    return takeNumber() == 0 ? QByteArray() : takePng(); // 0 marks a pixmap of nothing
}

/** PNG data doesn't say how long it is; only its chunks do, one by one. */
QByteArray ByteReader::takePng()
{
    const int from = at;
    if (take(static_cast<quint32>(pngSignature.size())) != pngSignature)
        fail();
    for (bool isFirst = true; !damaged; isFirst = false) {
        const quint32 length = takeNumber();
        if (length > static_cast<quint32>(mostPngBytes)) {
            fail();
            break;
        }
        const QByteArray chunk = take(length + chunkFrame - 4);
        const QByteArray type = chunk.left(4);
        if (isFirst) {
            const QByteArray header = chunk.mid(4, headerBytes);
            if (type != "IHDR" || length < static_cast<quint32>(headerBytes) || header.size() != headerBytes ||
                qFromBigEndian<quint32>(header.constData()) > largestSide ||
                qFromBigEndian<quint32>(header.constData() + 4) > largestSide)
                fail();
        }
        if (at - from > mostPngBytes)
            fail();
        if (type == "IEND")
            return damaged ? QByteArray() : bytes.mid(from, at - from);
    }
    return {};
}
