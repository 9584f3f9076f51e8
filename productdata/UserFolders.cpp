#include "productdata/UserFolders.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>

namespace {

struct Entry
{
    UserFolders::Folder folder;
    const char *path;
};

/** In the order in which they are made: a parent before what it holds. */
constexpr std::array<Entry, 7> folders = {{
    {UserFolders::Folder::Log, "/Log"},
    {UserFolders::Folder::DeviceInfo, "/Device_Info"},
    {UserFolders::Folder::Exception, "/Exception"},
    {UserFolders::Folder::UserSetting, "/usersetting"},
    {UserFolders::Folder::MainPage, "/usersetting/MainPage"},
    {UserFolders::Folder::MacroPage, "/usersetting/MacroPage"},
    {UserFolders::Folder::SensorPage, "/usersetting/SensorPage"},
}};

constexpr quint32 secondsPerDay = 86400;
/** Whole days that a log or dump is kept. */
constexpr quint32 daysKept = 7;

QString root() { return QDir::homePath() + QStringLiteral("/AppData/Local/VelkoA"); }

} // namespace

QString UserFolders::path(Folder folder)
{
    for (const Entry &entry : folders) {
        if (entry.folder == folder)
            return root() + QLatin1String(entry.path);
    }
    return root();
}

QString UserFolders::settingsFile() { return root() + QStringLiteral("/Macro.ini"); }

void UserFolders::prepare()
{
    for (const Entry &entry : folders) {
        const QString folder = path(entry.folder);
        if (!QFileInfo(folder).isDir() && !QDir().mkpath(folder))
            qWarning() << "a folder could not be made:" << folder;
    }
    QFile settings(settingsFile());
    if (!settings.exists() && !settings.open(QIODevice::WriteOnly | QIODevice::Text))
        qWarning() << "the settings file could not be made:" << settings.errorString();
}

void UserFolders::prune(Folder folder)
{
    const auto now = static_cast<quint32>(QDateTime::currentSecsSinceEpoch());
    const QFileInfoList entries = QDir(path(folder)).entryInfoList();
    for (const QFileInfo &entry : entries) {
        if (entry.isDir())
            continue;
        // Unsigned on purpose: a file of the future has a huge age and goes as well, a clock that was wrong once must
        // not leave files for ever.
        const quint32 age = now - static_cast<quint32>(entry.lastModified().toSecsSinceEpoch());
        if (age / secondsPerDay > daysKept && !QFile::remove(entry.filePath()))
            qWarning() << "an old file could not be removed:" << entry.filePath();
    }
}
