#include "app/DialogMain.h"
#include "app/hub/PostMsg.h"
#include "buttons/ProfileFile.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/SelectedDevice.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"
#include "ui/MyConmboBox.h"
#include "ui/Prompt.h"

#include <QDataStream>
#include <QFileDialog>
#include <QLineEdit>
#include <QSlider>
#include <QTimer>
#include <QToolButton>

#include <cstring>
#include <memory>
#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

namespace {

QByteArray bytesOf(const FlashDataMap &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), int(flashDataMapSize));
}

QByteArray held(const QString &mouse) { return bytesOf(VirtualMice::record(mouse)); }

QByteArray stated(quint32 length, const QByteArray &bytes)
{
    QByteArray made;
    QDataStream(&made, QIODevice::WriteOnly) << length;
    return made + bytes;
}

QByteArray array(const QByteArray &bytes) { return stated(quint32(bytes.size()), bytes); }

QByteArray name(const char *text) { return array(QByteArray(text).leftJustified(12, '\0')); }

FlashDataMap someRecord()
{
    FlashDataMap record{};
    std::memset(&record, 1, sizeof record);
    return record;
}

QByteArray recordWith(int levels)
{
    FlashDataMap record = someRecord();
    record.DpiLevelCount = std::uint8_t(levels);
    return bytesOf(record);
}

} // namespace

/** Profile files, and what is done with them before the whole program; the mouse's flash tells what came of it. */
class ProfileFileTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void read_data();
    void read();
    void noFile();
    void roundTrip_data();
    void roundTrip();
    void refusedImport();
    void leftInTheMiddle_data();
    void leftInTheMiddle();
    void chosenProfileAndSleep();

private:
    /** Answers the file dialog that opens with a path; an empty one cancels it. */
    void answerDialog(const QString &path);
    void open(int entry = 1);
    /**
     * Clicks a button of the page and returns when what it does is over. On a machine that is busy with something else
     * the mouse may answer too late to count as awake; the user then clicks again.
     */
    void press(const char *button);
    /** Presses a button of the prompt that shows. */
    void pressButton(const QString &button);

    QTimer dialogTimer;
    QTemporaryDir folder;
    QString file;
    std::unique_ptr<Program> program;
};

void ProfileFileTest::init()
{
    file = folder.filePath("a.bin");
    QFile::remove(file);
    VirtualMice::restoreScene();
    SelectInfo().set({}); // the first model, for what needs no device
}

void ProfileFileTest::cleanup()
{
    dialogTimer.stop();
    program.reset();
}

void ProfileFileTest::open(int entry)
{
    program = std::make_unique<Program>();
    QVERIFY(program->connectEntry(entry));
}

void ProfileFileTest::answerDialog(const QString &path)
{
    dialogTimer.disconnect();
    connect(&dialogTimer, &QTimer::timeout, [path] {
        auto *const dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
        if (path.isEmpty())
            dialog->reject();
        else
            QMetaObject::invokeMethod(dialog, "accept");
    });
    dialogTimer.start(20);
}

void ProfileFileTest::pressButton(const QString &button)
{
    const QWidget *const prompt = QApplication::activeModalWidget();
    if (auto *const found = prompt ? prompt->findChild<QToolButton *>(button) : nullptr)
        found->click();
}

void ProfileFileTest::press(const char *button)
{
    for (int tries = 0; tries < 10; ++tries) {
        QVERIFY(QTest::qWaitFor([this] { return program->isConnected(); }, 10000));
        program->forgetPrompts();
        program->find<QToolButton>(button)->click();
        if (!program->shownPrompts().contains("MouseOffLine"))
            return;
    }
}

void ProfileFileTest::read_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("result");

    const QByteArray record = recordWith(8); // as many as the model has
    const QByteArray good = name("Velko") + name("3395") + array(record);
    QTest::newRow("as written") << good << 0;
    QTest::newRow("anything behind the mark")
        << array(QByteArray("Velko\0\xff\x01\x02\x03\x04\x05", 12)) + good.mid(16) << 0;
    QTest::newRow("more behind it") << good + QByteArray(100000, 'x') << 0;
    QTest::newRow("another maker") << name("Other") + good.mid(16) << 1;
    QTest::newRow("another sensor") << name("Velko") + name("3311") + array(record) << 2;
    QTest::newRow("a level too many") << name("Velko") + name("3395") + array(recordWith(9)) << 2;
    QTest::newRow("a record a byte longer") << name("Velko") + name("3395") + array(record + 'x') << 1;
    QTest::newRow("no record") << name("Velko") + name("3395") << 1;
    QTest::newRow("mark alone") << name("Velko") << 2;
    QTest::newRow("record of 2 GiB") << name("Velko") + name("3395") + stated(0x80000000U, record) << 1;
    QTest::newRow("mark of 4 GiB") << stated(0xffffffffU, "Velko") << 1;
    QTest::newRow("empty") << QByteArray() << 1;
}

void ProfileFileTest::read()
{
    QFETCH(QByteArray, content);
    QFETCH(int, result);
    QFile made(file);
    QVERIFY(made.open(QIODevice::WriteOnly) && made.write(content) == content.size() && made.flush());
    FlashDataMap before{};
    std::memset(&before, 0xA5, sizeof before);
    FlashDataMap record = before;
    QCOMPARE(int(ReadProfile(file, record)), result);
    QCOMPARE(bytesOf(record), result == 0 ? recordWith(8) : bytesOf(before));
}

/** Neither what can't be read nor what can't be written does any harm, or makes anybody wait. */
void ProfileFileTest::noFile()
{
    const QString pipe = folder.filePath("pipe");
#ifndef Q_OS_WIN // whose folders hold no pipes
    QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
#endif
    FlashDataMap record{};
    for (const QString &path : {folder.filePath("missing"), folder.path(), pipe})
        QCOMPARE(int(ReadProfile(path, record)), 1);
    WriteProfile(pipe + "/below", record);
}

void ProfileFileTest::roundTrip_data()
{
    QTest::addColumn<QString>("mouse");
    QTest::addColumn<int>("entry");
    QTest::newRow("Q1") << "q1" << 1;
    QTest::newRow("Q2") << "q2" << 0;
}

/** Saved, brought back to the factory's, and taken over again: the flash holds every byte as before. */
void ProfileFileTest::roundTrip()
{
    QFETCH(QString, mouse);
    QFETCH(int, entry);
    open(entry);
    const QByteArray factory = held(mouse);
    MacroSlot macro{};
    std::memcpy(macro.Name, "Jump", 4);
    macro.NameLength = 4;
    macro.EventCount = 70;
    for (MacroEvent &event : macro.Events)
        event = {1, 1, 4, 70000};
    for (int slot = 0; slot < 6; ++slot)
        QTRY_VERIFY(SetMacro(slot, {6, std::uint8_t(slot), 3}, macro));
    QTRY_VERIFY(SetLightColor(1, 2, 3) && SetDpiLevelColor(2, 9, 8, 7) && SetStopCloseTime(30));
    QTRY_VERIFY(held(mouse) != factory && VirtualMice::record(mouse).StopCloseTime == 30);
    const QByteArray before = held(mouse);

    answerDialog(file);
    press("OutputData");
    QFile written(file);
    QVERIFY(written.open(QIODevice::ReadOnly));
    const QByteArray content = written.readAll();
    QCOMPARE(content.size(), 10464);
    QCOMPARE(content.mid(36), before);

    program->whenShown("ContainReset", [this] { pressButton("OK"); });
    press("Reset");
    QCOMPARE(held(mouse), factory);
    QVERIFY(!BulkUpdateActive && !program->isPromptShown());

    answerDialog(file);
    press("ImportData");
    QVERIFY(!program->shownPrompts().contains("InportFail"));
    QTRY_COMPARE(held(mouse), before);
    QVERIFY(!BulkUpdateActive);
    // The pages let the user go on.
    QTRY_VERIFY(program->window()->findChild<QSlider *>("horizontalLight")->isEnabled());
}

void ProfileFileTest::refusedImport()
{
    open();
    const QByteArray before = held("q1");
    QFile made(file);
    QVERIFY(made.open(QIODevice::WriteOnly) && made.write(name("Velko") + name("3311")) > 0 && made.flush());
    program->whenShown("InportFail", [this] { pressButton("NewHong"); });
    answerDialog(file);
    press("ImportData");
    QVERIFY(program->shownPrompts().contains("InportFail"));
    answerDialog({});
    press("ImportData"); // changes his mind
    QVERIFY(!program->shownPrompts().contains("UpDataParam"));
    QVERIFY(!BulkUpdateActive && !program->isPromptShown());
    QCOMPARE(held("q1"), before);
}

void ProfileFileTest::leftInTheMiddle_data()
{
    QTest::addColumn<bool>("isReset");
    QTest::addColumn<QString>("prompt");
    QTest::newRow("import") << false << "UpDataParam";
    QTest::newRow("question") << true << "ContainReset";
}

/** The receiver is pulled while a prompt waits: it closes, and neither this mouse nor the next one is written to. */
void ProfileFileTest::leftInTheMiddle()
{
    QFETCH(bool, isReset);
    QFETCH(QString, prompt);
    open();
    FlashDataMap other = VirtualMice::record("q1");
    other.Lod = other.Lod == 1 ? 2 : 1;
    WriteProfile(file, other);
    const QByteArray before = held("q1") + held("q2");
    program->whenShown(prompt, [] {
        VirtualMice::tell({"unplug", "q1-4k"});
        postMsg()->post(&PostMsg::SigChangeMainDialog, 0); // as the watch does when the bus is quiet
    });
    if (!isReset)
        answerDialog(file);
    press(isReset ? "Reset" : "ImportData");
    QTRY_VERIFY(!program->isDeviceWindowShown() && !program->isPromptShown());
    QVERIFY(!BulkUpdateActive);
    QCOMPARE(held("q1") + held("q2"), before);
}

void ProfileFileTest::chosenProfileAndSleep()
{
    open();
    auto *const list = program->find<MyConmboBox>("ProjectChoose");
    QTRY_VERIFY(list->isEnabled() && list->count() == 4);
    const auto choose = [list] {
        QTest::keyClick(list, Qt::Key_Down);
        Q_EMIT list->activated(list->currentIndex());
    };
    choose();
    QTRY_COMPARE(VirtualMice::device("q1")["profile"].toInt(), 1);
    QTRY_VERIFY(list->currentIndex() == 1 && program->isConnected());
    VirtualMice::tell({"sleep", "q1"});
    program->whenShown("MouseOffLine", [this] { pressButton("NewHong"); });
    choose();
    QCOMPARE(list->currentIndex(), 1);
    QCOMPARE(VirtualMice::device("q1")["profile"].toInt(), 1);

    for (const char *button : {"Reset", "ImportData"}) {
        program->forgetPrompts();
        program->find<QToolButton>(button)->click(); // neither question nor dialog: they would stand here for ever
        QCOMPARE(program->shownPrompts().value(0), QString("MouseOffLine"));
    }
}

HALVARION_TEST_MAIN(ProfileFileTest)
#include "tst_profilefile.moc"
