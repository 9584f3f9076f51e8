#include "app/ChooserList.h"
#include "app/DialogMain.h"
#include "app/Ending.h"
#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/Worker.h"
#include "productdata/UserFolders.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTimer>

#include <array>
#include <utility>

/** Exit at any moment: the windows go, nothing hangs, and nobody who waits for this thread is left behind. */
class EndingTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        QApplication::setQuitOnLastWindowClosed(false); // as at the start of the program
        UserFolders::prepare();
        VirtualMice::restoreScene();
    }
    void atEachMoment_data();
    void atEachMoment();
    void atRandomMoments();

private:
    enum class Exit { WindowButton, TrayMenu, Desktop };
    static constexpr std::array<Exit, 3> exits = {Exit::WindowButton, Exit::TrayMenu, Exit::Desktop};
    static void leave(DialogMain *window, Exit way);
    static void finish(DialogMain *window);
    static void runOnce(QRandomGenerator &random, int round);
};

void EndingTest::leave(DialogMain *window, Exit way)
{
    switch (way) {
    case Exit::WindowButton:
        postMsg()->post(&PostMsg::SigChangeSize, 1);
        break;
    case Exit::TrayMenu:
        window->slotActionExitApp();
        break;
    case Exit::Desktop:
        window->close();
        break;
    }
}

/** After the event loop is over. */
void EndingTest::finish(DialogMain *window)
{
    Ending::finish(window);
    Wait::setEnding(false);
    QVERIFY(!isConnecting());
    QVERIFY(!isDispatching());
}

void EndingTest::atEachMoment_data()
{
    QTest::addColumn<QString>("moment");
    QTest::addColumn<int>("way");
    for (const char *moment : {"the connect thread in its signal", "a report in its signal", "the wait prompt open",
                               "the offline prompt open", "on the way back"}) {
        for (const auto &[way, name] : {std::pair(Exit::WindowButton, "button"), std::pair(Exit::TrayMenu, "tray"),
                                        std::pair(Exit::Desktop, "desktop")})
            QTest::addRow("%s, %s", moment, name) << moment << int(way);
    }
}

/** The moments at which somebody waits for this thread, each reached for sure, with each way out. */
void EndingTest::atEachMoment()
{
    QFETCH(QString, moment);
    QFETCH(int, way);
    Program::forgetDevice();
    QDir(UserFolders::path(UserFolders::Folder::DeviceInfo))
        .removeRecursively(); // an asleep mouse then resets the pages
    UserFolders::prepare();
    auto *const window = new DialogMain;
    window->show();
    bool isReached = false;
    QObject context;
    const auto end = [&] {
        if (std::exchange(isReached, true))
            return;
        leave(window, Exit(way));
    };
    const auto clickSoon = [window](int delay, const QString &name) {
        QTimer::singleShot(delay, window, [window, name] {
            const QList<QWidget *> found = window->findChildren<QWidget *>(name);
            for (QWidget *widget : found) {
                if (widget->isVisible())
                    QTest::mouseClick(widget, Qt::LeftButton);
            }
        });
    };
    const auto whenShown = [&](const QString &prompt) {
        auto *const look = new QTimer(&context);
        QObject::connect(look, &QTimer::timeout, &context, [&, prompt] {
            const QWidgetList windows = QApplication::topLevelWidgets();
            for (const QWidget *each : windows) {
                if (each->isVisible() && each->metaObject()->className() == prompt)
                    end();
            }
        });
        look->start(1);
    };
    clickSoon(0, ChooserList::devices()[0].DeviceKind == 1 ? "btn0" : "btn1");
    if (moment.startsWith("the connect thread")) {
        VirtualMice::tell({"sleep", "q1"});
        connect(postMsg(), &PostMsg::SigFormReset, &context, end, Qt::BlockingQueuedConnection);
    } else if (moment.startsWith("a report")) {
        connect(postMsg(), &PostMsg::SigUpDataLightSensor, &context, end, Qt::BlockingQueuedConnection);
    } else if (moment.startsWith("the wait")) {
        whenShown("UpDataParam");
    } else {
        auto *const look = new QTimer(&context);
        QObject::connect(look, &QTimer::timeout, &context, [&, look] {
            if (!LinkUp || !window->findChild<QWidget *>("SensorButton")->isVisible() ||
                QApplication::activeModalWidget())
                return;
            look->stop();
            if (moment == "on the way back") {
                QTimer::singleShot(0, &context, [&] { QTimer::singleShot(1, &context, end); });
                clickSoon(0, "UpArrow");
            } else {
                VirtualMice::tell({"sleep", "q1"});
                whenShown("MouseOffLine");
                clickSoon(0, "SensorButton");
                clickSoon(5, "Button250HZ");
            }
        });
        look->start(1);
    }
    QTimer::singleShot(20000, &context, [] { QCoreApplication::quit(); }); // the moment never came
    QApplication::exec();
    QVERIFY(isReached);
    finish(window);
    VirtualMice::tell({"wake", "q1"});
}

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
        leave(window, exits[static_cast<std::size_t>(round) % exits.size()]);
    });
    QApplication::exec();
    finish(window);
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
