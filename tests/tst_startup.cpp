#include "app/InstanceGuard.h"
#include "app/LogWriter.h"
#include "productdata/UserFolders.h"
#include "support/TestHome.h"

#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

#include <csignal>

namespace {

const char *const holderFolder = "HALVARION_GUARD_FOLDER";

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    file.write(content);
}

} // namespace

Q_DECLARE_METATYPE(UserFolders::Folder)

/** What the process does before its first window: the per-user tree, pruning, the guard, the log writer. */
class StartupTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void makesTheWholeTree();
    void leavesSettingsAlone();
    void aFileInTheWayIsNotFatal();
    void prunes_data();
    void prunes();
    void guardFollowsTheLivingHolder();
    void holdGuard();
    void logWriterWritesDebugOnly();
};

void StartupTest::makesTheWholeTree()
{
    UserFolders::prepare();
    const QString root = QDir::homePath() + "/AppData/Local/VelkoA/";
    for (const char *name : {"Log", "Device_Info", "Exception", "usersetting", "usersetting/MainPage",
                             "usersetting/MacroPage", "usersetting/SensorPage"})
        QVERIFY2(QFileInfo(root + name).isDir(), name);
    QVERIFY(QFileInfo(root + "Macro.ini").isFile());
    QCOMPARE(QFileInfo(root + "Macro.ini").size(), 0);
}

void StartupTest::leavesSettingsAlone()
{
    const QByteArray content = "\x00\xff not an ini file [";
    writeFile(UserFolders::settingsFile(), content);
    UserFolders::prepare();
    QFile file(UserFolders::settingsFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
    file.remove();
}

void StartupTest::aFileInTheWayIsNotFatal()
{
    const QString folder = UserFolders::path(UserFolders::Folder::MacroPage);
    QVERIFY(QDir().rmdir(folder));
    writeFile(folder, "in the way");
    UserFolders::prepare();
    QVERIFY(QFileInfo(folder).isFile());
    QFile::remove(folder);
    UserFolders::prepare();
    QVERIFY(QFileInfo(folder).isDir());
}

void StartupTest::prunes_data()
{
    QTest::addColumn<UserFolders::Folder>("folder");
    QTest::addColumn<int>("hours");
    QTest::addColumn<bool>("isFolder");
    QTest::addColumn<bool>("kept");
    using UserFolders::Folder;
    QTest::newRow("a log of today") << Folder::Log << 0 << false << true;
    QTest::newRow("a log one hour short of 8 days") << Folder::Log << 8 * 24 - 1 << false << true;
    QTest::newRow("a log of 8 days") << Folder::Log << 8 * 24 << false << false;
    QTest::newRow("a dump of 9 days") << Folder::Exception << 9 * 24 << false << false;
    QTest::newRow("an old folder") << Folder::Log << 100 * 24 << true << true;
    QTest::newRow("an old cache file") << Folder::DeviceInfo << 100 * 24 << false << true;
}

void StartupTest::prunes()
{
    QFETCH(UserFolders::Folder, folder);
    QFETCH(int, hours);
    QFETCH(bool, isFolder);
    UserFolders::prepare();
    const QString path = UserFolders::path(folder) + "/aged";
    if (isFolder) {
        QVERIFY(QDir().mkpath(path));
    } else {
        writeFile(path, "x");
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(qint64{-3600} * hours),
                                 QFileDevice::FileModificationTime));
    }
    // Several files, so that one that goes can't hide the next.
    writeFile(UserFolders::path(folder) + "/aaa", "x");
    writeFile(UserFolders::path(folder) + "/zzz", "x");
    UserFolders::prune(UserFolders::Folder::Log);
    UserFolders::prune(UserFolders::Folder::Exception);
    QTEST(QFileInfo::exists(path), "kept");
    QVERIFY(QFileInfo::exists(UserFolders::path(folder) + "/aaa"));
    QVERIFY(QFileInfo::exists(UserFolders::path(folder) + "/zzz"));
    QDir().rmdir(path);
    QFile::remove(path);
}

/** Runs in a process of its own: takes the guard and holds it until it is killed. */
void StartupTest::holdGuard()
{
    if (!qEnvironmentVariableIsSet(holderFolder))
        QSKIP("runs in the process that guardFollowsTheLivingHolder starts");
    qputenv("TMPDIR", qgetenv(holderFolder)); // the guard's key lies there; it is per machine, tests make it per test
    printf(InstanceGuard::instance().take() ? "HELD\n" : "REFUSED\n");
    fflush(stdout);
    QTest::qWait(60000);
}

void StartupTest::guardFollowsTheLivingHolder()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(holderFolder), QDir::tempPath());
    QProcess holder;
    holder.setProcessEnvironment(environment);
    holder.start(QCoreApplication::applicationFilePath(), {"holdGuard"});
    QByteArray said;
    QTRY_VERIFY_WITH_TIMEOUT((said += holder.readAllStandardOutput()).contains("HELD"), 30000);
    QVERIFY(!InstanceGuard::instance().take());
    QVERIFY(!InstanceGuard::instance().take()); // looking must not loosen it

    QProcess second;
    second.setProcessEnvironment(environment);
    second.start(QCoreApplication::applicationFilePath(), {"holdGuard"});
    said.clear();
    QTRY_VERIFY_WITH_TIMEOUT((said += second.readAllStandardOutput()).contains("REFUSED"), 30000);
    second.kill();
    QVERIFY(second.waitForFinished());

    ::kill(static_cast<pid_t>(holder.processId()), SIGKILL);
    QVERIFY(holder.waitForFinished());
    QVERIFY(InstanceGuard::instance().take());
}

void StartupTest::logWriterWritesDebugOnly()
{
    UserFolders::prepare();
    const QMessageLogContext context("source.cpp", 42, "function", "category");
    for (const QtMsgType type : {QtWarningMsg, QtInfoMsg, QtCriticalMsg})
        writeLog(type, context, "dropped");
    writeLog(QtDebugMsg, context, "100 %4 of %1");
    writeLog(QtDebugMsg, context, "second");
    QFile file(UserFolders::path(UserFolders::Folder::Log) + "/" + QDate::currentDate().toString("yyyy-MM-dd") +
               ".txt");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QRegularExpression expected("^Debug: File:\\(source\\.cpp\\) Line:\\(42\\) 100 %4 of %1 "
                                      "\\(\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\)\r\n"
                                      "Debug: [^\r\n]* second \\([^\r\n]*\\)\r\n$");
    const QString written = QString::fromUtf8(file.readAll());
    QVERIFY2(expected.match(written).hasMatch(), qPrintable(written));
}

HALVARION_TEST_MAIN(StartupTest)
#include "tst_startup.moc"
