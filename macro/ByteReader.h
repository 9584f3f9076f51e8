#pragma once

#include <QByteArray>
#include <QString>

/**
 * Takes a Qt data stream apart without Qt's own readers, which make room for whatever length a damaged file claims and
 * load the plug-in that it names. Once something was damaged, everything after it comes empty.
 */
class ByteReader
{
public:
    explicit ByteReader(const QByteArray &content) : bytes(content) {}

    bool isDamaged() const { return damaged; }
    bool atEnd() const { return at >= bytes.size(); }

    /** A big-endian 32-bit number. */
    quint32 takeNumber();
    /** So many bytes. */
    QByteArray take(quint32 length);
    /** A `QString` of at most so many bytes; the null string comes empty. */
    QString takeText(quint32 most);
    /**
     * A `QIcon`, of which nothing is decoded: the PNG file of its first picture, empty when it has none. Damaged is
     * what isn't made of Qt's own icon engine with few pictures of at most 128 by 128 pixels.
     */
    QByteArray takeIcon();

private:
    QByteArray takePixmap();
    QByteArray takePng();
    void fail() { damaged = true; }

    const QByteArray bytes;
    int at = 0;
    bool damaged = false;
};
