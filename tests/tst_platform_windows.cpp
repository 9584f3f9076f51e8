#include "platform/AutoStart.h"
#include "platform/KeyboardHook.h"
#include "platform/Registry.h"
#include "productdata/SafeFile.h"
#include "support/Files.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <cstring>
#include <map>
#include <windows.h>

namespace {

constexpr char testKey[] = R"(HKEY_CURRENT_USER\Software\Velko\Velko\Mouse Drive Test)";
constexpr char runKey[] = R"(HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run)";

quint32 numberAt(const QByteArray &bytes, quint32 at)
{
    quint32 number = 0;
    if (at + sizeof number <= static_cast<quint32>(bytes.size()))
        std::memcpy(&number, bytes.constData() + at, sizeof number);
    return number;
}

/** The streams of a minidump by their kind, as the format has them; none when anything lies outside the file. */
std::map<quint32, QByteArray> streamsOf(const QByteArray &dump)
{
    std::map<quint32, QByteArray> streams;
    if (!dump.startsWith("MDMP") || (numberAt(dump, 4) & 0xffffU) != 0xa793)
        return {};
    const quint32 directory = numberAt(dump, 12);
    for (quint32 index = 0; index < numberAt(dump, 8); ++index) {
        const quint32 entry = directory + 12 * index; // kind, size, place
        const quint64 size = numberAt(dump, entry + 4);
        const quint64 place = numberAt(dump, entry + 8);
        if (place + size > static_cast<quint64>(dump.size()))
            return {};
        streams[numberAt(dump, entry)] = dump.mid(static_cast<int>(place), static_cast<int>(size));
    }
    return streams;
}

/** What is wrong with the one minidump in a folder, whose exception has to be this one; empty if it is as it should. */
QString faultOfDump(const QString &folder, quint32 code)
{
    const QStringList names = QDir(folder).entryList({"????_??_??_??_??_??.dmp"}, QDir::Files);
    if (names.size() != 1)
        return QString("%1 dumps").arg(names.size());
    std::map<quint32, QByteArray> streams = streamsOf(Files::content(folder + '/' + names[0]));
    for (const quint32 kind : {3U, 4U, 6U, 7U}) { // threads, modules, exception, system
        if (streams[kind].isEmpty())
            return QString("no stream %1").arg(kind);
    }
    if (numberAt(streams[6], 8) != code) // behind the thread's id and a gap
        return QString("exception %1").arg(numberAt(streams[6], 8), 0, 16);
    return streams[3].contains(streams[6].left(4)) ? QString() : QString("the thread of the exception is unknown");
}

void type(WORD key, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

} // namespace

class TestPlatformWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void crashLeavesMinidump_data();
    void crashLeavesMinidump();
    void crashOfTheProgram();
    void registryKeepsText();
    void autoStartEntry();
    void hookHearsKeys();
    void fileThatIsOpenElsewhere();
};

void TestPlatformWindows::crashLeavesMinidump_data()
{
    QTest::addColumn<quint32>("code");
    QTest::newRow("fault") << quint32(EXCEPTION_ACCESS_VIOLATION);
    QTest::newRow("nullCall") << quint32(EXCEPTION_ACCESS_VIOLATION);
    QTest::newRow("thread") << quint32(EXCEPTION_ACCESS_VIOLATION);
    QTest::newRow("overflow") << quint32(EXCEPTION_STACK_OVERFLOW);
    QTest::newRow("abort") << quint32(0x40000015); // what the system's own library makes of it
    QTest::newRow("exception") << quint32(0x40000015);
}

void TestPlatformWindows::crashLeavesMinidump()
{
    QFETCH(quint32, code);
    const QTemporaryDir home;
    QVERIFY(QDir(home.path()).mkdir("用户 Ж")); // no 8-bit encoding has both
    QProcess child;
    child.setWorkingDirectory(home.filePath("用户 Ж"));
    child.start(QCoreApplication::applicationDirPath() + "/crashchild.exe", {QTest::currentDataTag(), "not there yet"});
    QVERIFY(child.waitForFinished());
    const QString folder = child.workingDirectory() + "/not there yet";
    QCOMPARE(faultOfDump(folder, code), QString());
}

/** The program itself, whose thread begins at an address that nobody may read. */
void TestPlatformWindows::crashOfTheProgram()
{
    QProcess program;
    program.start(QCoreApplication::applicationDirPath() + "/halvarion.exe", QStringList());
    // Its mice answer before all of its pages are there, and with them what writes the dump.
    QTRY_VERIFY_WITH_TIMEOUT(IsWindowVisible(FindWindowW(nullptr, L"Mouse Drive Test")), 60000);
    const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, static_cast<DWORD>(program.processId()));
    CloseHandle(
        CreateRemoteThread(process, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(16), nullptr, 0, nullptr));
    CloseHandle(process);
    QVERIFY(program.waitForFinished(90000));
    QCOMPARE(faultOfDump(QDir::homePath() + "/AppData/Local/VelkoA/Exception", EXCEPTION_ACCESS_VIOLATION), QString());
}

void TestPlatformWindows::registryKeepsText()
{
    const std::string texts[] = {"", "1,2,3,4", "鼠标 Ж", std::string(3000, 'k')};
    for (const std::string &text : texts) {
        QVERIFY(platform::setRegistryText(testKey, "UpdateFailInfo", text));
        QCOMPARE(platform::registryText(testKey, "UpdateFailInfo"), text);
    }
    HKEY key = nullptr;
    QCOMPARE(RegOpenKeyExW(HKEY_CURRENT_USER, LR"(Software\Velko\Velko\Mouse Drive Test)", 0, KEY_SET_VALUE, &key), 0);
    const DWORD number = 4;
    RegSetValueExW(key, L"LanguageIndex", 0, REG_DWORD, reinterpret_cast<const BYTE *>(&number), sizeof number);
    const BYTE odd[] = {'a', 0, 'b', 0, 'c'}; // neither terminated nor of whole characters
    RegSetValueExW(key, L"Odd", 0, REG_SZ, odd, sizeof odd);
    RegCloseKey(key);
    QCOMPARE(platform::registryText(testKey, "LanguageIndex"), std::string("4"));
    QCOMPARE(platform::registryText(testKey, "Odd").substr(0, 2), std::string("ab"));
    for (const char *name : {"UpdateFailInfo", "LanguageIndex", "Odd", "Odd"})
        QVERIFY(platform::removeRegistryValue(testKey, name) && platform::registryText(testKey, name).empty());
    QVERIFY(platform::registryText("HKEY_NOBODY\\a", "b").empty());
}

void TestPlatformWindows::autoStartEntry()
{
    QVERIFY(platform::setStartsWithSystem(true, "C:/Program Files/鼠标/halvarion.exe"));
    QVERIFY(platform::startsWithSystem());
    QCOMPARE(platform::registryText(runKey, "halvarion"), std::string("C:\\Program Files\\鼠标\\halvarion.exe"));
    QVERIFY(platform::setStartsWithSystem(false, {}) && !platform::startsWithSystem());
}

/** Keys as the system gets them, while a window of this thread is in front. */
void TestPlatformWindows::hookHearsKeys()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QStringList heard;
    platform::KeyboardHook hook;
    QVERIFY(hook.install([&](unsigned key, bool isDown, bool isRepeat) {
        heard << QString(isDown ? "+%1" : "-%1").arg(key) + (isRepeat ? "*" : "");
    }));
    type('A', 0);
    type('A', 0);
    type('A', KEYEVENTF_KEYUP);
    type(VK_RCONTROL, KEYEVENTF_EXTENDEDKEY);
    type(VK_RCONTROL, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP);
    const QString expected = "+65 +65* -65 +163 -163";
    QTRY_COMPARE(heard.join(' '), expected);
    hook.remove();
    type('B', 0);
    type('B', KEYEVENTF_KEYUP);
    QTest::qWait(100);
    QCOMPARE(heard.join(' '), expected);
}

/** A scanner or an editor may hold a file at any moment: that is an ordinary failure, and what was there stays. */
void TestPlatformWindows::fileThatIsOpenElsewhere()
{
    const QTemporaryDir home;
    const QString path = home.filePath("宏.ini");
    QVERIFY(replaceFile(path, "old"));
    const std::wstring wide = QDir::toNativeSeparators(path).toStdWString();
    const HANDLE other = CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    QVERIFY(other != INVALID_HANDLE_VALUE);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a file could not be written"));
    QVERIFY(!replaceFile(path, "new"));
    CloseHandle(other);
    QCOMPARE(QDir(home.path()).entryList(QDir::Files), QStringList("宏.ini"));
    QCOMPARE(Files::content(path), QByteArray("old"));
    QVERIFY(replaceFile(path, "new"));
}

QTEST_MAIN(TestPlatformWindows)
#include "tst_platform_windows.moc"
