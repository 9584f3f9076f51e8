#include "productdata/ConfigStore.h"

#include "productdata/SafeFile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QTextCodec>

#include <algorithm>
#include <array>

namespace {

/** Keys that name the product's identity on the bus. The coding keeps casual hands off, it isn't a secret. */
constexpr std::array<const char *, 11> codedKeys = {
    "MM", "DM", "D2M", "D4M", "Sensor", "CID", "VID", "USB_PID", "Wireless_PID", "Wireless2_PID", "Wireless4_PID"};

} // namespace

ConfigStore *ConfigStore::instance()
{
    static QMutex creation;
    static ConfigStore *store = nullptr;
    const QMutexLocker locker(&creation);
    if (!store)
        store = new ConfigStore(QCoreApplication::applicationDirPath() + "/usersetting/Config.ini");
    return store;
}

ConfigStore::ConfigStore(const QString &path) : FilePath(path)
{
    const bool readable = !holdsBinaryValues(FilePath);
    Settings = std::make_unique<QSettings>(readable ? FilePath : QString(), QSettings::IniFormat);
    if (!QFile::exists(FilePath))
        qWarning() << "the product file is missing:" << FilePath;
    else if (!readable || Settings->status() != QSettings::NoError)
        qWarning() << "the product file is damaged:" << FilePath;
}

bool ConfigStore::isCodedKey(const QString &key)
{
    return std::any_of(codedKeys.begin(), codedKeys.end(),
                       [&key](const char *coded) { return key == QLatin1String(coded); });
}

QString ConfigStore::decoded(const QString &text) const
{
    QString plain = QString::fromUtf8(QByteArray::fromBase64(text.toUtf8()));
    return plain.remove(QLatin1Char('\n')).remove(QLatin1Char(' '));
}

QString ConfigStore::value(const QString &group, const QString &key) const
{
    // A value with commas reaches here as a list; as one text it is what the file says.
    return valueList(group, key).join(QLatin1Char(','));
}

QStringList ConfigStore::valueList(const QString &group, const QString &key) const
{
    QStringList list;
    {
        const QMutexLocker locker(&mutex);
        Settings->setIniCodec(QTextCodec::codecForName("UTF8"));
        const QVariant stored = Settings->value(group + QLatin1Char('/') + key);
        if (stored.isValid())
            list = stored.toStringList();
    }
    if (DecodeKeys == 1 && isCodedKey(key)) {
        for (QString &element : list)
            element = decoded(element);
    }
    return list;
}

int ConfigStore::number(const QString &group, const QString &key) const { return value(group, key).trimmed().toInt(); }

QList<int> ConfigStore::numberList(const QString &group, const QString &key) const
{
    QList<int> numbers;
    const QStringList texts = valueList(group, key);
    for (const QString &text : texts)
        numbers << text.trimmed().toInt();
    return numbers;
}
