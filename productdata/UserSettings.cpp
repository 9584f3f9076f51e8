#include "productdata/UserSettings.h"

#include "productdata/LanguageFile.h"
#include "productdata/SafeFile.h"
#include "productdata/UserFolders.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QTextCodec>

namespace {

const QString languageName = QStringLiteral("Language"); // both the section and the key

/** Bytes that one more value may take. */
constexpr qint64 roomToSpare = 4096;

QString keyOf(const QString &section, const QString &key) { return section + QLatin1Char('/') + key; }

} // namespace

UserSettings *UserSettings::instance()
{
    static QMutex creation;
    static UserSettings *settings = nullptr;
    const QMutexLocker locker(&creation);
    if (!settings)
        settings = new UserSettings(UserFolders::settingsFile());
    return settings;
}

UserSettings::UserSettings(const QString &file) : path(file), isDamaged(holdsBinaryValues(file))
{
    if (isDamaged)
        qWarning() << "the user settings are damaged:" << path;
    store = std::make_unique<QSettings>(isDamaged ? QString() : path, QSettings::IniFormat);
}

/** Before the first write over a damaged file, that file is put aside: it may hold what somebody wants back. */
void UserSettings::putDamagedFileAside()
{
    if (!isDamaged)
        return;
    isDamaged = false;
    const QString aside = path + QStringLiteral(".damaged");
    QFile::remove(aside);
    qWarning() << "the damaged user settings were put aside:" << aside << QFile::rename(path, aside);
    store = std::make_unique<QSettings>(path, QSettings::IniFormat);
}

QSettings &UserSettings::settings() const
{
    store->setIniCodec(QTextCodec::codecForName("UTF8"));
    return *store;
}

/**
 * QSettings replaces the file in one step, but doesn't notice when what it wrote beside it stayed empty for want of
 * room, and loses the old file. So it is only let at it when as much can be written there.
 */
bool UserSettings::hasRoom() const
{
    QDir().mkpath(QFileInfo(path).path());
    QTemporaryFile probe(path + QStringLiteral(".XXXXXX"));
    const QByteArray content(static_cast<int>(QFileInfo(path).size() + roomToSpare), ' ');
    return probe.open() && probe.write(content) == content.size() && probe.flush();
}

/** Writes through at once: a choice must survive a crash a moment later. */
void UserSettings::save()
{
    if (!hasRoom()) {
        qWarning() << "the user settings can't be written, for want of room or of the right to:" << path;
        return;
    }
    putDamagedFileAside();
    for (auto entry = unsaved.cbegin(); entry != unsaved.cend(); ++entry) {
        if (entry.value())
            settings().setValue(entry.key(), *entry.value());
        else
            settings().remove(entry.key());
    }
    store->sync();
    if (store->status() != QSettings::NoError)
        qWarning() << "the user settings could not be written:" << store->fileName();
    unsaved.clear(); // what QSettings could not write it still holds itself
}

void UserSettings::write(const QString &section, const QString &key, const QString &text)
{
    const QMutexLocker locker(&mutex);
    unsaved[keyOf(section, key)] = text;
    save();
}

QString UserSettings::read(const QString &section, const QString &key) const
{
    return readList(section, key).join(QLatin1Char(','));
}

QStringList UserSettings::readList(const QString &section, const QString &key) const
{
    const QMutexLocker locker(&mutex);
    const auto entry = unsaved.constFind(keyOf(section, key));
    if (entry == unsaved.constEnd())
        return settings().value(keyOf(section, key)).toStringList();
    return *entry ? QStringList{**entry} : QStringList{};
}

void UserSettings::remove(const QString &section, const QString &key)
{
    const QMutexLocker locker(&mutex);
    unsaved[keyOf(section, key)] = std::nullopt;
    save();
}

int UserSettings::language() const
{
    const int index = read(languageName, languageName).toInt();
    return index >= 0 && index < LanguageFile::languageCount ? index : 0;
}

void UserSettings::setLanguage(int index) { write(languageName, languageName, QString::number(index)); }
