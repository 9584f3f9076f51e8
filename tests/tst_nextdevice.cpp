#include "app/ChooserList.h"
#include "app/Ending.h"
#include "devicelink/Worker.h"
#include "productdata/UserFolders.h"
#include "support/ProductCopy.h"
#include "support/Program.h"
#include "support/TestHome.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>

/** What is left of one device must not be done to the next: going back, pulling, exits, in the middle of things. */
class NextDeviceTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void clickOnADeviceThatWasJustPulled_data();
    void clickOnADeviceThatWasJustPulled();
    void aRereadIsNotTheNextMouses();
    void levelsAreNotTheNextMouses();
    void goingBackEndsEverything();
    void promptsOfTheGraceTime();
    void aCurveIsNotTheNextMouses();
    void curveOfTheNextMouse();
};

void NextDeviceTest::init()
{
    VirtualMice::restoreScene();
    Program::forgetDevice();
}

void NextDeviceTest::clickOnADeviceThatWasJustPulled_data()
{
    QTest::addColumn<bool>("another");
    QTest::newRow("the only one of its model") << false;
    QTest::newRow("with a second receiver of its model") << true;
}

/** The picture is still there while the bus has not been quiet long enough for a new scan. */
void NextDeviceTest::clickOnADeviceThatWasJustPulled()
{
    QFETCH(bool, another);
    if (another)
        VirtualMice::add("q1", "1k");
    Program program;
    QTRY_COMPARE(program.entryCount(), another ? 3 : 2);
    const QString receiver = VirtualMice::receiverOf("q1");
    int clicked = 0;
    for (int index = 0; index < program.entryCount(); ++index) {
        if (ChooserList::devices()[index].Path == VirtualMice::device(receiver)["path"].toString())
            clicked = index;
    }
    VirtualMice::tell({"unplug", receiver});
    program.click(QStringLiteral("btn%1").arg(clicked));
    QTRY_COMPARE(program.entryCount(), another ? 2 : 1);
    QVERIFY(!program.isDeviceWindowShown());
    QVERIFY(!DeviceWindowOpen);
    QVERIFY(program.connectEntry(0));
}

void NextDeviceTest::aRereadIsNotTheNextMouses()
{
    Program program;
    QVERIFY(program.connectMouse("q1"));
    RereadPending = true;
    ReconnectRequested = true;
    program.click("UpArrow");
    QTRY_VERIFY(!program.isDeviceWindowShown());
    QSignalSpy waits(postMsg(), &PostMsg::SigUpDataParam);
    QVERIFY(program.connectMouse("q2"));
    QCOMPARE(waits.count(), 1);
    QCOMPARE(waits.first().first().toInt(), 0);
    QTRY_COMPARE(QFileInfo(UserFolders::path(UserFolders::Folder::DeviceInfo) + '/' + LoadFileName().get()).size(),
                 10432); // the first connect of a model makes its cache
}

/** The next mouse has been woken and has yet to tell what it holds; the program still has what the last one held. */
void NextDeviceTest::levelsAreNotTheNextMouses()
{
    Program program;
    QVERIFY(program.connectMouse("q1"));
    program.click("UpArrow");
    QTRY_VERIFY(!program.isDeviceWindowShown());
    FlashDataMap wanted = VirtualMice::record("q2");
    VirtualMice::tell({"sleep", "q2"});
    program.click(program.pictureOf("q2"));
    QTRY_VERIFY(OfflineWaiting && !isConnecting());
    VirtualMice::tell({"fault", "q2", "drop", "100000"});
    VirtualMice::tell({"wake", "q2"});
    program.find<QComboBox>("ChooseEvent")->setCurrentIndex(1);
    VirtualMice::tell({"fault", "q2", "drop", "0"});
    wanted.DpiLevelCount = 2;
    wanted.DpiCurrentLevel = 1;
    QTRY_VERIFY(VirtualMice::record("q2") == wanted);
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
        program.click("UpArrow");
        QTRY_VERIFY(!program.isDeviceWindowShown());
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
    QTimer rescue; // so that a failure doesn't take the test's whole time
    rescue.setSingleShot(true);
    connect(&rescue, &QTimer::timeout, [] {
        while (QWidget *const prompt = QApplication::activeModalWidget())
            prompt->close();
    });
    rescue.start(3000);
    QElapsedTimer time;
    time.start();
    QApplication::exec();
    Wait::setScale(shortWaits);
    QCOMPARE(program.shownPrompts(), QStringList());
    QVERIFY2(time.elapsed() < 2000, qPrintable(QString::number(time.elapsed())));
}

/** A product whose second model has no battery curve. */
void NextDeviceTest::aCurveIsNotTheNextMouses()
{
    ProductCopy copy;
    copy.change("usersetting/Config.ini", [](QByteArray content) {
        const int second = content.indexOf("BatteryParam", content.indexOf("[Drive2]"));
        return content.replace(second, 1, "x");
    });
    const ProductCopy::Result result = copy.run("curveOfTheNextMouse");
    QVERIFY2(result.exitCode == 0, result.log.constData());
    QCOMPARE(result.told, QString("0 21"));
}

/** The user leaves the first mouse in the middle of its connect, and takes the other. Tells what the mice got. */
void NextDeviceTest::curveOfTheNextMouse()
{
    if (!ProductCopy::isCopy())
        QSKIP("runs in the copy that aCurveIsNotTheNextMouses makes");
    const auto curve = [](const QString &mouse) { return VirtualMice::device(mouse)["curve"].toVariant().toString(); };
    // On Windows the copy has the user's folders, where earlier connects left their caches.
    QVERIFY(QDir(UserFolders::path(UserFolders::Folder::DeviceInfo)).removeRecursively());
    Program program;
    QObject context;
    VirtualMice::tell({"sleep", "q1"}); // without a cache the pages are reset, and the connect stands until they are
    const auto leave = [&program] { program.click("UpArrow"); };
    connect(postMsg(), &PostMsg::SigFormReset, &context, leave, Qt::BlockingQueuedConnection);
    program.click(program.pictureOf("q1"));
    QTRY_VERIFY(!program.isDeviceWindowShown());
    QVERIFY(program.connectMouse("q2"));
    const QString got = curve("q2");
    program.click("UpArrow");
    VirtualMice::tell({"wake", "q1"});
    QTRY_VERIFY(!program.isDeviceWindowShown());
    QVERIFY(program.connectMouse("q1"));
    ProductCopy::tell(got + ' ' + curve("q1"));
}

HALVARION_TEST_MAIN(NextDeviceTest)
#include "tst_nextdevice.moc"
