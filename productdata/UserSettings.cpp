#include "productdata/UserSettings.h"

#include "productdata/LanguageFile.h"
#include "productdata/SafeFile.h"
#include "productdata/UserFolders.h"

#include <QDebug>
#include <QFile>
#include <QTextCodec>

namespace {
const QString languageName = QStringLiteral("Language"); // both the section and the key
}

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

/** Writes through at once: a choice must survive a crash a moment later. QSettings replaces the file in one step. */
void UserSettings::save()
{
    store->sync();
    if (store->status() != QSettings::NoError)
        qWarning() << "the user settings could not be written:" << store->fileName();
}

void UserSettings::write(const QString &section, const QString &key, const QString &text)
{
    const QMutexLocker locker(&mutex);
    putDamagedFileAside();
    settings().setValue(section + QLatin1Char('/') + key, text);
    save();
}

QString UserSettings::read(const QString &section, const QString &key) const
{
    return readList(section, key).join(QLatin1Char(','));
}

QStringList UserSettings::readList(const QString &section, const QString &key) const
{
    const QMutexLocker locker(&mutex);
    return settings().value(section + QLatin1Char('/') + key).toStringList();
}

void UserSettings::remove(const QString &section, const QString &key)
{
    const QMutexLocker locker(&mutex);
    putDamagedFileAside();
    settings().remove(section + QLatin1Char('/') + key);
    save();
}

int UserSettings::language() const
{
    const int index = read(languageName, languageName).toInt();
    return index >= 0 && index < LanguageFile::languageCount ? index : 0;
}

void UserSettings::setLanguage(int index) { write(languageName, languageName, QString::number(index)); }
