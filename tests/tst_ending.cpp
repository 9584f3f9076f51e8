#include "app/ChooserList.h"
#include "app/DialogMain.h"
#include "app/Ending.h"
#include "app/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/Worker.h"
#include "productdata/UserFolders.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTimer>

/** Exit at any moment: the windows go, nothing hangs, and nobody who waits for this thread is left behind. */
class EndingTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        UserFolders::prepare();
        VirtualMice::restoreScene();
    }
    void atRandomMoments();

private:
    static void runOnce(QRandomGenerator &random, int round);
};

/** One life of the program, from its first window to the deleted one, with everything going on. */
void EndingTest::runOnce(QRandomGenerator &random, int round)
{
    Program::forgetDevice();
    auto *const window = new DialogMain;
    window->show();
    // Reports all along: each change on the mouse is announced and read, each read ends in a blocking signal.
    QTimer reports;
    QObject::connect(&reports, &QTimer::timeout, [&random] {
        VirtualMice::tell({"rate", "q1", random.bounded(2) == 0 ? "1" : "2"});
        VirtualMice::tell({"battery", "q1", QString::number(random.bounded(101))});
    });
    reports.start(3);
    QTimer::singleShot(0, [window] {
        if (QWidget *const entry = window->findChild<QWidget *>(QStringLiteral("btn0")))
            QTest::mouseClick(entry, Qt::LeftButton);
    });
    // Asleep for some rounds, so that the offline prompt is open at the exit; or a wait prompt, or a page.
    const int moment = static_cast<int>(random.bounded(160U));
    if (round % 4 == 3) {
        QTimer::singleShot(moment / 2, [] {
            VirtualMice::tell({"sleep", "q1"});
            postMsg()->post(&PostMsg::SigMouseOffLineo, 0);
        });
    }
    QTimer::singleShot(moment, [&, window] {
        reports.stop();
        switch (round % 3) {
        case 0:
            postMsg()->post(&PostMsg::SigChangeSize, 1);
            break; // the device window's button
        case 1:
            window->slotActionExitApp();
            break; // the tray's menu
        default:
            window->close();
            break; // the desktop's own way
        }
    });
    QApplication::exec();
    Ending::finish(window);
    Wait::setEnding(false);
    QVERIFY(!isConnecting());
    QVERIFY(!isDispatching());
    VirtualMice::tell({"wake", "q1"});
}

void EndingTest::atRandomMoments()
{
    bool isNumber = false;
    const uint given = qEnvironmentVariableIntValue("HALVARION_SEED", &isNumber);
    const uint seed = isNumber ? given : QRandomGenerator::global()->generate() & 0x7fffffffU;
    const int rounds = qMax(200, qEnvironmentVariableIntValue("HALVARION_ROUNDS"));
    qInfo("seed %u (HALVARION_SEED), %d exits", seed, rounds);
    QRandomGenerator random(seed);
    QApplication::setQuitOnLastWindowClosed(false);
    qint64 longest = 0;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer time;
        time.start();
        runOnce(random, round);
        longest = qMax(longest, time.elapsed());
        if (QTest::currentTestFailed())
            return;
    }
    // A life is at most 160 ms of doing; the rest is building and ending. A hang would be far beyond.
    QVERIFY2(longest < 10000, qPrintable(QStringLiteral("the longest took %1 ms").arg(longest)));
}

HALVARION_TEST_MAIN(EndingTest)
#include "tst_ending.moc"
