#include "app/ChooserList.h"
#include "app/DialogMain.h"
#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/Worker.h"
#include "devicelink/WorkingRecord.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"
#include "ui/UpDataParam.h"

#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QToolButton>

#include <cstring>

namespace {

bool isShown(const FlashDataMap &held)
{
    const FlashDataMap shown = WorkingRecord::instance().copy();
    return std::memcmp(&held, &shown, sizeof held) == 0;
}

/** A text of the prompt about a mouse that doesn't answer. */
QString promptText(const QString &wanted)
{
    QString found;
    LanguageFile::readSection(0, "MouseOffLine", [&](const QString &element, const QString &text) {
        if (element == wanted)
            found = text;
    });
    return found;
}

} // namespace

/** The road from the plug to a setting on the mouse, walked with real widgets and virtual mice. */
class ConnectTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void chooserPages_data();
    void chooserPages();
    void chooserStates();
    void duplicatesAreToldOnce();
    void unknownModelNeverOpens();
    void connectShowsWhatTheMouseHolds_data();
    void connectShowsWhatTheMouseHolds();
    void aSettingReachesTheFlashAndStays();
    void asleepAndAwakeAgain();
    void sleepingMouseShowsTheCache();
    void cableTakesOver();
    void receiverPulled();
    void pulledInMidRead();
    void noAnswerToTheRecord();
    void changesMadeOnTheMouse();
    void mouseIsToldWhetherTheWindowShows();
    void lossDuringTheConnectShowsTheCache();
    void goingBackSavesTheRecord();
    void clickOnTheWayBackIsNoChange_data();
    void clickOnTheWayBackIsNoChange();
    void closingSavesTheRecord();
    void languageChangesEverywhere();
    void keysOfTheWindow();
};

void ConnectTest::init()
{
    VirtualMice::restoreScene();
    Program::forgetDevice();
}

// Chooser ------------------------------------------------------------------------------------------------------------

void ConnectTest::chooserPages_data()
{
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("lastX"); ///< of the last picture, which tells the layout of its page
    QTest::addColumn<bool>("right");
    QTest::newRow("two") << QStringList() << 2 << 445 << false;
    QTest::newRow("three") << QStringList{"q1 1k"} << 3 << 600 << false;
    QTest::newRow("four: a last page with one") << QStringList{"q1 1k", "q1 2k"} << 4 << 305 << true;
    QTest::newRow("five: a last page with two") << QStringList{"q1 1k", "q1 2k", "q2 2k"} << 5 << 445 << true;
    QTest::newRow("seven") << QStringList{"q1 1k", "q1 2k", "q2 2k", "q2 4k", "unknown cable"} << 7 << 305 << true;
    QTest::newRow("a mouse on its cable hides its receiver") << QStringList{"q1 cable"} << 2 << 445 << false;
    QTest::newRow("two unknown devices are two pictures")
        << QStringList{"unknown cable", "unknown cable"} << 4 << 305 << true;
}

void ConnectTest::chooserPages()
{
    QFETCH(QStringList, more);
    QFETCH(int, entries);
    const Program program;
    for (const QString &device : qAsConst(more))
        VirtualMice::add(device.section(' ', 0, 0), device.section(' ', 1));
    QTRY_COMPARE(program.entryCount(), entries);
    QTRY_COMPARE(program.find(QStringLiteral("btn%1").arg(entries - 1))->x(), [&] {
        QFETCH(int, lastX);
        return lastX;
    }());
    QCOMPARE(program.find("RightButton")->isVisible(), [&] {
        QFETCH(bool, right);
        return right;
    }());
    QVERIFY(!program.find("LeftButton")->isVisible());
    QVERIFY(!program.isPromptShown());
    // Every page can be reached and left again.
    for (int page = 1; page < (entries + 2) / 3; ++page)
        program.click("RightButton");
    QVERIFY(program.find(QStringLiteral("btn%1").arg(entries - 1))->isVisible());
    for (int page = 1; page < (entries + 2) / 3; ++page)
        program.click("LeftButton");
    QVERIFY(program.find("btn0")->isVisible());
}

void ConnectTest::chooserStates()
{
    const Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.find("UsbWifi0")->isVisible());
    QVERIFY(!program.find("label0")->isVisible());
    QVERIFY(program.find("btn0")->styleSheet().contains("OnLine0.png") ||
            program.find("btn1")->styleSheet().contains("OnLine0.png"));

    // The pointer on a picture looks again.
    VirtualMice::tell({"sleep", "q1"});
    const int q1 = ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1;
    const QString button = QStringLiteral("btn%1").arg(q1);
    QVERIFY(program.find(button)->styleSheet().contains("OnLine0.png"));
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(program.find(button), &enter);
    QVERIFY(program.find(button)->styleSheet().contains("DisOnlin0.png"));
    QVERIFY(program.find(QStringLiteral("label%1").arg(q1))->isVisible());
    QVERIFY(program.find(QStringLiteral("label%1").arg(q1))->toolTip().contains('\n'));

    const QList<QJsonObject> all = VirtualMice::devices();
    for (const QJsonObject &device : all) {
        if (device["kind"] == "receiver")
            VirtualMice::tell({"unplug", device["id"].toString()});
    }
    QTRY_COMPARE(program.entryCount(), 0);
    QVERIFY(!program.find<QLabel>("label_3")->isVisible());
}

void ConnectTest::duplicatesAreToldOnce()
{
    Program program;
    QString first;
    QString second;
    program.whenShown("QuestiondialogB", [&] {
        // While it is open the bus changes again, first to as bad, then to good.
        const QString third = VirtualMice::add("q1", "cable");
        QTimer::singleShot(100, [&, third] {
            VirtualMice::tell({"remove", third});
            VirtualMice::tell({"remove", first});
        });
    });
    first = VirtualMice::add("q1", "cable");
    second = VirtualMice::add("q1", "cable");
    QTRY_COMPARE(program.shownPrompts(), QStringList{"QuestiondialogB"});
    QTRY_VERIFY(!program.isPromptShown());
    QTRY_COMPARE(program.entryCount(), 2);
}

void ConnectTest::unknownModelNeverOpens()
{
    const Program program;
    VirtualMice::add("unknown", "cable");
    QTRY_COMPARE(program.entryCount(), 3);
    for (int index = 0; index < 3; ++index) {
        if (ChooserList::devices()[index].ModelIndex == 2)
            program.click(QStringLiteral("btn%1").arg(index));
    }
    QTest::qWait(50);
    QVERIFY(!program.isDeviceWindowShown());
}

// Connect ------------------------------------------------------------------------------------------------------------

void ConnectTest::connectShowsWhatTheMouseHolds_data()
{
    QTest::addColumn<QString>("mouse");
    QTest::addColumn<QString>("name");
    QTest::newRow("Q1 on a 4K receiver") << "q1"
                                         << "Halvarion Q1";
    QTest::newRow("Q2 on a 1K receiver") << "q2"
                                         << "Halvarion Q2";
}

void ConnectTest::connectShowsWhatTheMouseHolds()
{
    QFETCH(QString, mouse);
    VirtualMice::tell({"battery", mouse, "15", "charging"});
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    const int kind = mouse == "q1" ? 1 : 2;
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == kind ? 0 : 1));
    QCOMPARE(program.shownPrompts(), QStringList{"UpDataParam"});
    QVERIFY(isShown(VirtualMice::record(mouse)));
    QTEST(program.find<QLabel>("label_3")->text(), "name");
    QTRY_COMPARE(program.find<QProgressBar>("progressBar")->value(), 15);
    QCOMPARE(program.find<QLabel>("label_2")->text(), QStringLiteral("15%"));
    QVERIFY(program.find("progressBar")->styleSheet().contains("152, 43, 34"));
    QVERIFY(program.find("label")->isVisible());
    // The first connect of a model makes its cache.
    const QString cache = UserFolders::path(UserFolders::Folder::DeviceInfo) + "/" + LoadFileName().get();
    QTRY_COMPARE(QFileInfo(cache).size(), 10432);
}

void ConnectTest::aSettingReachesTheFlashAndStays()
{
    {
        Program program;
        QTRY_COMPARE(program.entryCount(), 2);
        QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
        program.click("SensorButton");
        program.click("Button500HZ");
        QTRY_COMPARE(int{VirtualMice::record("q1").ReportRate}, 2);
    }
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    program.click("SensorButton");
    QVERIFY(program.find<QToolButton>("Button500HZ")->isChecked());
    QCOMPARE(int{VirtualMice::record("q1").ReportRate}, 2);
}

void ConnectTest::asleepAndAwakeAgain()
{
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    program.click("SensorButton");
    program.forgetPrompts();
    VirtualMice::tell({"sleep", "q1"});
    program.whenShown("MouseOffLine", [] { VirtualMice::tell({"wake", "q1"}); });
    const int before = VirtualMice::record("q1").ReportRate;
    program.clickSoon(before == 2 ? "Button1000HZ" : "Button500HZ");
    // The prompt comes and goes by itself, and the record is read anew behind the wait prompt.
    QTRY_COMPARE(program.shownPrompts(), (QStringList{"MouseOffLine", "UpDataParam"}));
    QTRY_VERIFY(program.isConnected());
    QCOMPARE(int{VirtualMice::record("q1").ReportRate}, before);
    QVERIFY(program.find<QToolButton>(before == 2 ? "Button500HZ" : "Button1000HZ")->isChecked());
}

void ConnectTest::sleepingMouseShowsTheCache()
{
    {
        Program program;
        QTRY_COMPARE(program.entryCount(), 2);
        QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
        program.click("UpArrow");
        QTRY_VERIFY(!program.isDeviceWindowShown());
    }
    VirtualMice::tell({"sleep", "q1"});
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    program.click(ChooserList::devices()[0].DeviceKind == 1 ? "btn0" : "btn1");
    QTRY_VERIFY(SensorUiLoaded && LightUiLoaded && ButtonUiLoaded);
    QTRY_VERIFY(OfflineWaiting);
    QTest::qWait(Wait::scaled(5000) + 100);
    QCOMPARE(program.shownPrompts(), QStringList());
    VirtualMice::tell({"wake", "q1"});
    QTRY_VERIFY(LinkUp);
    QVERIFY(isShown(VirtualMice::record("q1")));
    QTRY_VERIFY(!OfflineWaiting);
}

void ConnectTest::cableTakesOver()
{
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    program.forgetPrompts();
    QSignalSpy pageChanges(postMsg(), &PostMsg::SigChangeMainDialog);
    VirtualMice::tell({"plug", "q1"});
    QTRY_VERIFY(SelectInfo().get().IsCorded);
    QTRY_COMPARE(program.shownPrompts(), QStringList{"UpDataParam"});
    QTRY_VERIFY(program.isConnected());
    QCOMPARE(pageChanges.count(), 0);
    QCOMPARE(QString::fromUtf8(DevicePath().get()), VirtualMice::device("q1")["path"].toString());
    program.click("SensorButton");
    const int before = VirtualMice::record("q1").ReportRate;
    program.click(before == 4 ? "Button500HZ" : "Button250HZ");
    QTRY_COMPARE(int{VirtualMice::record("q1").ReportRate}, before == 4 ? 2 : 4);
    VirtualMice::tell({"unplug", "q1"});
    QTRY_VERIFY(!program.isDeviceWindowShown());
    QTRY_COMPARE(program.entryCount(), 2);
}

void ConnectTest::receiverPulled()
{
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    VirtualMice::tell({"unplug", VirtualMice::receiverOf("q1")});
    QTRY_VERIFY(!program.isDeviceWindowShown());
    QTRY_COMPARE(program.entryCount(), 1);
    QVERIFY(!program.isPromptShown());
}

/** Pulls the receiver at many moments of a connect: the way is always back to the chooser, with no prompt left. */
void ConnectTest::pulledInMidRead()
{
    Program program;
    for (int round = 0; round < 12; ++round) {
        QTRY_COMPARE(program.entryCount(), 2);
        const QString receiver = VirtualMice::receiverOf("q1");
        VirtualMice::tell({"fault", "q1", "drop", QString::number(round % 3)});
        program.click(ChooserList::devices()[0].DeviceKind == 1 ? "btn0" : "btn1");
        QTimer::singleShot(2 * round, [receiver] { VirtualMice::tell({"unplug", receiver}); });
        QTRY_VERIFY(!program.isDeviceWindowShown());
        QTRY_COMPARE(program.entryCount(), 1);
        QTRY_VERIFY(!program.isPromptShown());
        VirtualMice::tell({"fault", "q1", "drop", "0"});
        VirtualMice::tell({"plug", receiver});
    }
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    QVERIFY(isShown(VirtualMice::record("q1")));
}

/** A mouse that is there and never sends its record: the user is told, and can leave. */
void ConnectTest::noAnswerToTheRecord()
{
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QString told;
    program.whenShown("MouseOffLine", [&] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (qstrcmp(window->metaObject()->className(), "MouseOffLine") == 0) {
                told = window->findChild<QLabel *>("label")->text();
                QTest::keyClick(window, Qt::Key_Escape);
            }
        }
    });
    // The receiver goes on answering for it.
    VirtualMice::tell({"fault", "q1", "drop", "1000000"});
    program.click(ChooserList::devices()[0].DeviceKind == 1 ? "btn0" : "btn1");
    QTRY_VERIFY(!told.isEmpty());
    QCOMPARE(told, promptText("Timeout"));
    QTRY_VERIFY(!program.isPromptShown());
    VirtualMice::tell({"fault", "q1", "drop", "0"});
    program.click("UpArrow");
    QTRY_VERIFY(!program.isDeviceWindowShown());
}

void ConnectTest::changesMadeOnTheMouse()
{
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    program.click("SensorButton");
    VirtualMice::tell({"rate", "q1", "4"});
    QTRY_VERIFY(program.find<QToolButton>("Button250HZ")->isChecked());
    VirtualMice::tell({"battery", "q1", "16"});
    QTRY_COMPARE(program.find<QProgressBar>("progressBar")->value(), 16);
    QVERIFY(program.find("progressBar")->styleSheet().contains("0, 255, 153"));
    // Another stored profile is a change of everything: the record is read anew behind the wait prompt.
    QTest::qWait(Wait::scaled(3000) + 20);
    program.forgetPrompts();
    VirtualMice::tell({"profile", "q1", "3"});
    QTRY_COMPARE(program.shownPrompts(), QStringList{"UpDataParam"});
    QTRY_VERIFY(program.isConnected());
    QTRY_VERIFY(isShown(VirtualMice::record("q1")));
}

/** A mouse behaves differently while nobody looks at its page. Offscreen there is no tray; the window is minimised. */
void ConnectTest::mouseIsToldWhetherTheWindowShows()
{
    const auto isTold = [] { return VirtualMice::device("q1")["program"].toBool(); };
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    QTRY_VERIFY(isTold());
    program.click("MinButton");
    QVERIFY(program.window()->isMinimized());
    QTRY_VERIFY(!isTold());
    program.window()->showNormal(); // as the task bar does
    QCoreApplication::processEvents();
    QTRY_VERIFY(isTold());
    program.click("MinButton");
    QTRY_VERIFY(!isTold());
    program.window()->on_activatedSysTrayIcon(QSystemTrayIcon::Trigger);
    QVERIFY(!program.window()->isMinimized());
    QTRY_VERIFY(isTold());
}

/**
 * The mouse changes its profile while the wait for its record stands, and is asleep when it is asked for the new one:
 * the user sees what is known of it, and learns why.
 */
void ConnectTest::lossDuringTheConnectShowsTheCache()
{
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    const QString entry = ChooserList::devices()[0].DeviceKind == 1 ? "btn0" : "btn1";
    QVERIFY(program.connectEntry(entry == "btn0" ? 0 : 1));
    program.click("SensorButton");
    program.click("Button250HZ");
    QTRY_COMPARE(int{VirtualMice::record("q1").ReportRate}, 4);
    program.click("UpArrow");
    QTRY_VERIFY(!program.isDeviceWindowShown());
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
    program.whenShown("MouseOffLine", [&told] {
        QWidget *const prompt = QApplication::activeModalWidget();
        told = prompt->findChild<QLabel *>("label")->text();
        QTest::keyClick(prompt, Qt::Key_Escape);
    });
    program.click(entry);
    QTRY_COMPARE(told, promptText("label"));
    program.click("SensorButton");
    QTRY_VERIFY(program.find<QToolButton>("Button250HZ")->isChecked());
    QVERIFY(!LinkUp);
}

void ConnectTest::goingBackSavesTheRecord()
{
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    const QString cache = UserFolders::path(UserFolders::Folder::DeviceInfo) + "/" + LoadFileName().get();
    QFile::remove(cache);
    VirtualMice::tell({"sleep", "q1"});
    program.click("UpArrow");
    program.click("UpArrow"); // a second click during the first one's wait
    QTRY_VERIFY(!program.isDeviceWindowShown());
    QCOMPARE(QFileInfo(cache).size(), 10432);
}

void ConnectTest::clickOnTheWayBackIsNoChange_data()
{
    QTest::addColumn<bool>("isAwake");
    QTest::newRow("awake") << true;
    QTest::newRow("asleep") << false;
}

/** The way back serves the event loop for a moment. What comes then must neither be set nor open a prompt. */
void ConnectTest::clickOnTheWayBackIsNoChange()
{
    QFETCH(bool, isAwake);
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    program.click("SensorButton");
    const FlashDataMap before = VirtualMice::record("q1");
    const char *const other = before.ReportRate == 4 ? "Button500HZ" : "Button250HZ";
    if (!isAwake)
        VirtualMice::tell({"sleep", "q1"});
    program.forgetPrompts();
    bool isClicked = false;
    QTimer::singleShot(0, &program, [&] {
        program.click(other);
        isClicked = true;
    });
    program.click("UpArrow");
    QVERIFY2(isClicked, "the click has to come in the middle");
    QVERIFY(!program.isDeviceWindowShown());
    QCOMPARE(program.shownPrompts(), QStringList());
    VirtualMice::tell({"wake", "q1"});
    QTest::qWait(20);
    QCOMPARE(VirtualMice::record("q1").ReportRate, before.ReportRate);
}

void ConnectTest::closingSavesTheRecord()
{
    Program program;
    QTRY_COMPARE(program.entryCount(), 2);
    QVERIFY(program.connectEntry(ChooserList::devices()[0].DeviceKind == 1 ? 0 : 1));
    const QString cache = UserFolders::path(UserFolders::Folder::DeviceInfo) + "/" + LoadFileName().get();
    QFile::remove(cache);
    QTimer::singleShot(0, [&program] { program.click("CloseButton"); });
    QApplication::exec();
    QVERIFY(!program.window()->isVisible());
    QCOMPARE(QFileInfo(cache).size(), 10432);
}

void ConnectTest::languageChangesEverywhere()
{
    const Program program;
    auto *const list = program.find<QComboBox>("comboBox");
    QCOMPARE(list->count(), 6);
    const QString english = program.find<QLabel>("label_3")->text();
    list->setCurrentIndex(4);
    Q_EMIT list->activated(4);
    QCOMPARE(UserSettings::instance()->language(), 4);
    QVERIFY(program.find<QLabel>("label_3")->text() != english);
    QVERIFY(program.find<QLabel>("label_3")->text().contains(QRegularExpression("[а-я]")));
    Q_EMIT list->activated(0);
    QCOMPARE(program.find<QLabel>("label_3")->text(), english);
}

void ConnectTest::keysOfTheWindow()
{
    const Program program;
    QSignalSpy enter(postMsg(), &PostMsg::SigEnterKey);
    QTest::keyClick(program.window(), Qt::Key_Escape);
    QTest::keyClick(program.window(), Qt::Key_F12);
    QTest::keyClick(program.window(), Qt::Key_Space);
    QVERIFY(program.window()->isVisible());
    QTest::keyClick(program.window(), Qt::Key_Return);
    QTest::keyClick(program.window(), Qt::Key_Enter);
    QCOMPARE(enter.count(), 2);
    MacroRecording = true;
    QTest::keyClick(program.window(), Qt::Key_Return);
    QCOMPARE(enter.count(), 2);
    MacroRecording = false;
}

HALVARION_TEST_MAIN(ConnectTest)
#include "tst_connect.moc"
