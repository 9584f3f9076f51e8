#include "support/ButtonControls.h"
#include "support/Controls.h"
#include "support/FaultBench.h"
#include "support/ProfileControls.h"
#include "support/Rows.h"
#include "support/TestHome.h"

namespace {

/** Answers of the receiver for itself, or of the mouse over the air. */
struct Answers
{
    const char *device;
    std::vector<int> before; ///< how many are good before the one that gets spoiled
};

// The receiver answers the device watch (who, online), the connect (online twice), and the two questions after the
// record. The mouse answers the battery curve, the status, 128 reads, and then its indicator, battery, version and
// profile.
const std::array<Answers, 2> steps = {{{"q1-4k", {0, 2, 3, 4, 5}}, {"q1", {0, 1, 2, 66, 129, 130, 131, 132}}}};

} // namespace

/** Each kind of fault at each step of a connect and under each control: the screen tells the truth or a prompt is up.
 */
class FaultsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void atEachStepOfAConnect_data();
    void atEachStepOfAConnect();
    void underEachControl_data();
    void underEachControl();
};

void FaultsTest::initTestCase() { FaultBench().measureHealthyTurn(); }

void FaultsTest::atEachStepOfAConnect_data()
{
    const Rows<QString, int> row("kind", "count");
    for (const char *kind : faultKinds) {
        for (const int count : {1, 3, 40})
            row(qPrintable(QStringLiteral("%1 %2").arg(kind).arg(count)), kind, count);
    }
}

void FaultsTest::atEachStepOfAConnect()
{
    QFETCH(QString, kind);
    QFETCH(int, count);
    FaultBench bench;
    for (const auto &[device, before] : steps) {
        // A whole identification is lost with the largest number. The link waits 50 ms after each request that the
        // mouse leaves without an answer, which is slow enough with fewer.
        const int spoiled = device == QLatin1String("q1") ? qMin(count, 7) : count;
        for (const int after : before) {
            const QString where = QStringLiteral("%1 after %2").arg(device).arg(after);
            bench.spoil(device, kind, spoiled, after);
            QVERIFY2(bench.openQ1(), qPrintable(where));
            const QString left = bench.settleInTime();
            QVERIFY2(left.isEmpty(), qPrintable(where + ": " + left));
            bench.spoil(device, kind, 0);
            QVERIFY(bench.program().goBack());
            bench.heartbeat().restart();
        }
    }
}

void FaultsTest::underEachControl_data()
{
    const Rows<QString, QString, int, int> row("device", "kind", "count", "after");
    for (const char *kind : faultKinds) {
        for (const int count : {1, 4}) {
            row(qPrintable(QStringLiteral("online test, %1 %2").arg(kind).arg(count)), "q1-4k", kind, count, 0);
            row(qPrintable(QStringLiteral("write, %1 %2").arg(kind).arg(count)), "q1", kind, count, 0);
        }
    }
    // What a hand does, until the prompt is up or the device has gone from the screen.
    row("asleep", "q1", "sleep", 0, 0);
    row("pulled", "q1-4k", "unplug", 0, 0);
    // Controls that write several values ask before each.
    for (const int after : {1, 2, 3})
        row(qPrintable(QStringLiteral("online test %1, drop 3").arg(after + 1)), "q1-4k", "drop", 3, after);
}

void FaultsTest::underEachControl()
{
    QFETCH(QString, device);
    QFETCH(QString, kind);
    QFETCH(int, count);
    QFETCH(int, after);
    const bool isHand = count == 0;
    FaultBench bench;
    QCOMPARE(bench.connectQ1(), QString());
    if (kind == "sleep")
        bench.program().whenShown("MouseOffLine", [&] { bench.hand({"wake", device}); });
    std::vector<Control> all = profileControls(bench.held());
    for (const std::vector<Control> &more : {controls(), buttonControls()})
        all.insert(all.end(), more.begin(), more.end());
    for (const Control &control : all) {
        const QString where = control.name;
        bench.program().click(control.pageButton);
        if (isHand) { // there is something to lose
            control.change(bench.program().window(), bench.held());
            QCOMPARE(bench.settle(), QString());
        }
        const FlashDataMap before = bench.held();
        bench.program().forgetPrompts();
        isHand ? bench.hand({kind, device}) : bench.spoil(device, kind, count, after);
        bench.heartbeat().restart();
        const FlashDataMap wanted = control.change(bench.program().window(), before);
        if (kind == "unplug") {
            QVERIFY2(bench.waitFor([&] { return !bench.program().isDeviceWindowShown(); }), qPrintable(where));
            bench.hand({"plug", device});
            QVERIFY2(bench.openQ1(), qPrintable(where));
        }
        const QString left = bench.settleInTime();
        QVERIFY2(left.isEmpty(), qPrintable(where + ": " + left));
        // A write that gets lost is repeated; only a mouse that doesn't answer the online test keeps its old value.
        const bool isRefused = bench.program().shownPrompts().contains("MouseOffLine");
        const bool isTold = isRefused || kind == "unplug"; // which leads back to the chooser
        QVERIFY2(isTold || bench.held() == wanted, qPrintable(where + ": the change was lost without a word"));
        QVERIFY2(isHand || device != "q1" || !isRefused, qPrintable(where + ": a prompt for a lost write"));
        QVERIFY2(!isHand || (isTold && bench.held() == before), qPrintable(where + ": nobody was there"));
        if (!isHand)
            bench.spoil(device, kind, 0);
    }
}

HALVARION_TEST_MAIN(FaultsTest)
#include "tst_faults.moc"
