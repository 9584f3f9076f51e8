#include "app/ChooserList.h"
#include "devicelink/DeviceWatch.h"
#include "devicelink/Worker.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "support/ConnectedMouse.h"
#include "support/Program.h"
#include "support/Rows.h"
#include "support/TestHome.h"
#include "ui/UpDataParam.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

namespace {

int heldRate() { return VirtualMice::record("q1").ReportRate; }

/** A button of a rate that the mouse doesn't have. */
QString otherRate() { return heldRate() == 4 ? "Button500HZ" : "Button250HZ"; }

QString cacheFile() { return UserFolders::path(UserFolders::Folder::DeviceInfo) + "/" + LoadFileName().get(); }

/** Reads the prompt about a mouse that doesn't answer and closes it, if it hasn't closed by itself meanwhile. */
void readAndClose(QString &told)
{
    if (Prompt *const prompt = Program::prompt("MouseOffLine")) {
        told = prompt->findChild<QLabel *>("label")->text();
        prompt->close();
    }
}

/** Another stored profile: a change of everything, which counts when the last one is long enough ago. */
void changeProfile(const char *number)
{
    QTest::qWait(Wait::scaled(3000) + 20);
    VirtualMice::tell({"profile", "q1", number});
}

} // namespace

/** The road from the plug to a setting on the mouse, walked with real widgets and virtual mice. */
class ConnectTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { VirtualMice::restoreScene(); }
    void chooserPages_data();
    void chooserPages();
    void chooserStates();
    void duplicatesAreToldOnce();
    void connectShowsWhatTheMouseHolds();
    void pageButtonsAreGreyDuringARecording();
    void asleepAndAwakeAgain();
    void sleepingMouseShowsTheCache();
    void cableTakesOver();
    void cableIsHeardLate_data();
    void cableIsHeardLate();
    void noAnswerToTheRecord();
    void changesMadeOnTheMouse();
    void mouseIsToldWhetherTheWindowShows();
    void rereadWhileTheWindowIsAway_data();
    void rereadWhileTheWindowIsAway();
    void lossDuringTheConnectShowsTheCache();
    void leavingSavesTheRecord();
    void clickOnTheWayBackIsNoChange();
    void listOfLanguages();
    void keysOfTheWindow();
    void movedByACompositor();
};

// Chooser ------------------------------------------------------------------------------------------------------------

void ConnectTest::chooserPages_data()
{
    // lastX: of the last picture, which tells the layout of its page
    const Rows<QStringList, int, int> row("more", "entries", "lastX");
    row("two", {}, 2, 445);
    row("four: a last page with one", {"q1 1k", "q1 2k"}, 4, 305);
    row("seven", {"q1 1k", "q1 2k", "q2 2k", "q2 4k", "unknown cable"}, 7, 305);
    row("a mouse on its cable hides its receiver", {"q1 cable"}, 2, 445);
    row("two unknown devices are two pictures", {"unknown cable", "unknown cable"}, 4, 305);
}

void ConnectTest::chooserPages()
{
    QFETCH(QStringList, more);
    QFETCH(int, entries);
    QFETCH(int, lastX);
    const Program program;
    for (const QString &device : qAsConst(more))
        VirtualMice::add(device.section(' ', 0, 0), device.section(' ', 1));
    QTRY_COMPARE(program.entryCount(), entries);
    const QString last = QStringLiteral("btn%1").arg(entries - 1);
    QTRY_COMPARE(program.find(last)->x(), lastX);
    QCOMPARE(program.find("RightButton")->isVisible(), entries > 3);
    QVERIFY(!program.isPromptShown());
    // Every page can be reached and left again.
    for (int page = 1; page < (entries + 2) / 3; ++page)
        program.click("RightButton");
    QVERIFY(program.find(last)->isVisible());
    for (int page = 1; page < (entries + 2) / 3; ++page)
        program.click("LeftButton");
    QVERIFY(program.find("btn0")->isVisible());
}

void ConnectTest::chooserStates()
{
    const Program program;
    const QString button = program.pictureOf("q1");
    // The pointer on a picture looks again.
    VirtualMice::tell({"sleep", "q1"});
    QVERIFY(program.find(button)->styleSheet().contains("OnLine0.png"));
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(program.find(button), &enter);
    QVERIFY(program.find(button)->styleSheet().contains("DisOnlin0.png"));
    const QWidget *const offline = program.find("label" + button.mid(3));
    QVERIFY(offline->isVisible() && offline->toolTip().contains('\n'));
    QCOMPARE(program.find(button)->toolTip(), "Halvarion Q1\n" + offline->toolTip());

    for (const char *const mouse : {"q1", "q2"})
        VirtualMice::tell({"unplug", VirtualMice::receiverOf(mouse)});
    QTRY_COMPARE(program.entryCount(), 0);
    QVERIFY(!program.find("label_3")->isVisible());
    // A model that this build doesn't know is shown and never opened.
    VirtualMice::add("unknown", "cable");
    QTRY_COMPARE(program.entryCount(), 1);
    QVERIFY(!program.find("btn0")->toolTip().isEmpty()); // nothing else says why a click does nothing
    program.click("btn0");
    QTest::qWait(50);
    QVERIFY(!program.isDeviceWindowShown());
}

void ConnectTest::duplicatesAreToldOnce()
{
    Program program;
    QString first;
    program.whenShown("QuestiondialogB", [&] {
        // While it is open the bus changes again, first to as bad, then to good.
        const QString third = VirtualMice::add("q1", "cable");
        QTimer::singleShot(100, [&, third] {
            VirtualMice::tell({"remove", third});
            VirtualMice::tell({"remove", first});
        });
    });
    program.window()->showMinimized();
    first = VirtualMice::add("q1", "cable");
    VirtualMice::add("q1", "cable");
    QTRY_VERIFY(DuplicateDevices);
    QTest::qWait(20);
    QCOMPARE(program.shownPrompts(), QStringList()); // over whatever the user does instead
    program.window()->showNormal();
    QTRY_COMPARE(program.shownPrompts(), QStringList{"QuestiondialogB"});
    QTRY_VERIFY(!program.isPromptShown());
    QTRY_COMPARE(program.entryCount(), 2);
}

// Connect ------------------------------------------------------------------------------------------------------------

void ConnectTest::connectShowsWhatTheMouseHolds()
{
    VirtualMice::tell({"battery", "q2", "15", "charging"});
    Program program;
    QVERIFY(program.connectMouse("q2"));
    QCOMPARE(program.shownPrompts(), QStringList{"UpDataParam"});
    QVERIFY(ConnectedMouse::isWritten("q2"));
    QCOMPARE(program.find<QLabel>("label_3")->text(), QStringLiteral("Halvarion Q2"));
    QTRY_COMPARE(program.find<QProgressBar>("progressBar")->value(), 15);
    QCOMPARE(program.find<QLabel>("label_2")->text(), QStringLiteral("15%"));
    QVERIFY(program.find("progressBar")->styleSheet().contains("152, 43, 34"));
    QVERIFY(program.find("label")->isVisible());
    // The first connect of a model makes its cache.
    QTRY_COMPARE(QFileInfo(cacheFile()).size(), 10432);
}

void ConnectTest::pageButtonsAreGreyDuringARecording()
{
    const Program program;
    QWidget *const button = program.find("SensorButton");
    const QImage usable = button->grab().toImage();
    postMsg()->post(&PostMsg::SigStartRecord, 0);
    const QImage grey = button->grab().toImage();
    QImage empty = grey; // as without a picture
    empty.fill(grey.pixel(0, 0));
    QVERIFY(!button->isEnabled() && grey != usable && grey != empty);
    postMsg()->post(&PostMsg::SigStartRecord, 1);
    QVERIFY(button->isEnabled() && button->grab().toImage() == usable);
}

void ConnectTest::asleepAndAwakeAgain()
{
    Program program;
    QVERIFY(program.connectMouse("q1"));
    program.click("SensorButton");
    program.forgetPrompts();
    VirtualMice::tell({"sleep", "q1"});
    program.whenShown("MouseOffLine", [] { VirtualMice::tell({"wake", "q1"}); });
    const int before = heldRate();
    program.clickSoon(otherRate());
    // The prompt comes and goes by itself, and the record is read anew behind the wait prompt.
    QTRY_COMPARE(program.shownPrompts(), (QStringList{"MouseOffLine", "UpDataParam"}));
    QTRY_VERIFY(program.isConnected());
    QCOMPARE(heldRate(), before);
    QVERIFY(!program.find<QToolButton>(otherRate())->isChecked());
}

void ConnectTest::sleepingMouseShowsTheCache()
{
    {
        Program program;
        QVERIFY(program.connectMouse("q1") && program.goBack());
    }
    VirtualMice::tell({"sleep", "q1"});
    Program program;
    program.click(program.pictureOf("q1"));
    QTRY_VERIFY(allPagesLoaded());
    QTRY_VERIFY(OfflineWaiting);
    QTest::qWait(Wait::scaled(5000) + 100);
    QCOMPARE(program.shownPrompts(), QStringList());
    VirtualMice::tell({"wake", "q1"});
    QTRY_VERIFY(LinkUp);
    QVERIFY(ConnectedMouse::isWritten("q1"));
    QTRY_VERIFY(!OfflineWaiting);
}

void ConnectTest::cableTakesOver()
{
    Program program;
    // During the wait; its time begins anew with the cable, however late a busy machine hears of that.
    program.whenShown("UpDataParam", [] {
        auto *const wait = qobject_cast<UpDataParam *>(QApplication::activeModalWidget());
        if (wait && !VirtualMice::device("q1")["corded"].toBool()) {
            wait->stopWaiting();
            VirtualMice::tell({"plug", "q1"});
        }
    });
    program.click(program.pictureOf("q1"));
    QSignalSpy pageChanges(postMsg(), &PostMsg::SigChangeMainDialog);
    QTRY_VERIFY(SelectInfo().get().IsCorded);
    QTRY_VERIFY(program.isConnected());
    QTest::qWait(Wait::scaled(11000)); // the time that a second, false wait would take
    QCOMPARE(program.shownPrompts(), QStringList{"UpDataParam"});
    QVERIFY(ConnectedMouse::isWritten("q1"));
    QCOMPARE(pageChanges.count(), 0);
    QCOMPARE(QString::fromUtf8(DevicePath().get()), VirtualMice::device("q1")["path"].toString());
    program.click("SensorButton");
    const int before = heldRate();
    program.click(otherRate());
    QTRY_VERIFY(heldRate() != before);
    VirtualMice::tell({"unplug", "q1"});
    QTRY_VERIFY(!program.isDeviceWindowShown());
    QTRY_COMPARE(program.entryCount(), 2);
}

void ConnectTest::cableIsHeardLate_data()
{
    // lost: how many answers, and how many come before
    const Rows<QStringList> row("lost");
    row("it tells no ids", {"40", "0"});
    row("it tells no address", {"3", "1"});
    row("it doesn't answer once more", {"3", "2"});
}

/** The watch has looked at the cable when the mouse wasn't ready, and the bus doesn't change any more. */
void ConnectTest::cableIsHeardLate()
{
    QFETCH(QStringList, lost);
    Program program;
    QVERIFY(program.connectMouse("q1"));
    VirtualMice::tell(QStringList{"fault", "q1", "drop"} + lost);
    VirtualMice::tell({"plug", "q1"});
    QTRY_COMPARE(watchedDevices().size(), 2);
    VirtualMice::tell({"fault", "q1", "drop", "0"});
    program.whenShown("MouseOffLine", [] {
        if (QWidget *const prompt = QApplication::activeModalWidget())
            QTimer::singleShot(1000, prompt, &QWidget::close);
    });
    program.click("SensorButton");
    program.click(otherRate());
    QTRY_VERIFY(SelectInfo().get().IsCorded && program.isConnected());
}

/** A mouse that is there and never sends its record: the user is told, whatever the mouse before it sent, and can
 * leave. */
void ConnectTest::noAnswerToTheRecord()
{
    Program program;
    QVERIFY(program.connectMouse("q1") && program.goBack());
    SensorUiLoaded = LightUiLoaded = ButtonUiLoaded = true; // as a re-read leaves them
    const QString picture = program.pictureOf("q2");
    QString told;
    program.whenShown("MouseOffLine", [&told] { readAndClose(told); });
    // The receiver goes on answering for it.
    VirtualMice::tell({"fault", "q2", "drop", "1000000"});
    program.click(picture);
    QTRY_COMPARE(told, Program::englishText("MouseOffLine", "Timeout"));
    QTRY_VERIFY(!program.isPromptShown());
    VirtualMice::tell({"fault", "q2", "drop", "0"});
    QVERIFY(program.goBack());
}

void ConnectTest::changesMadeOnTheMouse()
{
    Program program;
    QVERIFY(program.connectMouse("q1"));
    program.click("SensorButton");
    VirtualMice::tell({"rate", "q1", "4"});
    QTRY_VERIFY(program.find<QToolButton>("Button250HZ")->isChecked());
    VirtualMice::tell({"battery", "q1", "16"});
    QTRY_COMPARE(program.find<QProgressBar>("progressBar")->value(), 16);
    QVERIFY(program.find("progressBar")->styleSheet().contains("0, 255, 153"));
    program.forgetPrompts();
    changeProfile("3");
    QTRY_COMPARE(program.shownPrompts(), QStringList{"UpDataParam"});
    QTRY_VERIFY(program.isConnected());
    QVERIFY(ConnectedMouse::isWritten("q1"));
}

// The window away ----------------------------------------------------------------------------------------------------

/** A mouse behaves differently while nobody looks at its page. Where there is no tray the window is minimised. */
void ConnectTest::mouseIsToldWhetherTheWindowShows()
{
    const auto isTold = [] { return VirtualMice::device("q1")["program"].toBool(); };
    Program program;
    const auto isAway = [&program] { return program.window()->isMinimized() || !program.window()->isVisible(); };
    QVERIFY(program.connectMouse("q1"));
    QTRY_VERIFY(isTold());
    program.click("MinButton");
    QVERIFY(isAway());
    QTRY_VERIFY(!isTold());
    program.window()->on_activatedSysTrayIcon(QSystemTrayIcon::Trigger);
    QVERIFY(!isAway());
    QTRY_VERIFY(isTold());
    program.window()->showMinimized();
    QTRY_VERIFY(!isTold());
    program.window()->showNormal(); // as the task bar does
    QTRY_VERIFY(isTold());
    program.click("UpArrow");
    QTRY_VERIFY(!isTold());
}

void ConnectTest::rereadWhileTheWindowIsAway_data()
{
    const Rows<bool> row("isAnswered");
    row("the record comes", true);
    row("the record doesn't come", false);
}

/** A profile button pressed in a game: nothing opens over the game, and the mouse isn't told that anyone looks. */
void ConnectTest::rereadWhileTheWindowIsAway()
{
    QFETCH(bool, isAnswered);
    Program program;
    QVERIFY(program.connectMouse("q1"));
    program.click("MinButton");
    program.forgetPrompts();
    QSignalSpy waits(postMsg(), &PostMsg::SigUpDataParam);
    if (isAnswered) {
        changeProfile("3");
    } else {
        VirtualMice::tell({"fault", "q1", "drop", "1000000"});
        RereadPending = ReconnectRequested = true; // as a changed profile leaves them
    }
    QTRY_COMPARE(waits.count(), 1);
    QTest::qWait(Wait::scaled(13000)); // what a wait would take, its notice included
    QCOMPARE(program.shownPrompts(), QStringList());
    if (isAnswered) {
        QVERIFY(ConnectedMouse::isWritten("q1"));
        QTRY_VERIFY(allPagesLoaded());
        QVERIFY(!VirtualMice::device("q1")["program"].toBool());
    }
    program.whenShown("UpDataParam", [] {
        // The record comes within the time of the wait, however slow the machine is.
        auto *const wait = qobject_cast<UpDataParam *>(QApplication::activeModalWidget());
        wait->stopWaiting();
        VirtualMice::tell({"fault", "q1", "drop", "0"});
        QTRY_VERIFY(allPagesLoaded());
        wait->startWaiting();
    });
    program.window()->on_activatedSysTrayIcon(QSystemTrayIcon::Trigger);
    const QStringList wanted = isAnswered ? QStringList() : QStringList{"UpDataParam"};
    QTRY_COMPARE(program.shownPrompts(), wanted);
    QTRY_VERIFY(VirtualMice::device("q1")["program"].toBool());
    QTRY_VERIFY(program.isConnected());
    QCOMPARE(program.shownPrompts(), wanted);
    QVERIFY(ConnectedMouse::isWritten("q1"));
}

/**
 * The mouse changes its profile while the wait for its record stands, and is asleep when it is asked for the new one:
 * the user sees what is known of it, and learns why.
 */
void ConnectTest::lossDuringTheConnectShowsTheCache()
{
    Program program;
    QVERIFY(program.connectMouse("q1"));
    program.click("SensorButton");
    program.click("Button250HZ");
    QTRY_COMPARE(heldRate(), 4);
    QVERIFY(program.goBack());
    VirtualMice::tell({"rate", "q1", "2"});
    QTest::qWait(Wait::scaled(3000) + 20); // changes on the mouse count from then on
    program.whenShown("UpDataParam", [] {
        // The time of the wait is up when the loss has been noticed, however slow the machine is.
        auto *const wait = qobject_cast<UpDataParam *>(QApplication::activeModalWidget());
        wait->stopWaiting();
        QVERIFY(QTest::qWaitFor([] { return LinkUp && !isConnecting(); }));
        VirtualMice::tell({"profile", "q1", "3"});
        VirtualMice::tell({"sleep", "q1"});
        QVERIFY(QTest::qWaitFor([] { return OfflineWaiting && !isConnecting(); }));
        wait->startWaiting();
    });
    QString told;
    program.whenShown("MouseOffLine", [&told] { readAndClose(told); });
    program.click(program.pictureOf("q1"));
    QTRY_COMPARE(told, Program::englishText("MouseOffLine", "label"));
    program.click("SensorButton");
    QTRY_VERIFY(program.find<QToolButton>("Button250HZ")->isChecked());
    QVERIFY(!LinkUp);
}

// Leaving ------------------------------------------------------------------------------------------------------------

void ConnectTest::leavingSavesTheRecord()
{
    for (const QString button : {"UpArrow", "CloseButton", ""}) { // the last one is pulled
        init();
        Program program;
        QVERIFY(program.connectMouse("q1"));
        QFile::remove(cacheFile());
        VirtualMice::tell({"sleep", "q1"});
        if (button.isEmpty()) {
            VirtualMice::tell({"unplug", VirtualMice::receiverOf("q1")});
        } else {
            program.clickSoon(button);
            program.clickSoon(button); // during the wait of the first click
        }
        if (button == "CloseButton")
            QApplication::exec();
        QTRY_VERIFY(!program.isDeviceWindowShown() || !program.window()->isVisible());
        QCOMPARE(QFileInfo(cacheFile()).size(), 10432);
    }
}

/** The way back serves the event loop for a moment. What comes then must neither be set nor open a prompt. */
void ConnectTest::clickOnTheWayBackIsNoChange()
{
    Program program;
    for (const char *state : {"wake", "sleep"}) {
        QVERIFY(program.connectMouse("q1"));
        program.click("SensorButton");
        const int before = heldRate();
        VirtualMice::tell({state, "q1"});
        program.forgetPrompts();
        bool isClicked = false;
        QTimer::singleShot(0, &program, [&] {
            program.click(otherRate());
            isClicked = true;
        });
        program.click("UpArrow");
        QVERIFY2(isClicked, "the click has to come in the middle");
        QVERIFY(!program.isDeviceWindowShown());
        QCOMPARE(program.shownPrompts(), QStringList());
        VirtualMice::tell({"wake", "q1"});
        QTest::qWait(20);
        QCOMPARE(heldRate(), before);
    }
}

// Window -------------------------------------------------------------------------------------------------------------

/** Some styles would show every item of a list, like a menu. */
void ConnectTest::listOfLanguages()
{
    for (const char *style : {"Windows", "Fusion"}) {
        QApplication::setStyle(style);
        const Program program;
        auto *const list = program.find<QComboBox>("comboBox");
        list->showPopup();
        const QAbstractItemView *const view = list->view();
        QVERIFY(view->viewport()->height() < 6 * view->sizeHintForRow(0));
        list->hidePopup();
        for (int language : {4, 0}) {
            list->setCurrentIndex(language);
            Q_EMIT list->activated(language);
            QCOMPARE(UserSettings::instance()->language(), language);
            QVERIFY(program.find<QLabel>("label_3")->text().contains(QRegularExpression("[а-я]")) == (language == 4));
        }
    }
}

void ConnectTest::keysOfTheWindow()
{
    const Program program;
    QSignalSpy enter(postMsg(), &PostMsg::SigEnterKey);
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_F12, Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(program.window(), key);
    QVERIFY(program.window()->isVisible());
    QCOMPARE(enter.count(), 2);
    MacroRecording = true;
    QTest::keyClick(program.window(), Qt::Key_Return);
    QCOMPARE(enter.count(), 2);
    MacroRecording = false;
}

/** On a Wayland desktop a program of X11 may hear of its window's place from the mouse alone. */
void ConnectTest::movedByACompositor()
{
#ifndef Q_OS_LINUX
    QSKIP("no Wayland");
#endif
    const auto desktop = qScopeGuard([] { qunsetenv("WAYLAND_DISPLAY"); });
    const Program program;
    const QPoint onScreen = program.window()->pos() + QPoint(140, 90);
    QEnterEvent enter({40, 30}, {40, 30}, onScreen);
    QMouseEvent press(QEvent::MouseButtonPress, {40, 30}, onScreen, Qt::RightButton, Qt::RightButton, {});
    for (QEvent *event : {static_cast<QEvent *>(&enter), static_cast<QEvent *>(&press)}) {
        qunsetenv("WAYLAND_DISPLAY");
        const QPoint place = program.window()->pos();
        QCoreApplication::sendEvent(program.window()->windowHandle(), event);
        QCOMPARE(program.window()->pos(), place); // the system of windows tells where they are
        qputenv("WAYLAND_DISPLAY", "wayland-0");
        QCoreApplication::sendEvent(program.window()->windowHandle(), event);
        QCOMPARE(program.window()->mapToGlobal({40, 30}), onScreen);
        program.window()->move(place);
    }
}

HALVARION_TEST_MAIN(ConnectTest)
#include "tst_connect.moc"
