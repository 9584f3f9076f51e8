#include "buttons/ProfileFile.h"

#include "devicelink/SelectedDevice.h"
#include "macro/ByteReader.h"
#include "productdata/ConfigStore.h"
#include "productdata/SafeFile.h"

#include <QDataStream>
#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <cstring>

namespace {

const char vendorMark[] = "Velko";
/** Bytes of the vendor mark and of the sensor's name. */
constexpr int nameLength = 12;
/** No profile is larger; the rest of a file that was chosen by mistake stays on the disk. */
constexpr qint64 mostBytes = qint64{64} * 1024;

QByteArray sensorOfSelectedModel()
{
    return ConfigStore::instance()->value(selectedSection(), QStringLiteral("Sensor")).toUtf8();
}

int mostLevels() { return ConfigStore::instance()->number(selectedSection(), QStringLiteral("DPIMaxGrade")); }

/** Cut, filled up with zeros, and with one at its end at least. */
QByteArray nameField(const QByteArray &name)
{
    QByteArray field = name.left(nameLength - 1);
    field.append(nameLength - field.size(), '\0');
    return field;
}

/** The text up to the first NUL. */
QByteArray textOf(const QByteArray &field) { return field.left(int(qstrnlen(field.constData(), uint(field.size())))); }

QByteArray takeArray(ByteReader &reader) { return reader.take(reader.takeNumber()); }

ProfileResult refuse(ProfileResult result, const QString &path, const char *reason)
{
    qWarning() << "a profile file is not taken:" << path << reason;
    return result;
}

} // namespace

void WriteProfile(const QString &path, const FlashDataMap &record)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    for (const QByteArray &field : {nameField(vendorMark), nameField(sensorOfSelectedModel())})
        stream.writeBytes(field.constData(), uint(field.size()));
    stream.writeBytes(reinterpret_cast<const char *>(&record), uint(flashDataMapSize));
    replaceFile(path, content);
}

ProfileResult ReadProfile(const QString &path, FlashDataMap &record)
{
    QFile file(path);
    // A pipe would keep the program waiting for its other end.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return refuse(ProfileUnreadable, path, "it can't be opened");
    ByteReader reader(file.read(mostBytes));
    const QByteArray vendor = takeArray(reader);
    const QByteArray sensor = takeArray(reader);
    const QByteArray bytes = takeArray(reader);
    if (textOf(vendor) != vendorMark)
        return refuse(ProfileUnreadable, path, "it is no profile");
    const QByteArray wanted = sensorOfSelectedModel();
    if (wanted.isEmpty() || textOf(sensor) != wanted.left(nameLength - 1))
        return refuse(ProfileOfAnother, path, "it is for another sensor");
    if (bytes.size() != int(flashDataMapSize))
        return refuse(ProfileUnreadable, path, "its record has another length");
    FlashDataMap read{};
    std::memcpy(&read, bytes.constData(), flashDataMapSize);
    if (read.DpiLevelCount > mostLevels())
        return refuse(ProfileOfAnother, path, "it has more DPI levels than the model");
    record = read;
    return ProfileAccepted;
}
