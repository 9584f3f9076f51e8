#include "app/LogWriter.h"
#include "app/WindowPlace.h"
#include "productdata/ConfigStore.h"
#include "productdata/LanguageFile.h"
#include "productdata/ModelData.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "support/Files.h"
#include "support/Rows.h"
#include "support/TestHome.h"

#include <QDate>
#include <QDateTime>
#include <QSettings>

/**
 * What the process does before its first window: the data beside the executable, the user's settings and folders,
 * pruning, the log writer, the place of the window.
 */
class StartupTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void makesTheWholeTree();
    void valuesThatArentThere();
    void settingsSurviveAnotherReader();
    void prunes();
    void logWriterWritesDebugOnly();
    void windowPlace_data();
    void windowPlace();
};

/** What the product file has, the whole program needs; here is what it hasn't. */
void StartupTest::valuesThatArentThere()
{
    QCOMPARE(ConfigStore::instance()->numberList("Drive1", "BatteryParam").size(), 21);
    QCOMPARE(ConfigStore::instance()->valueList("Drive7", "Sensor"), QStringList());
    QCOMPARE(LanguageFile::path(7) + LanguageFile::path(-1), LanguageFile::path(0) + LanguageFile::path(0));
    QCOMPARE(ModelData::modelIndexOf(99), ModelData::deviceTotal());
}

void StartupTest::settingsSurviveAnotherReader()
{
    UserFolders::prepare();
    UserSettings *const settings = UserSettings::instance();
    QCOMPARE(settings->language(), 0);
    settings->setLanguage(4);
    settings->write("AutoStart", "Enable", QStringLiteral("да, 是"));
    QSettings file(UserFolders::settingsFile(), QSettings::IniFormat);
    file.setIniCodec("UTF-8");
    QCOMPARE(file.value("Language/Language").toString(), QStringLiteral("4"));
    QCOMPARE(file.value("AutoStart/Enable").toStringList().join(", "), QStringLiteral("да, 是"));
}

void StartupTest::makesTheWholeTree()
{
    UserFolders::prepare();
    const QString root = QDir::homePath() + "/AppData/Local/VelkoA/";
    for (const char *name : {"Log", "Device_Info", "Exception", "usersetting", "usersetting/MainPage",
                             "usersetting/MacroPage", "usersetting/SensorPage"})
        QVERIFY2(QFileInfo(root + name).isDir(), name);
    QVERIFY(QFileInfo(root + "Macro.ini").isFile() && QFileInfo(root + "Macro.ini").size() == 0);
}

void StartupTest::prunes()
{
    using UserFolders::Folder;
    UserFolders::prepare();
    // Hours of age, and whether it is kept; several, so that one that goes can't hide the next.
    const std::tuple<Folder, const char *, int, bool> all[] = {
        {Folder::Log, "aaa", 0, true},          {Folder::Log, "almost 8 days", 8 * 24 - 1, true},
        {Folder::Log, "8 days", 8 * 24, false}, {Folder::Log, "zzz", 0, true},
        {Folder::Exception, "aaa", 0, true},    {Folder::Exception, "9 days", 9 * 24, false},
        {Folder::DeviceInfo, "old", 2400, true}};
    for (const auto &[folder, name, hours, isKept] : all) {
        QFile file(UserFolders::path(folder) + '/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly) &&
                file.setFileTime(QDateTime::currentDateTime().addSecs(qint64{-3600} * hours),
                                 QFileDevice::FileModificationTime));
    }
    UserFolders::prune(Folder::Log);
    UserFolders::prune(Folder::Exception);
    for (const auto &[folder, name, hours, isKept] : all)
        QVERIFY2(QFileInfo::exists(UserFolders::path(folder) + '/' + name) == isKept, name);
}

void StartupTest::logWriterWritesDebugOnly()
{
    UserFolders::prepare();
    const QMessageLogContext context("source.cpp", 42, "function", "category");
    for (const QtMsgType type : {QtWarningMsg, QtInfoMsg, QtCriticalMsg})
        writeLog(type, context, "dropped");
    writeLog(QtDebugMsg, context, "100 %4 of %1");
    writeLog(QtDebugMsg, context, "second");
    const QRegularExpression expected("^Debug: File:\\(source\\.cpp\\) Line:\\(42\\) 100 %4 of %1 "
                                      "\\(\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\)\r\n"
                                      "Debug: [^\r\n]* second \\([^\r\n]*\\)\r\n$");
    const QString written = QString::fromUtf8(Files::content(UserFolders::path(UserFolders::Folder::Log) + '/' +
                                                             QDate::currentDate().toString("yyyy-MM-dd") + ".txt"));
    QVERIFY2(expected.match(written).hasMatch(), qPrintable(written));
}

void StartupTest::windowPlace_data()
{
    const Rows<QString, bool> row("left", "isTaken");
    row("in sight", "40", true);
    row("just enough in sight", "-99", true);
    row("too little in sight", "-101", false);
    row("no screen shows it", "50000", false);
    row("largest number", "2147483647", false);
    row("smallest number", "-2147483648", false);
    row("beyond all numbers", "99999999999", false);
    row("no number", "left", false);
}

/** The place of the window comes from a file; one where nobody would see it isn't taken. */
void StartupTest::windowPlace()
{
    QFETCH(QString, left);
    QFETCH(bool, isTaken);
    UserFolders::prepare();
    UserSettings::instance()->write("Window", "Left", left);
    UserSettings::instance()->write("Window", "Top", "60");
    QWidget window;
    window.setGeometry(7, 8, 200, 100);
    WindowPlace::restore(window);
    QCOMPARE(window.pos(), isTaken ? QPoint(left.toInt(), 60) : QPoint(7, 8));
}

HALVARION_TEST_MAIN(StartupTest)
#include "tst_startup.moc"
