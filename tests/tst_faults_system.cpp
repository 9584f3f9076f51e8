#include "devicelink/DeviceCache.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "support/FaultBench.h"
#include "support/Files.h"
#include "support/Screen.h"
#include "support/TestHome.h"

#include <QProcess>
#include <QStandardPaths>

#include <csignal>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

const char *const scenarioName = "HALVARION_DISK";

QString registryFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/halvarion/registry.ini";
}

QString cacheOfQ1() { return UserFolders::path(UserFolders::Folder::DeviceInfo) + "/Device_CID12_MID01.bin"; }

/** No file of this process grows beyond so many bytes, as on a full disk. */
void limitFiles(rlim_t bytes)
{
    signal(SIGXFSZ, SIG_IGN); // a full disk sends no signal, a limit does
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
}

/** The home may be read and nothing more. Root may write everywhere, unless it gives that right away. */
void sealHome()
{
    UserFolders::prepare();
    if (geteuid() == 0) {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct rights[_LINUX_CAPABILITY_U32S_3]{};
        QVERIFY(syscall(SYS_capget, &header, rights) == 0);
        rights[0].effective &= ~(1U << CAP_DAC_OVERRIDE);
        QVERIFY(syscall(SYS_capset, &header, rights) == 0);
    }
    for (const QString &folder :
         {UserFolders::path(UserFolders::Folder::DeviceInfo), QDir::homePath() + "/AppData",
          QFileInfo(UserFolders::settingsFile()).path(),
          QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), QDir::homePath()}) {
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        QVERIFY(!QFile(folder + "/new").open(QIODevice::WriteOnly));
    }
}

/** What a test finds in its home, and what it does to it. */
struct Disk
{
    const char *name;
    void (*before)();      ///< before the first window
    void (*during)();      ///< while the first device is open
    bool isLanguageStored; ///< the file of the settings can be written
};

void nothing() {}

constexpr Disk disks[] = {
    {"the home is read-only", sealHome, nothing, false},
    {"no room from the start", [] { limitFiles(0); }, nothing, false},
    {"no room later on", nothing, [] { limitFiles(0); }, false},
    {"room for a part of the cache", nothing, [] { limitFiles(5000); }, true},
    {"a file in place of all folders",
     [] {
         QVERIFY(QDir(QDir::homePath() + "/AppData").removeRecursively());
         Files::put(QDir::homePath() + "/AppData", "mine");
     },
     nothing, false},
    {"a file in place of the cache folder",
     [] { Files::put(UserFolders::path(UserFolders::Folder::DeviceInfo), "mine"); }, nothing, true},
    {"a folder in place of the cache file", [] { QVERIFY(QDir().mkpath(cacheOfQ1() + "/in")); }, nothing, true},
    {"a folder in place of the settings file",
     [] {
         QVERIFY(QFile::remove(UserFolders::settingsFile()));
         QVERIFY(QDir().mkpath(UserFolders::settingsFile() + "/in"));
     },
     nothing, false},
    {"a folder in place of the registry", [] { QVERIFY(QDir().mkpath(registryFile() + "/in")); }, nothing, true},
};

/** Files and folders that stand where the program wants something else are somebody's. */
bool isInTheWay(const QString &path)
{
    return QFileInfo(path + "/in").isDir() || (QFileInfo(path).isFile() && Files::content(path) == "mine");
}

} // namespace

/** What the machine does to the program: no room, no right, something in the way, a second copy. */
class FaultsSystemTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void badDisk_data();
    void badDisk();
    void userOnBadDisk();
    void twoAtOnce();
};

void FaultsSystemTest::badDisk_data()
{
    QTest::addColumn<QString>("disk");
    for (const Disk &disk : disks)
        QTest::newRow(disk.name) << disk.name;
}

/** Each disk has a process and a home of its own: the limit and the rights are the process's. */
void FaultsSystemTest::badDisk()
{
    QFETCH(QString, disk);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(scenarioName), disk);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {"userOnBadDisk"});
    QVERIFY2(process.waitForFinished(120000), "the program hangs");
    const QByteArray said = process.readAllStandardOutput() + process.readAllStandardError();
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0, said.constData());
    QVERIFY2(said.contains("QWARN"), "the log must tell what could not be kept");
}

/** Runs in the process that badDisk starts: a user who sees nothing of it but that nothing is kept on the PC. */
void FaultsSystemTest::userOnBadDisk()
{
    const QString name = qEnvironmentVariable(scenarioName);
    if (name.isEmpty())
        QSKIP("runs in the process that badDisk starts");
    const Disk *disk =
        std::find_if(std::begin(disks), std::end(disks), [&](const Disk &each) { return name == each.name; });
    Files::put(UserFolders::settingsFile(), "[AutoStart]\nEnable=1\n");
    disk->before();
    const QStringList places = {QDir::homePath() + "/AppData", UserFolders::path(UserFolders::Folder::DeviceInfo),
                                cacheOfQ1(), UserFolders::settingsFile(), registryFile()};
    QStringList inTheWay;
    std::copy_if(places.begin(), places.end(), std::back_inserter(inTheWay), isInTheWay);
    {
        FaultBench bench;
        QCOMPARE(bench.connectQ1(), QString());
        const QList<QByteArray> before = {Files::content(cacheOfQ1()), Files::content(UserFolders::settingsFile()),
                                          Files::content(registryFile())};
        disk->during();

        bench.program().click("SensorButton");
        const FlashDataMap held = bench.held();
        bench.program().click("MotionSync_2");
        QVERIFY(bench.waitFor([&] { return bench.held().MotionSync != held.MotionSync; }));
        QCOMPARE(bench.settle(), QString());
        QVERIFY(bench.program().goBack());
        constexpr int chinese = 1;
        auto *const list = bench.program().find<QComboBox>("comboBox");
        list->setCurrentIndex(chinese);
        Q_EMIT list->activated(chinese);
        // It holds at least until the program ends, and the device can be opened anew.
        QCOMPARE(UserSettings::instance()->language(), chinese);
        postMsg()->post(&PostMsg::SigChangeLanguage, 0); // the eye on the screen reads English
        QCOMPARE(bench.connectQ1(), QString());
        QVERIFY(bench.held().MotionSync != held.MotionSync);

        // What can't be replaced stays as it was; nothing is left cut off.
        FlashDataMap kept{};
        QVERIFY(Files::content(cacheOfQ1()) == before[0] || LoadDeviceCache(LoadFileName().get(), kept));
        const QByteArray settings = Files::content(UserFolders::settingsFile());
        QVERIFY2(settings == before[1] || (settings.contains("Enable=1") && settings.contains("Language=1")),
                 settings.constData());
        const QByteArray registry = Files::content(registryFile());
        QVERIFY2(registry == before[2] || registry.contains("MouseVer"), registry.constData());
        QCOMPARE(settings.contains("Language=1"), disk->isLanguageStored);
    }
    limitFiles(RLIM_INFINITY);
    for (const QString &place : qAsConst(inTheWay))
        QVERIFY2(isInTheWay(place), qPrintable(place + " was somebody's and has gone"));
}

/** Two copies that start in the same moment in the same home: one runs, the other says so and goes. */
void FaultsSystemTest::twoAtOnce()
{
    constexpr int rounds = 4;
    constexpr int startTime = 400; // ms until both wait for the moment
    const auto hasEnded = [](QProcess &copy) { return copy.state() == QProcess::NotRunning || copy.waitForFinished(); };
    for (int round = 0; round < rounds; ++round) {
        const QString moment = QString::number(QDateTime::currentMSecsSinceEpoch() + startTime);
        QProcess copies[2];
        QByteArray said[2];
        for (QProcess &copy : copies)
            copy.start(PROGRAM_CHILD, {moment});
        for (int index = 0; index < 2; ++index)
            QTRY_VERIFY_WITH_TIMEOUT(!(said[index] += copies[index].readAllStandardOutput()).isEmpty(), 30000);
        const int first = said[0] == "WINDOW\n" ? 0 : 1;
        QCOMPARE(said[first], QByteArray("WINDOW\n"));
        QCOMPARE(said[1 - first], QByteArray("REFUSED\n"));
        QVERIFY(hasEnded(copies[1 - first]));
        QCOMPARE(copies[1 - first].exitCode(), 0);
        QCOMPARE(copies[first].state(), QProcess::Running);
        // One that was killed is no longer in the way of the next either.
        const bool isKilled = round % 2 == 0;
        isKilled ? copies[first].kill() : copies[first].closeWriteChannel();
        QVERIFY(hasEnded(copies[first]));
        QCOMPARE(copies[first].exitStatus() == QProcess::CrashExit, isKilled);
        QVERIFY2(isKilled || copies[first].exitCode() == 0, copies[first].readAllStandardError().constData());
    }
}

HALVARION_TEST_MAIN(FaultsSystemTest)
#include "tst_faults_system.moc"
