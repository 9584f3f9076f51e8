#include "macro/MacroExportFile.h"
#include "macro/MacroFile.h"
#include "macro/MacroImage.h"
#include "productdata/UserFolders.h"
#include "support/Files.h"
#include "support/MacroText.h"
#include "support/TestHome.h"

#include <QDataStream>
#include <QElapsedTimer>
#include <QIcon>
#include <QPixmap>
#include <QtEndian>

#include <cstring>

namespace {

QString macroFolder(const QString &file = {}) { return UserFolders::path(UserFolders::Folder::MacroPage) + '/' + file; }

template<typename Value>
QByteArray streamed(const Value &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes;
}

} // namespace

/** What a macro is in its four forms, and what becomes of damaged ones. */
class MacroModelTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        QDir(macroFolder()).removeRecursively();
        UserFolders::prepare();
    }
    void keyOfMouse();
    void virtualKeys();
    void fileOfText();
    void hugeFiles();
    void names();
    void lists();
    void image();
    void foreignExports();
};

void MacroModelTest::keyOfMouse()
{
    const QString left = MouseButtonNames::current().names[0], middle = MouseButtonNames::current().names[2];
    const std::pair<int, QString> names[] = {
        {32, "3,RShift,,"},       {4, "A,LAlt,," + middle},   {64, "F7,RAlt,F7,"}, {1, "LCtrl,LCtrl,LCtrl," + left},
        {128, "RWin,RWin,RWin,"}, {88, "Enter,Enter,Enter,"}, {5, "B,B,B,"},       {260, ",,,"}}; // isn't 4
    for (const auto &[code, expected] : names) {
        QStringList found;
        for (const int kind : {1, 0, 3, 4})
            found += KeyTable::name(KeyTable::findInMouse(code, kind));
        QCOMPARE(found.join(','), expected);
    }
}

void MacroModelTest::virtualKeys()
{
    QStringList all;
    for (const int key : {48, 57, 65, 90, 112, 123, 96, 105, 192, 220, 12, 160, 165, 92, 46, 110, 11, 173, 255}) {
        const MacroKey *found = KeyTable::findVirtualKey(key);
        all += found ? KeyTable::name(*found) : QStringLiteral("none");
    }
    QCOMPARE(all.join(' '), QStringLiteral("0 9 A Z F1 F12 Num0 Num9 ` \\  LShift RAlt RWin Del Num. none none none"));
}

void MacroModelTest::fileOfText()
{
    const std::tuple<const char *, QByteArray, int, const char *> texts[] = {
        {"never saved", "", 0, ""},
        {"both line ends", "254\r\n0x2B 1 0\r\n10ms\n0x2B 1 1\n", 254, "Tab+ 10ms Tab-"},
        {"code and kind", "1\n0x01 0 0\n0x20 1 0\n0x20 0 1\n0x00 1 0\n0x01 1 0\n", 1, "LCtrl+ 3+ RShift- + +"},
        {"repeat too high", "251\n", 1, ""},
        {"repeat in words", "often 254\n", 1, ""},
        {"action untold", "253\n0x04 1 7\n5ms\n0x04 1 1", 253, "A? 5ms A?"},
        {"damaged lines", "1\n\n0x04 1\n0x04 1 0 0\nxyz\n-5ms\n0x2b 1 0\n\xff\xfe 1 0\n", 1, "0ms 0ms + +"},
        {"a long pause", "1\n0x04 1 0\n70000ms\n4294967295ms\n4294967296ms\n", 1, "A+ 70000ms 4294967295ms 0ms"}};
    for (const auto &[name, text, repeat, rows] : texts) { // a repeat of 0 is none
        Files::put(macroFolder("m.ini"), text);
        const std::optional<MacroContent> content = MacroFile::read("m");
        QVERIFY2(content && MacroImage::makeFromFile("m") && MacroText::of(content->rows) == rows, name);
        QCOMPARE(content->repeat.value_or(0), repeat);
        QCOMPARE(MacroImage::repeatCodeOfFile("m"), content->repeat.value_or(1));
    }
    QVERIFY(!MacroImage::makeFromFile("gone"));
}

void MacroModelTest::hugeFiles()
{
    const std::tuple<QByteArray, int, int> files[] = {{"0x04 1 0\n5ms\n", 50000, 139},
                                                      {QByteArray(1 << 20, 'x'), 100, 0},
                                                      {"\n", 4 << 20, 0},
                                                      {QByteArray(1 << 20, ' ') + "\n0x04 1 0\n", 1, 1}};
    for (const auto &[line, count, rows] : files) {
        Files::put(macroFolder("m.ini"), "1\n" + line.repeated(count));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(MacroFile::read("m")->rows.size(), rows);
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    }
}

void MacroModelTest::names()
{
    QStringList bad = {"",    ".",     "..",    "../x",   "a/b",  "a\\b",     "a:b",    "C:", "nul",
                       "con", "LPT9 ", "x.",    "x ",     ".x",   "a\nb",     "a*",     "a?", "a\"",
                       "a<b", "a|b",   "a\x7f", "Com1.x", "COM¹", "aux .txt", "CONOUT$"};
    bad << QString("a\0b").insert(1, QChar(0)) << QString(QChar(0xd83d)) << QString::fromUtf8("\xff\xfe");
    for (const QString &name : qAsConst(bad)) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no file can be made"));
        const bool isWritten = MacroFile::write(name, {1, MacroText::rows("A+")});
        QVERIFY2(!isWritten && !MacroFile::isFileName(name) && MacroFile::isTaken(name, {}) && !MacroFile::read(name),
                 qPrintable(name));
    }
    QCOMPARE(QDir(macroFolder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
    const QStringList good{"%s", "-rf", "a", "com10", "Console", "O'Neil & [x]", "x.ini", "~", "宏 1", "🙂"};
    for (const QString &name : good) {
        QVERIFY2(MacroFile::isFileName(name) && !MacroFile::isTaken(name, {"b"}), qPrintable(name));
        QVERIFY2(MacroFile::write(name, {1, MacroText::rows("A+")}) && MacroFile::read(name), qPrintable(name));
    }
    QCOMPARE(MacroFile::names().size(), good.size());
    QVERIFY(MacroFile::isTaken("a", {"A"})); // whatever the case
}

void MacroModelTest::lists()
{
    for (const char *file : {"b.ini", "A.ini", "xml1.ini", "zxml.ini", "c", "b.ini.abcDEF", "d.ini.abcDEF.ini"})
        Files::put(macroFolder(file), "1\n");
    QDir(macroFolder()).mkdir("folder.ini");
#ifdef Q_OS_WIN // has no links that a program follows by itself
    QDir(macroFolder()).mkdir("link.ini");
#else
    QFile::link("/etc/hostname", macroFolder("link.ini"));
#endif
    QCOMPARE(MacroFile::names(), QStringList({"A", "b", "c", "d.ini.abcDEF"}));
    QCOMPARE(MacroFile::names(MacroFile::XmlRule::SkipFirst), QStringList({"A", "b", "c", "d.ini.abcDEF", "zxml"}));
    QVERIFY(!MacroFile::read("link") && !MacroFile::read("folder") && !MacroFile::read("gone"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no file can be made|is not replaced"));
    QVERIFY(!MacroFile::write("link", {1, {}}));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("could not be renamed"));
    QVERIFY(!MacroFile::rename("A", "b") && !MacroFile::create("b"));
    QVERIFY(MacroFile::rename("A", "z") && MacroFile::remove("b") && MacroFile::create("b"));
    QVERIFY(!MacroFile::read("b")->repeat);
}

void MacroModelTest::image()
{
    MacroSlot made = MacroImage::make("abcdefghijklmnopqrstuvwxyz1234", MacroText::rows("A+ 10ms A-"));
    QCOMPARE(int(made.EventCount), 2);
    QCOMPARE(MacroImage::name(made), QStringLiteral("abcdefghijklmnopqrstuvwxyz1234"));
    MacroImage::setName(made, "宏宏宏宏宏宏宏宏宏a宏"); // the last one would be cut
    const int han = QString("宏").toLocal8Bit().size(); // three bytes; in a code page of Windows one or two
    QCOMPARE(int(made.NameLength), han == 3 ? 28 : 10 * han + 1);
    MacroImage::setName(made, "ab");
    QVERIFY(std::memcmp(made.Name, QByteArray(30, '\0').replace(0, 2, "ab").constData(), 30) == 0);
    QCOMPARE(int(MacroImage::make("x", {}).EventCount), 1);
    QCOMPARE(int(MacroImage::make("x", MacroText::rows("A+ 5ms") + MacroText::many(200)).EventCount), 70);
    made.NameLength = 255;
    made.EventCount = 255;
    QCOMPARE(MacroImage::rows(made).size(), 139);
}

void MacroModelTest::foreignExports()
{
    const auto text = [](const char *word) { return streamed(QString::fromUtf8(word)); };
    QPixmap picture(24, 24);
    picture.fill(Qt::red);
    const QByteArray a = text("A"), icon = streamed(QIcon(picture));
    const QByteArray none = streamed(QIcon());
    const QByteArray press("\0\0\0\2\x30\0", 6);
    const QByteArray delay = text("20ms") + none;
    const QByteArray good = a + icon + press + delay + a + none + QByteArray("\0\0\0\2\x31\0", 6);
    QByteArray chunk = icon;
    qToBigEndian<quint32>(0xfffffff0, chunk.data() + chunk.indexOf("IHDR") - 4);
    const std::tuple<const char *, int, QByteArray, const char *> exports[] = {
        {"whole", 3, good, "A+ 20ms A-"},
        {"count below zero", -1, good, ""},
        {"cut in a row", 3, good.chopped(1), "damaged"},
        {"unknown key, foreign mark", 1, text("Käse") + none + QByteArray("\0\0\0\2??", 6), "-"},
        {"text of 4 GB", 1, QByteArray("\xff\xff\xff\xfe", 4) + good, "damaged"},
        {"chunk of 4 GB", 3, a + chunk + press, "damaged"},
        {"engine of a plug-in", 3, a + text("svg") + QByteArray(64, '\0'), "damaged"},
        {"too many events", 200000, (a + none + press + delay).repeated(2000), "139"}};
    for (const auto &[name, count, rows, expected] : exports) {
        QByteArray content = MacroExportFile::write("x", 1, {}, {});
        qToBigEndian<qint32>(count, content.data() + content.size() - 4);
        const auto read = MacroExportFile::readRows(content + rows, {MouseButtonNames::current()});
        MacroRows found;
        for (const MacroExportFile::Row &row : read.value_or(QVector<MacroExportFile::Row>()))
            found += row.row;
        const QString words = !read              ? QStringLiteral("damaged")
                              : found.size() > 3 ? QString::number(found.size())
                                                 : MacroText::of(found);
        QVERIFY2(words == expected, name);
    }
}

HALVARION_TEST_MAIN(MacroModelTest)
#include "tst_macromodel.moc"
