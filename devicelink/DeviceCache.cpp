#include "devicelink/DeviceCache.h"

#include "productdata/SafeFile.h"
#include "productdata/UserFolders.h"

#include <QDataStream>
#include <QDebug>
#include <QFile>

#include <cstring>

namespace {

QString pathOf(const QString &name)
{
    return UserFolders::path(UserFolders::Folder::DeviceInfo) + QLatin1Char('/') + name;
}

} // namespace

QString deviceCacheName(std::uint8_t cid, std::uint8_t deviceKind)
{
    const auto hex = [](std::uint8_t byte) {
        return QStringLiteral("%1").arg(byte, 2, 16, QLatin1Char('0')).toUpper();
    };
    return QStringLiteral("Device_CID") + hex(cid) + QStringLiteral("_MID") + hex(deviceKind) + QStringLiteral(".bin");
}

bool LoadDeviceCache(const QString &name, FlashDataMap &record)
{
    if (name.isEmpty())
        return false;
    QFile file(pathOf(name));
    if (!file.exists())
        return false; // as before the first connect of a model
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "a cache file could not be opened:" << file.fileName() << file.errorString();
        return false;
    }
    // The length inside the file is compared, never used: a false one must not make us allocate or copy by it.
    constexpr qint64 fileSize = 4 + static_cast<qint64>(flashDataMapSize);
    QDataStream stream(&file);
    quint32 length = 0;
    stream >> length;
    FlashDataMap read{};
    if (file.size() != fileSize || length != flashDataMapSize ||
        stream.readRawData(reinterpret_cast<char *>(&read), static_cast<int>(flashDataMapSize)) !=
            static_cast<int>(flashDataMapSize)) {
        qWarning() << "a cache file is damaged:" << file.fileName() << "size" << file.size() << "length" << length;
        return false;
    }
    record = read;
    return true;
}

void SaveDeviceCache(const QString &name, const FlashDataMap &record)
{
    if (name.isEmpty())
        return;
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    stream.writeBytes(reinterpret_cast<const char *>(&record), static_cast<uint>(flashDataMapSize));
    replaceFile(pathOf(name), content);
}
