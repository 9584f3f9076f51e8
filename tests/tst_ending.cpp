#include "devicelink/Dispatcher.h"
#include "devicelink/Worker.h"
#include "productdata/UserFolders.h"
#include "support/Program.h"
#include "support/Seed.h"
#include "support/TestHome.h"

#include <QElapsedTimer>

#include <utility>

/** Exit at any moment: the windows go, nothing hangs, and nobody who waits for this thread is left behind. */
class EndingTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { VirtualMice::restoreScene(); }
    void cleanup() { QVERIFY(!isConnecting() && !isDispatching()); }
    void atEachMoment_data();
    void atEachMoment();
    void thePlaceIsKept();
    void atRandomMoments();

private:
    static void leave(const Program &program, int way);
    static void runOnce(QRandomGenerator &random, int round);
};

/** The three ways out: the button, the menu in the tray, the desktop's own. */
void EndingTest::leave(const Program &program, int way)
{
    if (way == 0)
        postMsg()->post(&PostMsg::SigChangeSize, 1);
    else if (way == 1)
        program.window()->slotActionExitApp();
    else
        program.window()->close();
}

void EndingTest::atEachMoment_data()
{
    QTest::addColumn<QString>("moment");
    QTest::addColumn<int>("way");
    for (const char *moment : {"connect thread in its signal", "report in its signal", "wait prompt open",
                               "offline prompt open", "on the way back"}) {
        for (const auto &[way, name] : {std::pair(0, "button"), std::pair(1, "tray"), std::pair(2, "desktop")})
            QTest::addRow("%s, %s", moment, name) << moment << way;
    }
}

/** The moments at which somebody waits for this thread, each reached for sure, with each way out. */
void EndingTest::atEachMoment()
{
    QFETCH(QString, moment);
    QFETCH(int, way);
    // Without a cache a mouse that is asleep resets the pages.
    QDir(UserFolders::path(UserFolders::Folder::DeviceInfo)).removeRecursively();
    Program program;
    bool isReached = false;
    QObject context;
    const auto end = [&] {
        if (!std::exchange(isReached, true))
            leave(program, way);
    };
    if (moment == "connect thread in its signal") {
        VirtualMice::tell({"sleep", "q1"});
        connect(postMsg(), &PostMsg::SigFormReset, &context, end, Qt::BlockingQueuedConnection);
    } else if (moment == "report in its signal") {
        connect(postMsg(), &PostMsg::SigUpDataLightSensor, &context, end, Qt::BlockingQueuedConnection);
    } else if (moment == "wait prompt open") {
        program.whenShown("UpDataParam", end);
    } else {
        program.whenShown("MouseOffLine", end);
        QVERIFY(program.connectMouse("q1"));
        if (moment == "on the way back") {
            QTimer::singleShot(0, &context, [&] { QTimer::singleShot(1, &context, end); });
            program.clickSoon("UpArrow");
        } else {
            VirtualMice::tell({"sleep", "q1"});
            program.click("SensorButton");
            program.clickSoon("Button250HZ");
        }
    }
    if (!program.isDeviceWindowShown())
        program.clickSoon(program.pictureOf("q1"));
    QTimer::singleShot(20000, &context, [] { QCoreApplication::quit(); }); // the moment never came
    QApplication::exec();
    QVERIFY(isReached);
}

/** One life of the program, from its first window to the deleted one, with everything going on. */
void EndingTest::runOnce(QRandomGenerator &random, int round)
{
    const Program program;
    // Reports all along: each change on the mouse is announced and read, each read ends in a blocking signal.
    QTimer reports;
    QObject::connect(&reports, &QTimer::timeout, [&random] {
        VirtualMice::tell({"rate", "q1", random.bounded(2) == 0 ? "1" : "2"});
        VirtualMice::tell({"battery", "q1", QString::number(random.bounded(101))});
    });
    reports.start(3);
    program.clickSoon("btn0");
    // Asleep for some rounds, so that the offline prompt is open at the exit; or a wait prompt, or a page.
    const int moment = static_cast<int>(random.bounded(160U));
    if (round % 4 == 3) {
        QTimer::singleShot(moment / 2, [] {
            VirtualMice::tell({"sleep", "q1"});
            postMsg()->post(&PostMsg::SigMouseOffLineo, 0);
        });
    }
    QTimer::singleShot(moment, [&] {
        reports.stop();
        leave(program, round % 3);
    });
    QApplication::exec();
}

/** The next start shows the window where it was, unless nobody could see it there. */
void EndingTest::thePlaceIsKept()
{
    const auto runAt = [](QPoint place) {
        const Program program;
        const QPoint before = program.window()->pos();
        program.window()->move(place);
        QTimer::singleShot(0, [&program] { leave(program, 0); });
        QApplication::exec();
        return before;
    };
    const QPoint usual = runAt({40, 60});
    QCOMPARE(runAt({5000, 60}), QPoint(40, 60));
    QCOMPARE(runAt(usual), usual);
}

void EndingTest::atRandomMoments()
{
    QRandomGenerator random(testSeed());
    qint64 longest = 0;
    for (int round = 0; round < testRounds(120); ++round) {
        QElapsedTimer time;
        time.start();
        runOnce(random, round);
        VirtualMice::tell({"wake", "q1"});
        cleanup();
        longest = qMax(longest, time.elapsed());
        if (QTest::currentTestFailed())
            return;
    }
    // A life is at most 160 ms of doing; the rest is building and ending. A hang would be far beyond.
    QVERIFY2(longest < 10000, qPrintable(QStringLiteral("the longest took %1 ms").arg(longest)));
}

HALVARION_TEST_MAIN(EndingTest)
#include "tst_ending.moc"
