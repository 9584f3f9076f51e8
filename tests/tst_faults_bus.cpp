#include "app/ChooserList.h"
#include "devicelink/WorkingRecord.h"
#include "portwire/control/ControlClient.h"
#include "portwire/portwire.h"
#include "support/FaultBench.h"
#include "support/Rows.h"
#include "support/Seed.h"
#include "support/TestHome.h"

namespace {

/** What a hand does to the bus, in words of portwirectl. */
QStringList randomHand(QRandomGenerator &random)
{
    static const QStringList hands = {"unplug q1-4k", "unplug q1-4k",  "plug q1-4k",     "plug q1",
                                      "unplug q1",    "sleep q1",      "wake q1",        "dpi q1 %1",
                                      "rate q1 %2",   "profile q1 %1", "fault q1 %3 %4", "fault q1-4k %3 %4"};
    static const std::array<int, 4> rates = {1, 2, 4, 32};
    QString hand = hands[random.bounded(hands.size())];
    hand.replace("%1", QString::number(random.bounded(4)));
    hand.replace("%2", QString::number(rates[random.bounded(4U)]));
    hand.replace("%3", faultKinds[random.bounded(4U)]);
    hand.replace("%4", QString::number(random.bounded(1, 9)));
    return hand.split(' ');
}

/** What a user does, as far as the program lets him: a prompt takes everything but its own buttons. */
void randomClick(FaultBench &bench, quint32 choice)
{
    static const std::array<const char *, 6> settings = {"Button125HZ",    "Button500HZ",  "Performance",
                                                         "StraightLine_2", "MotionSync_2", "AddLevelA"};
    Program &program = bench.program();
    if (program.isPromptShown()) {
        if (choice % 3 == 0)
            Program::dismiss("MouseOffLine");
    } else if (!program.isDeviceWindowShown()) {
        const auto entries = static_cast<quint32>(ChooserDevices().size());
        if (entries > 0 && !DuplicateDevices)
            program.click(QStringLiteral("btn%1").arg(choice % entries));
    } else if (choice % 5 == 0) {
        program.click(pageButtons[choice / 5 % pageButtons.size()]);
    } else if (choice % 7 == 0) {
        program.click("UpArrow");
    } else {
        program.click(settings[choice / 7 % settings.size()]);
    }
}

} // namespace

/** What happens to a mouse in a hand, at the worst moments: the program lives, answers, and shows what is so. */
class FaultsBusTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { FaultBench().measureHealthyTurn(); }
    void deadReceiverOnTheChooser_data();
    void deadReceiverOnTheChooser();
    void handsAtRandomMoments();
    void announcedChangeThatCannotBeRead_data();
    void announcedChangeThatCannotBeRead();
    void mouseLostForGood();
    void pulledForAMoment();
    void clickWhileARecordWaits();
};

void FaultsBusTest::deadReceiverOnTheChooser_data()
{
    const Rows<QString> row("kind");
    for (const char *kind : faultKinds)
        row(kind, kind);
}

void FaultsBusTest::deadReceiverOnTheChooser()
{
    QFETCH(QString, kind);
    FaultBench bench([&] { VirtualMice::tell({"unplug", "q1-4k"}); });
    QVERIFY(bench.waitFor([&] { return bench.program().entryCount() == 1; }));
    bench.spoil("q1-4k", kind, 1000000);
    bench.hand({"plug", "q1-4k"});
    QVERIFY(bench.waitFor([&] { return bench.program().entryCount() == 2; }));
    QCOMPARE(bench.heartbeat().complaint(), QString());
    const int dead = ChooserDevices()[0].Path.contains("q1") ? 0 : 1;
    const QString picture = QStringLiteral("btn%1").arg(dead);
    QVERIFY(bench.program().find(picture)->styleSheet().contains("Unknow.png"));
    // Nobody knows what it is, so it may be one without its mouse.
    bench.program().whenShown("Match", [] { Program::dismiss("Match"); });
    bench.program().click(picture);
    QCOMPARE(bench.program().shownPrompts(), QStringList{"Match"});
    QVERIFY(!bench.program().isDeviceWindowShown());

    bench.spoil("q1-4k", kind, 0);
    QVERIFY(bench.waitFor([&] {
        QEvent enter(
            QEvent::Enter); // one that was silent gets little time for 100 ms: the first look may come too early
        QCoreApplication::sendEvent(bench.program().find(picture), &enter);
        return bench.program().find(picture)->styleSheet().contains("OnLine0.png");
    }));
    QCOMPARE(bench.connectQ1(), QString());
}

void FaultsBusTest::handsAtRandomMoments()
{
    const int rounds = testRounds(40);
    QRandomGenerator random(testSeed());
    FaultBench bench;
    constexpr int roundTime = 80;
    for (int round = 0; round < rounds; ++round) {
        // By timers: a click may open a prompt, whose event loop then runs what comes next.
        const auto later = [&](auto action) {
            QTimer::singleShot(static_cast<int>(random.bounded(roundTime)), bench.program().window(), action);
        };
        QStringList story;
        for (int index = static_cast<int>(random.bounded(2, 8)); index > 0; --index) {
            const QStringList words = randomHand(random);
            story << words.join(' ');
            later([&bench, words] {
                // There may be no such level in the profile that is active now; a hand can't press it then.
                bench.heartbeat().aside([&] { portwire::ControlClient().call(words); });
            });
        }
        for (int index = static_cast<int>(random.bounded(1, 6)); index > 0; --index) {
            const quint32 choice = random.bounded(1000U);
            story << QStringLiteral("click %1").arg(choice);
            later([&bench, choice] { randomClick(bench, choice); });
        }
        bool isOver = false;
        QTimer::singleShot(roundTime + 20, bench.program().window(), [&] {
            for (const QString cure : {"fault q1 drop 0", "fault q1-4k drop 0", "unplug q1", "plug q1-4k", "wake q1"})
                bench.hand(cure.split(' '));
            isOver = true;
        });
        const QString told = QStringLiteral("round %1: %2").arg(round).arg(story.join(", "));
        QVERIFY2(bench.waitFor([&] { return isOver; }), qPrintable(told));
        // A change of the bus may still be on its way to the program, which then goes back to the chooser once more.
        QString left = QStringLiteral("the Q1 isn't on the chooser");
        for (int attempt = 0; attempt < 4 && !left.isEmpty(); ++attempt) {
            const auto isOther = [] { return SelectInfo().get().DeviceKind != 1; };
            const auto isAtRest = [&] {
                if (!bench.program().isDeviceWindowShown())
                    return bench.program().entryCount() == 2;
                return isOther() || bench.unsettled().isEmpty();
            };
            bench.waitFor(isAtRest, 3000);
            if (isOther() && bench.program().isDeviceWindowShown())
                bench.program().goBack();
            if (bench.program().isDeviceWindowShown() || bench.openQ1())
                left = bench.settle(3000);
        }
        QVERIFY2(left.isEmpty(), qPrintable(told + ": " + left));
        const QString slow = bench.heartbeat().complaint();
        QVERIFY2(slow.isEmpty(), qPrintable(told + ": " + slow));
        bench.heartbeat().restart();
    }
}

void FaultsBusTest::announcedChangeThatCannotBeRead_data()
{
    const Rows<QString, QString> row("change", "kind");
    for (const QString change : {"dpi q1 4", "rate q1 4", "profile q1 2"}) {
        for (const char *kind : {"drop", "stall", "garbage", "short", "sleep"})
            row(qPrintable(change + ", " + kind), change, kind);
    }
}

/** The mouse says that something changed on it, and then its answer to what it is gets lost, or it falls asleep. */
void FaultsBusTest::announcedChangeThatCannotBeRead()
{
    QFETCH(QString, change);
    QFETCH(QString, kind);
    // A profile that differs from the active one.
    FaultBench bench([] {
        VirtualMice::tell({"profile", "q1", "2"});
        VirtualMice::tell({"rate", "q1", "8"});
        VirtualMice::tell({"profile", "q1", "0"});
    });
    QCOMPARE(bench.connectQ1(), QString());
    QTest::qWait(Wait::scaled(3000) + 20); // a re-read is let through again
    const FlashDataMap before = bench.held();
    const bool fallsAsleep = kind == "sleep";
    bench.spoil("q1", fallsAsleep ? "drop" : kind, 5);
    bench.hand(change.split(' '));
    if (fallsAsleep) {
        bench.hand({"sleep", "q1"});
        bench.spoil("q1", "drop", 0);
        QTest::qWait(50);
        bench.hand({"wake", "q1"});
    }
    QVERIFY(bench.held() != before);
    QCOMPARE(bench.settleInTime(), QString());
}

/** The prompt stays for as long as the user likes, and goes with the receiver. */
void FaultsBusTest::mouseLostForGood()
{
    FaultBench bench;
    Program &program = bench.program();
    QCOMPARE(bench.connectQ1(), QString());
    program.click("SensorButton");
    program.forgetPrompts();
    const FlashDataMap last = bench.held();
    bench.hand({"sleep", "q1"});
    bool hasStayed = false;
    program.whenShown("MouseOffLine", [&] {
        // Some polls of the mouse that never answers.
        QTimer::singleShot(60, program.window(), [&] {
            hasStayed = program.isPromptShown("MouseOffLine");
            bench.hand({"remove", "q1"});
        });
    });
    program.click("Button250HZ");
    QVERIFY(bench.waitFor([&] { return !program.isDeviceWindowShown() && program.entryCount() == 1; }));
    QVERIFY(bench.waitFor([&] { return !program.isPromptShown(); }));
    QVERIFY(hasStayed);
    QCOMPARE(program.shownPrompts(), QStringList{"MouseOffLine"});
    QVERIFY(WorkingRecord::instance().copy() == last);
    QCOMPARE(bench.heartbeat().complaint(), QString());
}

/** Out and in again before the program looks: it stays on the device, and so must what it shows. */
void FaultsBusTest::pulledForAMoment()
{
    FaultBench bench;
    QCOMPARE(bench.connectQ1(), QString());
    bench.heartbeat().restart();
    for (int round = 0; round < 6; ++round) {
        bench.heartbeat().aside([&] {
            VirtualMice::tell({"unplug", "q1-4k"});
            VirtualMice::tell({"rate", "q1", round % 2 == 0 ? "4" : "2"});
            VirtualMice::tell({"plug", "q1-4k"});
        });
        QCOMPARE(bench.settle(), QString());
        // Its reports arrive again without anything being asked.
        bench.hand({"dpi", "q1", QString::number(round % 5)});
        QCOMPARE(bench.settleInTime(), QString());
    }
}

/** A click is served after a record was copied for the page, and before the page shows it. */
void FaultsBusTest::clickWhileARecordWaits()
{
    Program *program = nullptr;
    bool isClicked = true;
    QObject context;
    // Connected before the page, so called before the page.
    connect(
        postMsg(), &PostMsg::SigUpDataLightSensor, &context,
        [&] {
            if (!std::exchange(isClicked, true))
                program->click("MotionSync_2");
        },
        Qt::BlockingQueuedConnection);
    FaultBench bench;
    program = &bench.program();
    QCOMPARE(bench.connectQ1(), QString());
    program->click("SensorButton");
    for (int round = 0; round < 2; ++round) {
        const int before = bench.held().MotionSync;
        isClicked = false;
        UsbServer_ReadAllFlashData();
        QVERIFY(bench.waitFor([&] { return isClicked; }));
        QVERIFY(bench.waitFor([&] { return bench.held().MotionSync != before; }));
        QCOMPARE(bench.settle(), QString());
    }
}

HALVARION_TEST_MAIN(FaultsBusTest)
#include "tst_faults_bus.moc"
