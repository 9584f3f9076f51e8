#include "app/ChooserList.h"
#include "app/Ending.h"
#include "devicelink/Worker.h"
#include "macro/MacroFile.h"
#include "productdata/UserFolders.h"
#include "support/Program.h"
#include "support/Rows.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QListWidget>
#include <QRandomGenerator>

#include <functional>
#include <utility>

namespace {

/** Does something when what it filters is painted next: nothing else is served then. */
struct WhenPainted : QObject
{
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && action)
            std::exchange(action, {})();
        return false;
    }
    std::function<void()> action;
};

} // namespace

/** What is left of one device must not be done to the next: going back, pulling, exits, in the middle of things. */
class NextDeviceTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { VirtualMice::restoreScene(); }
    void clickOnADeviceThatIsPulled_data();
    void clickOnADeviceThatIsPulled();
    void aRereadIsNotTheNextMouses();
    void choicesAreNotTheNextMouses();
    void recordingEndsWithTheDevice();
    void goingBackEndsEverything();
    void promptsOfTheGraceTime();
};

void NextDeviceTest::clickOnADeviceThatIsPulled_data()
{
    const Rows<bool> row("isPainting");
    row("before", false); // the bus has not been quiet long enough for a new scan
    row("while its page is painted", true);
}

/** The way is back to the chooser, and not to the other device of its model. */
void NextDeviceTest::clickOnADeviceThatIsPulled()
{
    QFETCH(bool, isPainting);
    VirtualMice::add("q1", "1k");
    Program program;
    QTRY_COMPARE(program.entryCount(), 3);
    const QString picture = program.pictureOf("q1");
    const QString receiver = ChooserDevices()[picture.mid(3).toInt()].Path.section('/', -1);
    QVERIFY(QTest::qWaitForWindowExposed(program.window())); // nobody clicks what isn't on the screen yet
    bool isOpening = false;
    WhenPainted watch;
    watch.action = [&] {
        isOpening = DeviceEntered && !DeviceWindowOpen;
        VirtualMice::tell({"unplug", receiver});
    };
    program.find("UpArrow")->installEventFilter(&watch);
    if (!isPainting)
        VirtualMice::tell({"unplug", receiver});
    program.click(picture);
    QCOMPARE(isOpening, isPainting);
    QTRY_COMPARE(program.entryCount(), 2);
    QTRY_VERIFY(!program.isDeviceWindowShown() && !program.isPromptShown());
    QVERIFY(!DeviceWindowOpen);
    QVERIFY(program.connectEntry(0));
}

void NextDeviceTest::aRereadIsNotTheNextMouses()
{
    Program program;
    QVERIFY(program.connectMouse("q1"));
    RereadPending = true;
    ReconnectRequested = true;
    QVERIFY(program.goBack());
    QSignalSpy waits(postMsg(), &PostMsg::SigUpDataParam);
    QVERIFY(program.connectMouse("q2"));
    QCOMPARE(VirtualMice::device("q2")["curve"].toInt(), 21);
    for (const QList<QVariant> &wait : waits)
        QCOMPARE(wait.first().toInt(), 0);
}

/** The next mouse has been woken and has yet to tell what it holds; the program still has what the last one held. */
void NextDeviceTest::choicesAreNotTheNextMouses()
{
    Program program;
    QVERIFY(program.connectMouse("q1"));
    QTRY_VERIFY(program.find("ProjectChoose")->isEnabled());
    program.click("BackKey");
    QVERIFY(program.goBack());
    FlashDataMap wanted = VirtualMice::record("q2");
    wanted.KeyFunctions[4] = {6, 4, 2};
    VirtualMice::flash("q2", wanted);
    VirtualMice::tell({"sleep", "q2"});
    program.click(program.pictureOf("q2"));
    QTRY_VERIFY(OfflineWaiting && !isConnecting());
    QVERIFY(!program.find("page_2")->isVisible() && !program.find("ProjectChoose")->isEnabled());
    VirtualMice::tell({"fault", "q2", "drop", "100000"});
    VirtualMice::tell({"wake", "q2"});
    program.find<QComboBox>("ChooseEvent")->setCurrentIndex(1);
    program.click("StartPause"); // of which the last mouse's function would leave two bytes as they are
    program.click("RightKey_3");
    VirtualMice::tell({"fault", "q2", "drop", "0"});
    wanted.DpiLevelCount = 2;
    wanted.DpiCurrentLevel = 1;
    QTRY_VERIFY(VirtualMice::record("q2") == wanted);
}

void NextDeviceTest::recordingEndsWithTheDevice()
{
    UserFolders::prepare();
    QVERIFY(MacroFile::create("m"));
    Program program;
    QVERIFY(program.connectMouse("q1"));
    program.click("MacroButton");
    program.find<QListWidget>("listWidgetHong")->setCurrentRow(0);
    program.click("StartRecord");
    VirtualMice::tell({"unplug", "q1-4k"});
    QTRY_VERIFY(!program.isDeviceWindowShown());
    QVERIFY(!MacroRecording && program.find("MacroButton")->isEnabled());
}

/** However far the connect had come: on the chooser no report of the mouse reaches the pages any more. */
void NextDeviceTest::goingBackEndsEverything()
{
    Program program;
    QRandomGenerator random(20261124);
    for (int round = 0; round < 20; ++round) {
        const QString picture = program.pictureOf("q1");
        VirtualMice::tell({round % 3 == 2 ? "sleep" : "wake", "q1"});
        const int moment = static_cast<int>(random.bounded(12));
        // The wait prompt stands before the window, and the way back goes by its close button first.
        program.whenShown("UpDataParam", [] {
            if (QWidget *const prompt = QApplication::activeModalWidget())
                prompt->close();
        });
        program.click(picture);
        QTest::qWait(moment);
        QVERIFY(program.goBack());
        VirtualMice::tell({"wake", "q1"});
        QTest::qWait(30); // a report that was being shown when the link ended may still finish
        QSignalSpy reports(postMsg(), &PostMsg::SigBattery);
        VirtualMice::tell({"battery", "q1", QString::number(20 + round)});
        QTest::qWait(30);
        QCOMPARE(reports.count(), 0);
        QTRY_VERIFY(!program.isPromptShown());
    }
}

/** A prompt that opened while the program is ending would hold the end up until the user answers it. */
void NextDeviceTest::promptsOfTheGraceTime()
{
    Program program;
    QVERIFY(program.connectMouse("q1"));
    program.forgetPrompts();
    Wait::setScale(1.0); // the grace time in full
    QTimer::singleShot(0, [&program] { Ending::begin(program.window()); });
    for (const int moment : {0, 20, 150}) {
        QTimer::singleShot(moment, [] {
            postMsg()->post(&PostMsg::SigMouseOffLineo, 0);
            postMsg()->post(&PostMsg::SigUpDataParam, 0);
        });
    }
    QElapsedTimer time;
    time.start();
    QApplication::exec();
    Wait::setScale(shortWaits);
    QCOMPARE(program.shownPrompts(), QStringList());
    QVERIFY2(time.elapsed() < 2000, qPrintable(QString::number(time.elapsed())));
}

HALVARION_TEST_MAIN(NextDeviceTest)
#include "tst_nextdevice.moc"
