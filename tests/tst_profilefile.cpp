#include "buttons/ProfileFile.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "support/FaultBench.h"
#include "support/Files.h"
#include "support/ProfileControls.h"
#include "support/Rows.h"
#include "support/TestHome.h"
#include "ui/MyConmboBox.h"

#include <QDate>
#include <QDialogButtonBox>
#include <QProcess>
#include <QSlider>

namespace {

QByteArray held(const QString &mouse) { return bytesOf(VirtualMice::record(mouse)); }

/** Gives a mouse settings of all kinds. \return what it held before */
QByteArray change(const QString &mouse)
{
    FlashDataMap record = VirtualMice::record(mouse);
    const QByteArray before = bytesOf(record);
    record.StopCloseTime = 30;
    record.LightRed = record.DpiLevels[2].Blue = 7;
    for (std::uint8_t slot = 0; slot < 6; ++slot) {
        record.KeyFunctions[slot] = {6, slot, 3};
        record.MacroSlots[slot] = {4, "Jump", 70, {}};
        std::fill_n(record.MacroSlots[slot].Events, 70, MacroEvent{1, 1, 4, 70000});
    }
    VirtualMice::flash(mouse, record);
    return before;
}

} // namespace

/** Profile files, and what is done with them before the whole program; the mouse's flash tells what came of it. */
class ProfileFileTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { bench.reset(); }
    void anyFile();
    void roundTrip();
    void inTheMiddle_data();
    void inTheMiddle();
    void fileDialogs();
    void chosenProfileAndSleep();
    void theNextMouseSleeps();

private:
    void open(const QString &mouse, const std::function<void()> &prepare = {});
    /**
     * Clicks a button of the page and returns when what it does is over. On a machine that is busy with something else
     * the mouse may answer too late to count as awake; the user then clicks again.
     */
    void press(const QString &button);
    Program &program() { return bench->program(); }

    std::unique_ptr<QTemporaryDir> folder;
    QString file;
    std::unique_ptr<FaultBench> bench;
};

void ProfileFileTest::init()
{
    folder = std::make_unique<QTemporaryDir>(); // a file that exists would be asked about
    file = folder->filePath("Мышь 鼠标.bin");
    UserSettings::instance()->setLanguage(0);
    SelectInfo().set({}); // the first model, for what needs no device
}

void ProfileFileTest::open(const QString &mouse, const std::function<void()> &prepare)
{
    bench = std::make_unique<FaultBench>(prepare);
    program().whenShown("MouseOffLine", [] { Program::dismiss("MouseOffLine"); });
    QVERIFY(program().connectMouse(mouse));
}

void ProfileFileTest::press(const QString &button)
{
    for (int tries = 0; tries < 10; ++tries) {
        QVERIFY(QTest::qWaitFor([this] { return program().isConnected(); }, 10000));
        program().forgetPrompts();
        program().find<QToolButton>(button)->click();
        if (program().shownPrompts().value(0) != "MouseOffLine")
            return;
    }
    QFAIL("the mouse is never awake");
}

/** Three arrays, each behind its length of four bytes: the mark, the sensor, the record. */
void ProfileFileTest::anyFile()
{
    FlashDataMap record{};
    std::memset(&record, 1, sizeof record);
    record.DpiLevelCount = 8; // as many as the model has
    WriteProfile(file, record);
    const QByteArray good = Files::content(file);
    const auto with = [&](int at, const QByteArray &bytes) {
        return QByteArray(good).replace(at, bytes.size(), bytes);
    };
    const QByteArray unused(6, '\xff'); // behind the mark, and behind the record
    for (const auto &[content, result] : {std::pair(with(10, unused) + QByteArray(100000, 'x'), 0),
                                          {with(4, "Other"), 1},
                                          {with(20, "3311"), 2},
                                          {with(36 + int(offsetof(FlashDataMap, DpiLevelCount)), "\t"), 2},
                                          {with(35, "\xbd") + 'x', 1}, // a record a byte longer
                                          {good.left(16), 2},
                                          {with(32, "\x80"), 1}}) { // of 2 GiB
        Files::put(file, content);
        FlashDataMap read{};
        QCOMPARE(int(ReadProfile(file, read)), result);
        QVERIFY(read == (result == 0 ? record : FlashDataMap{}));
    }
    // What can't be read, or written, does no harm and makes nobody wait.
    const QString pipe = folder->filePath("pipe");
    // The folders of Windows hold no pipes.
    QVERIFY(QProcess::execute("mkfifo", {pipe}) == 0 || QDir(folder->path()).mkdir("pipe"));
    for (const QString &path : {folder->filePath("missing"), folder->path(), pipe})
        QCOMPARE(int(ReadProfile(path, record)), 1);
    for (const QString &path : {pipe, pipe + "/below"})
        WriteProfile(path, record);
    QVERIFY(!QFileInfo(pipe).isFile()); // what uses it goes on
}

/** Saved, brought back to the factory's, and taken over again: the flash holds every byte as before. */
void ProfileFileTest::roundTrip()
{
    for (const QString mouse : {"q1", "q2"}) {
        init();
        QByteArray factory;
        open(mouse, [&] { factory = change(mouse); });
        const QByteArray before = held(mouse);
        const ProfileHand hand(file);
        press("OutputData");
        QCOMPARE(Files::content(file).mid(36), before);
        press("Reset");
        QCOMPARE(held(mouse), factory);
        QVERIFY(!BulkUpdateActive && !program().isPromptShown());
        press("ImportData");
        QVERIFY(!program().shownPrompts().contains("InportFail"));
        QTRY_COMPARE(held(mouse), before);
        // The pages let the user go on.
        QTRY_VERIFY(program().window()->findChild<QSlider *>("horizontalLight")->isEnabled());
        bench.reset();
    }
}

void ProfileFileTest::inTheMiddle_data()
{
    const Rows<QString, QString, QString> row("button", "moment", "hand");
    for (const char *hand : {"sleep q1", "unplug q1-4k", "profile q1 2"}) {
        for (const auto &[button, moment] :
             {std::pair("OutputData", "QFileDialog"), std::pair("ImportData", "QFileDialog"),
              std::pair("ImportData", "UpDataParam"), std::pair("Reset", "ContainReset"),
              std::pair("Reset", "UpDataParam")})
            row(qPrintable(QStringList({button, moment, hand}).join(", ")), button, moment, hand);
    }
}

/**
 * Something happens to the mouse while a dialog or prompt of the action is up. The profile for which it was begun holds
 * all of it or nothing, other mice nothing; and once the mouse is back, the screen says what it holds.
 */
void ProfileFileTest::inTheMiddle()
{
    QFETCH(QString, button);
    QFETCH(QString, moment);
    QFETCH(QString, hand);
    QByteArray factory;
    open("q1", [&] { factory = change("q1"); });
    FlashDataMap other = VirtualMice::record("q1");
    const QByteArray before = bytesOf(other);
    const QByteArray others = held("q2");
    other.DpiCurrentLevel = 4;
    other.KeyFunctions[3] = {1, 4, 0};
    WriteProfile(file, other);

    bool isDone = false;
    const ProfileHand user(button == "OutputData" ? file + "2" : file, [&](const QWidget *asked) {
        if (asked->metaObject()->className() == moment && !std::exchange(isDone, true))
            VirtualMice::tell(hand.split(' '));
    });
    press(button);
    QVERIFY(isDone && !BulkUpdateActive);
    VirtualMice::tell({"wake", "q1"});
    if (hand.startsWith("unplug")) {
        QTRY_VERIFY(!program().isDeviceWindowShown() && !program().isPromptShown());
        VirtualMice::tell({"plug", "q1-4k"});
        QVERIFY(bench->openQ1());
    }
    QCOMPARE(bench->settle(15000), QString());
    QTest::qWait(Wait::scaled(3000) + 20); // a change on the mouse counts from then on
    VirtualMice::tell({"profile", "q1", "0"});
    QCOMPARE(bench->settle(15000), QString());
    const QByteArray after = held("q1");
    QVERIFY(after == before || (button == "ImportData" && after == bytesOf(other)) ||
            (button == "Reset" && after == factory));
    QCOMPARE(held("q2"), others);
}

/** They speak the user's language, offer a name, begin where the last one ended, and may be left. */
void ProfileFileTest::fileDialogs()
{
    UserSettings::instance()->setLanguage(4);
    open("q1");
    const QByteArray before = held("q1");
    QStringList seen; // text of a button, folder, name
    const auto look = [&](const QWidget *asked) {
        if (const auto *const dialog = qobject_cast<const QFileDialog *>(asked))
            seen = QStringList{dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel)->text(),
                               dialog->directory().path(), dialog->findChild<QLineEdit *>("fileNameEdit")->text()};
    };
    const auto pressAnswering = [&](const char *button, const QString &path) {
        const ProfileHand hand(path, look);
        press(button);
    };
    pressAnswering("OutputData", file);
    QCOMPARE(seen[2], "HALVARION-Q1 " + QDate::currentDate().toString(Qt::ISODate) + ".bin");
    QCOMPARE(seen[0], QString("Отмена"));
    Files::put(file, "none");
    program().whenShown("InportFail", [] { Program::clickIn("InportFail", "NewHong"); });
    pressAnswering("ImportData", file);
    QCOMPARE(seen[1], QFileInfo(file).absolutePath());
    QVERIFY(program().shownPrompts().contains("InportFail"));
    const QString gone = folder->filePath("gone");
    QVERIFY(QDir().mkdir(gone));
    pressAnswering("OutputData", gone + "/a.bin");
    QVERIFY(QDir(gone).removeRecursively());
    pressAnswering("ImportData", {}); // changes his mind
    QCOMPARE(seen[2], QString());     // the folder of before isn't taken for a file
    QVERIFY(program().shownPrompts().isEmpty() && !BulkUpdateActive);
    QCOMPARE(held("q1"), before);
}

void ProfileFileTest::chosenProfileAndSleep()
{
    open("q1", [] {
        VirtualMice::tell({"profile", "q1", "2"});
        VirtualMice::tell({"rate", "q1", "8"});
        VirtualMice::tell({"profile", "q1", "0"});
    });
    auto *const list = program().find<MyConmboBox>("ProjectChoose");
    QTRY_VERIFY(list->isEnabled() && list->count() == 4);
    const auto choose = [list] {
        QTest::keyClick(list, Qt::Key_Down);
        Q_EMIT list->activated(list->currentIndex());
    };
    choose();
    QTRY_VERIFY(list->currentIndex() == 1 && program().isConnected());
    choose(); // before the program reads a mouse anew again
    QTRY_COMPARE(VirtualMice::device("q1")["profile"].toInt(), 2);
    QCOMPARE(bench->settle(15000), QString());
    QCOMPARE(list->currentIndex(), 2);
    list->setCurrentIndex(3);
    Q_EMIT list->activated(7); // which the mouse doesn't have and refuses
    QTRY_COMPARE(list->currentIndex(), 2);
    VirtualMice::tell({"sleep", "q1"});
    choose();
    QCOMPARE(list->currentIndex(), 2);
    QCOMPARE(VirtualMice::device("q1")["profile"].toInt(), 2);

    const ProfileHand hand({}); // for a question that mustn't come
    program().forgetPrompts();
    program().find<QToolButton>("Reset")->click();
    QCOMPARE(program().shownPrompts().value(0), QString("MouseOffLine"));
}

/** The program still has the record of the mouse before; what it shows and saves is what is known of this one. */
void ProfileFileTest::theNextMouseSleeps()
{
    open("q1");
    const QByteArray known = held("q1");
    QVERIFY(program().goBack() && program().connectMouse("q2"));
    VirtualMice::tell({"profile", "q2", "2"});
    const auto *const list = program().find<MyConmboBox>("ProjectChoose");
    QTRY_VERIFY(list->currentIndex() == 2 && program().isConnected());
    QVERIFY(program().goBack());
    VirtualMice::tell({"sleep", "q1"});
    program().click(program().pictureOf("q1"));
    QTRY_VERIFY(OfflineWaiting && allPagesLoaded());
    QVERIFY(!list->isEnabled() && list->currentIndex() == 0);
    const ProfileHand hand(file);
    auto *const save = program().find<QToolButton>("OutputData");
    save->click();
    QCOMPARE(Files::content(file).mid(36), known);

    QVERIFY(QFile::remove(file));
    QDir(UserFolders::path(UserFolders::Folder::DeviceInfo)).removeRecursively();
    save->click();
    QVERIFY(!QFileInfo::exists(file) && program().shownPrompts().contains("MouseOffLine"));
}

HALVARION_TEST_MAIN(ProfileFileTest)
#include "tst_profilefile.moc"
