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

QByteArray icon()
{
    QPixmap picture(24, 24);
    picture.fill(Qt::red);
    return streamed(QIcon(picture));
}

} // namespace

/** What a macro is in its four forms, and what becomes of damaged ones. */
class MacroModelTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void keyOfMouse_data();
    void keyOfMouse();
    void virtualKeys();
    void fileOfText_data();
    void fileOfText();
    void hugeFiles_data();
    void hugeFiles();
    void names_data();
    void names();
    void lists();
    void image();
    void foreignExports_data();
    void foreignExports();
};

void MacroModelTest::init()
{
    QDir(macroFolder()).removeRecursively();
    UserFolders::prepare();
}

void MacroModelTest::keyOfMouse_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QStringList>("names"); // with kind 1, 0, 3, 4
    const QString left = MouseButtonNames::current().names[0];
    QTest::newRow("32") << 32 << QStringList({"3", "RShift", "", ""});
    QTest::newRow("4") << 4 << QStringList({"A", "LAlt", "", MouseButtonNames::current().names[2]});
    QTest::newRow("64") << 64 << QStringList({"F7", "RAlt", "F7", ""});
    QTest::newRow("1") << 1 << QStringList({"LCtrl", "LCtrl", "LCtrl", left});
    QTest::newRow("128") << 128 << QStringList({"RWin", "RWin", "RWin", ""});
    QTest::newRow("88") << 88 << QStringList({"Enter", "Enter", "Enter", ""});
    QTest::newRow("5") << 5 << QStringList({"B", "B", "B", ""});
    QTest::newRow("260 isn't 4") << 260 << QStringList({"", "", "", ""});
}

void MacroModelTest::keyOfMouse()
{
    QFETCH(int, code);
    QStringList found;
    for (const int kind : {1, 0, 3, 4})
        found += KeyTable::name(KeyTable::findInMouse(code, kind));
    QTEST(found, "names");
}

void MacroModelTest::virtualKeys()
{
    const auto nameOf = [](int key) {
        const MacroKey *found = KeyTable::findVirtualKey(key);
        return found ? KeyTable::name(*found) : QStringLiteral("none");
    };
    QStringList all;
    for (const int key : {48, 57, 65, 90, 112, 123, 96, 105, 192, 220, 12, 160, 165, 92, 46, 110, 11, 173, 255})
        all += nameOf(key);
    QCOMPARE(all.join(' '), QStringLiteral("0 9 A Z F1 F12 Num0 Num9 ` \\  LShift RAlt RWin Del Num. none none none"));
}

void MacroModelTest::fileOfText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("repeat"); // 0 for none
    QTest::addColumn<QString>("rows");
    QTest::newRow("never saved") << QByteArray() << 0 << "";
    QTest::newRow("both line ends") << QByteArray("254\r\n0x2B 1 0\r\n10ms\n0x2B 1 1\n") << 254 << "Tab+ 10ms Tab-";
    QTest::newRow("code and kind") << QByteArray("1\n0x01 0 0\n0x20 1 0\n0x20 0 1\n0x00 1 0\n0x01 1 0\n") << 1
                                   << "LCtrl+ 3+ RShift- + +";
    QTest::newRow("repeat too high") << QByteArray("251\n") << 1 << "";
    QTest::newRow("repeat in words") << QByteArray("often 254\n") << 1 << "";
    QTest::newRow("action untold") << QByteArray("253\n0x04 1 7\n5ms\n0x04 1 1") << 253 << "A? 5ms A?";
    QTest::newRow("damaged lines") << QByteArray("1\n\n0x04 1\n0x04 1 0 0\nxyz\n-5ms\n0x2b 1 0\n\xff\xfe 1 0\n") << 1
                                   << "0ms 0ms + +";
    QTest::newRow("a long pause") << QByteArray("1\n0x04 1 0\n70000ms\n4294967295ms\n4294967296ms\n") << 1
                                  << "A+ 70000ms 4294967295ms 0ms";
}

void MacroModelTest::fileOfText()
{
    QFETCH(QByteArray, text);
    Files::put(macroFolder("m.ini"), text);
    const std::optional<MacroContent> content = MacroFile::read("m");
    QVERIFY(content);
    QTEST(content->repeat.value_or(0), "repeat");
    QCOMPARE(MacroImage::repeatCodeOfFile("m"), content->repeat.value_or(1));
    QVERIFY(MacroImage::makeFromFile("m") && !MacroImage::makeFromFile("gone"));
    QTEST(MacroText::of(content->rows), "rows");
}

void MacroModelTest::hugeFiles_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("rows");
    QTest::newRow("100,000 events") << QByteArray("0x04 1 0\n5ms\n") << 50000 << 139;
    QTest::newRow("100 MB") << QByteArray(1 << 20, 'x') << 100 << 0;
    QTest::newRow("lines of nothing") << QByteArray("\n") << (4 << 20) << 0;
    QTest::newRow("a line of 1 MB before a row") << QByteArray(1 << 20, ' ') + "\n0x04 1 0\n" << 1 << 1;
}

void MacroModelTest::hugeFiles()
{
    QFETCH(QByteArray, line);
    QFETCH(int, count);
    {
        QFile file(macroFolder("m.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("1\n");
        for (int at = 0; at < count; ++at)
            file.write(line);
    }
    QElapsedTimer clock;
    clock.start();
    QTEST(MacroFile::read("m")->rows.size(), "rows");
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QFile::remove(macroFolder("m.ini"));
}

void MacroModelTest::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isName");
    for (const char *bad :
         {"",   ".",  "..",   "../x", "a/b", "a\\b", "a:b", "C:",  "nul",   "Com1.x",   "LPT9 ", "con",      "x.",
          "x ", ".x", "a\nb", "a*",   "a?",  "a\"",  "a<b", "a|b", "a\x7f", "\xff\xfe", "COM¹",  "aux .txt", "CONOUT$"})
        QTest::addRow("\"%s\"", bad) << QString::fromUtf8(bad) << false;
    QTest::newRow("NUL inside") << QString("a\0b").insert(1, QChar(0)) << false;
    QTest::newRow("half a character") << QString(QChar(0xd83d)) << false;
    for (const char *good : {"a", "宏 1", "x.ini", "Console", "com10", "-rf", "%s", "~", "🙂", "O'Neil & [x]"})
        QTest::addRow("\"%s\"", good) << QString::fromUtf8(good) << true;
}

void MacroModelTest::names()
{
    QFETCH(QString, name);
    QFETCH(bool, isName);
    QCOMPARE(MacroFile::isFileName(name), isName);
    QCOMPARE(MacroFile::isTaken(name, {"A"}), !isName || name == "a"); // whatever the case
    if (!isName)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no file can be made"));
    QCOMPARE(MacroFile::write(name, {1, MacroText::rows("A+")}), isName);
    QCOMPARE(QDir(macroFolder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), int(isName));
    QCOMPARE(MacroFile::names(), isName ? QStringList(name) : QStringList());
    QCOMPARE(MacroFile::read(name).has_value(), isName);
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
    QVERIFY(!MacroFile::rename("A", "b"));
    QVERIFY(!MacroFile::create("b"));
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

void MacroModelTest::foreignExports_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("read"); // "damaged" where nothing may come of it
    const auto text = [](const char *word) { return streamed(QString::fromUtf8(word)); };
    const QByteArray a = text("A");
    const QByteArray none = streamed(QIcon());
    const QByteArray press("\0\0\0\2\x30\0", 6);
    const QByteArray release("\0\0\0\2\x31\0", 6);
    const QByteArray delay = text("20ms") + none;
    const QByteArray good = a + icon() + press + delay + a + none + release;
    QTest::newRow("whole") << 3 << good << "A+ 20ms A-";
    QTest::newRow("count below zero") << -1 << good << "";
    QTest::newRow("cut in a row") << 3 << good.chopped(1) << "damaged";
    QTest::newRow("unknown key, foreign mark") << 1 << text("Käse") + none + QByteArray("\0\0\0\2??", 6) << "-";
    QTest::newRow("text of 4 GB") << 1 << QByteArray("\xff\xff\xff\xfe", 4) + good << "damaged";
    QByteArray chunk = icon();
    qToBigEndian<quint32>(0xfffffff0, chunk.data() + chunk.indexOf("IHDR") - 4);
    QTest::newRow("chunk of 4 GB") << 3 << a + chunk + press << "damaged";
    QTest::newRow("engine of a plug-in") << 3 << a + text("svg") + QByteArray(64, '\0') << "damaged";
    QTest::newRow("too many events") << 200000 << (a + none + press + delay).repeated(2000) << "139";
}

void MacroModelTest::foreignExports()
{
    QFETCH(int, count);
    QFETCH(QByteArray, rows);
    QByteArray content = MacroExportFile::write("x", 1, {}, {});
    qToBigEndian<qint32>(count, content.data() + content.size() - 4);
    const auto read = MacroExportFile::readRows(content + rows, {MouseButtonNames::current()});
    MacroRows found;
    for (const MacroExportFile::Row &row : read.value_or(QVector<MacroExportFile::Row>()))
        found += row.row;
    const QString words = !read              ? QStringLiteral("damaged")
                          : found.size() > 3 ? QString::number(found.size())
                                             : MacroText::of(found);
    QTEST(words, "read");
}

HALVARION_TEST_MAIN(MacroModelTest)
#include "tst_macromodel.moc"
