#include "platform/AutoStart.h"
#include "platform/MouseSettings.h"
#include "platform/Registry.h"
#include "support/Files.h"
#include "support/Rows.h"

#include <QDateTime>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <future>
#include <map>
#include <memory>

namespace {

constexpr char testKey[] = R"(HKEY_CURRENT_USER\Software\Velko\Velko\Mouse Drive Test)";
constexpr char zone[] = "TST-05:30"; // five and a half hours ahead of UTC
constexpr int zoneSeconds = 19800;

} // namespace

class TestPlatform : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        QVERIFY(home->isValid());
        qputenv("HOME", QFile::encodeName(home->path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(inHome(".config")));
    }
    void crashLeavesDump_data();
    void crashLeavesDump();
    void crashReplacesDump();
    void crashWithoutFolder();

    void registryKeepsText();
    void registryReadsByHand();
    void registryFromThreads();

    void autoStartEntry();
    void autoStartTurnedOff();
    void autoStartThatCannotBeWritten();

    void mouseSettings_data();
    void mouseSettings();

private:
    QString registryFile() const { return inHome(".config/halvarion/registry.ini"); }
    QString autoStartFile() const { return inHome(".config/autostart/halvarion.desktop"); }
    QString inHome(const QString &name) const { return home->filePath(name); }
    /** Runs the child to its end, checks that it ended quietly, and gives what it printed. */
    QString runChild(const QString &way, const QString &folder) const
    {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TZ", zone);
        child.setProcessEnvironment(environment);
        child.start(CRASH_CHILD, {way, folder});
        if (!child.waitForFinished())
            return "the child did not end";
        if (child.exitStatus() != QProcess::NormalExit || child.exitCode() == 0)
            return QString("ended by a signal, or as if nothing was: %1").arg(child.exitCode());
        return child.readAllStandardOutput() + child.readAllStandardError();
    }

    std::unique_ptr<QTemporaryDir> home;
};

void TestPlatform::crashLeavesDump_data()
{
    const Rows<QString, QString> row("function", "signal");
    row("fault", "deliberateFault", "SIGSEGV");
    row("nullCall", "deliberateCall", "SIGSEGV");
    row("thread", "deliberateFault", "SIGSEGV");
    row("overflow", "deliberateOverflow", "SIGSEGV");
    row("exception", "deliberateCall", "SIGABRT");
    row("bus", "deliberateCall", "SIGBUS");
    row("illegal", "deliberateCall", "SIGILL");
    row("division", "deliberateCall", "SIGFPE");
}

void TestPlatform::crashLeavesDump()
{
    QFETCH(QString, function);
    QFETCH(QString, signal);
    const QString folder = inHome("not/yet/there");
    const QString form = "yyyy_MM_dd_hh_mm_ss'.dmp'";
    const QString earliest = QDateTime::currentDateTimeUtc().addSecs(zoneSeconds).toString(form);
    QCOMPARE(runChild(QTest::currentDataTag(), folder), QString());
    const QString latest = QDateTime::currentDateTimeUtc().addSecs(zoneSeconds).toString(form);

    const QStringList names = QDir(folder).entryList(QDir::Files);
    QCOMPARE(names.size(), 1);
    QVERIFY2(names[0] >= earliest && names[0] <= latest, qPrintable(names[0]));
    const QByteArray dump = Files::content(folder + '/' + names[0]);
    QVERIFY2(dump.contains(function.toUtf8()), dump.constData());
    QVERIFY2(dump.contains(signal.toUtf8()), dump.constData());
    QVERIFY2(dump.contains("r-xp") && dump.contains("/crashchild\n"), dump.constData()); // the module list
}

void TestPlatform::crashReplacesDump()
{
    // A file of every name that the dump can take within the next half minute.
    const QByteArray old(100000, 'o');
    const QDateTime now = QDateTime::currentDateTimeUtc().addSecs(zoneSeconds);
    for (int second = 0; second < 30; ++second)
        Files::put(inHome(now.addSecs(second).toString("yyyy_MM_dd_hh_mm_ss'.dmp'")), old);
    QCOMPARE(runChild("fault", home->path()), QString());
    int replaced = 0;
    for (const QFileInfo &file : QDir(home->path()).entryInfoList({"*.dmp"}, QDir::Files)) {
        const QByteArray dump = Files::content(file.filePath());
        replaced += dump != old;
        QVERIFY(dump == old || (dump.contains("deliberateFault") && !dump.contains("oooo")));
    }
    QCOMPARE(replaced, 1);
}

void TestPlatform::crashWithoutFolder()
{
    // Where no folder can be made the process still ends quietly.
    Files::put(inHome("file"), "kept");
    QCOMPARE(runChild("fault", inHome("file/folder")), QString());
    QCOMPARE(runChild("abort", QString(5000, 'x')), QString());
    QCOMPARE(Files::content(inHome("file")), QByteArray("kept"));
}

/** Values whose names are nearly the same are kept apart from each other, and each goes alone. */
void TestPlatform::registryKeepsText()
{
    const QByteArray odd =
        "a \\ / % %2F = [ ] ; # \n \r \" .. 鼠 @Variant(\\0)" + QByteArray(1, '\0') + QByteArray(3000, 'k');
    std::map<std::pair<std::string, std::string>, std::string> kept = {
        {{R"(K\a)", "b"}, "1"}, {{R"(K\a\b)", ""}, "2"}, {{"K/a", "b"}, "3"},   {{"K", R"(a\b)"}, "4"},
        {{"K", "a/b"}, "5"},    {{"K", "a%2Fb"}, "6"},   {{"K", "a%5Cb"}, "7"}, {{R"(K\)", "a"}, "8"}};
    kept[{odd.toStdString(), odd.toStdString()}] = odd.toStdString();
    for (const char *once : {"before", ""}) {
        for (const auto &[name, text] : kept)
            QVERIFY(platform::setRegistryText(name.first, name.second, *once ? once : text));
    }
    while (!kept.empty()) {
        for (const auto &[name, text] : kept)
            QCOMPARE(platform::registryText(name.first, name.second), text);
        const auto [key, value] = kept.begin()->first;
        kept.erase(kept.begin());
        for (int times : {1, 2})
            QVERIFY2(platform::removeRegistryValue(key, value), qPrintable(QString::number(times)));
        QVERIFY(platform::registryText(key, value).empty());
    }
    QCOMPARE(QDir(home->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(".config"));
}

void TestPlatform::registryReadsByHand()
{
    Files::put(registryFile(), "; what an installer or a user writes\r\n"
                               "[HKEY_CURRENT_USER\\Software\\VelkoA\\Halvarion\\Halvarion]\r\n"
                               " LanguageIndex = 4 \r\n;LanguageIndex=5\r\n\r\n[Other]\nLanguageIndex=6\nDone=50%\n");
    const std::string key = R"(HKEY_CURRENT_USER\Software\VelkoA\Halvarion\Halvarion)";
    QCOMPARE(platform::registryText(key, "LanguageIndex"), std::string("4"));
    QCOMPARE(platform::registryText("Other", "Done"), std::string("50%"));
    QVERIFY(platform::registryText(key, ";LanguageIndex").empty());
    QVERIFY(platform::removeRegistryValue(key, "LanguageIndex"));
    QVERIFY(Files::content(registryFile()).startsWith("; what an installer")); // what means nothing here stays
    QVERIFY(platform::registryText(key, "LanguageIndex").empty());
    QCOMPARE(platform::registryText("Other", "LanguageIndex"), std::string("6"));
}

void TestPlatform::registryFromThreads()
{
    const auto write = [](const std::string &value) {
        int wrong = 0;
        for (int i = 0; i < 20; ++i) {
            const std::string text = std::to_string(i);
            wrong += !platform::setRegistryText(testKey, value, text);
            wrong += platform::registryText(testKey, value) != text;
        }
        return wrong;
    };
    std::future<int> one = std::async(std::launch::async, write, "1"),
                     other = std::async(std::launch::async, write, "2");
    QCOMPARE(write("3") + one.get() + other.get(), 0);
}

void TestPlatform::autoStartEntry()
{
    const std::pair<const char *, const char *> lines[] = {
        {"/opt/my mouse/halvarion", R"(Exec="/opt/my mouse/halvarion")"},
        {R"(/a"b'c)", R"(Exec="/a\\"b'c")"},
        {"/100%/%f", R"(Exec=env "/100%%/%%f")"},
        {"/$HOME/`id`", R"(Exec="/\\$HOME/\\`id\\`")"},
        {R"(/a\nb)", R"(Exec="/a\\\\nb")"},
        {"/a\nHidden=true", R"(Exec="/a\nHidden=true")"},
        {"/鼠标", "Exec=\"/鼠标\""},
    };
    for (const auto &[executable, line] : lines) {
        QVERIFY(!platform::startsWithSystem());
        QVERIFY(platform::setStartsWithSystem(true, executable));
        QVERIFY(platform::startsWithSystem());
        const QByteArray written = Files::content(autoStartFile());
        QVERIFY2(written.split('\n').contains(line), written.constData());
        for (int times = 0; times < 2; ++times)
            QVERIFY(platform::setStartsWithSystem(false, executable));
        QVERIFY(!QFile::exists(autoStartFile()));
    }
}

void TestPlatform::autoStartTurnedOff()
{
    const std::pair<QByteArray, bool> contents[] = {
        {"[Desktop Entry]\nExec=x\nX-GNOME-Autostart-enabled=true\n", true},
        {"[Desktop Entry]\nExec=x\nHidden = true\n", false},
        {"[Desktop Entry]\nX-GNOME-Autostart-enabled=false\nExec=x\n", false},
        {"", false},
    };
    for (const auto &[content, starts] : contents) {
        Files::put(autoStartFile(), content);
        QCOMPARE(platform::startsWithSystem(), starts);
        QVERIFY(!platform::setStartsWithSystem(true, {}));
        QCOMPARE(Files::content(autoStartFile()), content);
        QVERIFY(platform::setStartsWithSystem(true, "/x"));
        QVERIFY(platform::startsWithSystem());
    }
}

/** Something stands where the entry goes: the caller learns it, and nothing of the user's is lost. */
void TestPlatform::autoStartThatCannotBeWritten()
{
    const QString inside = autoStartFile() + "/kept";
    Files::put(inside, "x");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("halvarion.desktop: "));
    QVERIFY(!platform::setStartsWithSystem(true, "/x"));
    QVERIFY(!platform::startsWithSystem());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("halvarion.desktop: "));
    QVERIFY(!platform::setStartsWithSystem(false, "/x"));
    QCOMPARE(Files::content(inside), QByteArray("x"));
}

void TestPlatform::mouseSettings_data()
{
    const Rows<QByteArray, QStringList, QByteArray> row("desktop", "installed", "started");
    const QStringList two = {"gnome-control-center", "xfce4-mouse-settings"};
    row("own desktop", "XFCE", two, "xfce4-mouse-settings:"); // started: none if empty
    row("derived desktop", "ubuntu:GNOME", two, "gnome-control-center:mouse");
    row("unknown desktop", "", QStringList("kcmshell5"), "kcmshell5:kcm_mouse");
    row("two arguments", "UKUI", QStringList("ukui-control-center"), "ukui-control-center:-m mouse");
    row("none", "KDE", {}, QByteArray());
}

void TestPlatform::mouseSettings()
{
    QFETCH(QByteArray, desktop);
    QFETCH(QStringList, installed);
    QFETCH(QByteArray, started);
    const QString note = inHome("started");
    for (const QString &program : installed) {
        const QString file = inHome("bin/" + program);
        Files::put(file, "#!/bin/sh\necho \"${0##*/}:$*\" >" + QFile::encodeName(note) + '\n');
        QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner);
    }
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(inHome("bin")));
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    const bool opened = platform::openSystemMouseSettings();
    qputenv("PATH", path);
    QCOMPARE(opened, !started.isEmpty());
    if (opened)
        QTRY_COMPARE(Files::content(note).trimmed(), started);
}

QTEST_GUILESS_MAIN(TestPlatform)
#include "tst_platform.moc"
