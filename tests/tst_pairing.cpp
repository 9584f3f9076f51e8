#include "devicelink/DeviceSetters.h"
#include "devicelink/ReportLink.h"
#include "devicelink/Worker.h"
#include "maintenance/PairingState.h"
#include "support/Program.h"
#include "support/Seed.h"
#include "support/TestHome.h"
#include "ui/Prompt.h"

#include <memory>

namespace {

/** The pairing dialog; null when it has closed. Another prompt may stand over it. */
Prompt *dialog() { return Program::prompt("Match"); }

QPushButton *button() { return dialog()->findChild<QPushButton *>("MatchButton"); }
bool isShown(const char *picture) { return button()->styleSheet().contains(picture); }
void start() { button()->click(); }
void close() { Program::clickIn("Match", "CloseButton"); }

/** Holds its buttons once the receiver looks, until it is found: held twice, it would leave that receiver again. */
void pairWith(const QString &mouse, const QString &receiver)
{
    QVERIFY(QTest::qWaitFor([&] { return VirtualMice::device(receiver)["pairing"].toBool(); }));
    VirtualMice::tell({"pairing", mouse});
    QVERIFY(QTest::qWaitFor([] { return isShown("PairSuccess"); }));
}

void tell(const QString &words) { VirtualMice::tell(words.split(' ')); }

/** One that the first mouse doesn't have. */
std::uint8_t otherLod() { return VirtualMice::record("q1").Lod == 1 ? 2 : 1; }

} // namespace

/** The pairing dialog before the whole program: who has which mouse in the end, and that the program goes on. */
class PairingTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { VirtualMice::restoreScene(); }
    void cleanup() { program.reset(); }
    void newReceiver();
    void anotherModel();
    void failures();
    void wayOut();
    void spaceOnTheChooser();
    void spaceAfterAList();
    void interruptions();

private:
    /** Opens the device of a picture. */
    void open(int entry, bool isAsleep = false);
    /** Does something with the pairing dialog when it opens, and leaves it by Escape. */
    void whenOpen(const std::function<void()> &act);
    /** Opens it from the settings page, does something with it, and returns when it has closed. */
    void pair(const std::function<void()> &act);
    /**
     * The device window is in use again: what is set reaches the mouse; or the user is back on the chooser, if he may
     * be. On a busy machine the mouse may answer too late to count as awake, and is set again.
     */
    bool isAlive(bool orLeft = false) const;
    void interrupt(QRandomGenerator &random);

    std::unique_ptr<Program> program;
};

void PairingTest::open(int entry, bool isAsleep)
{
    program = std::make_unique<Program>();
    program->whenShown("MouseOffLine", [] { Program::dismiss("MouseOffLine"); });
    if (isAsleep)
        program->click(QStringLiteral("btn%1").arg(entry));
    const auto isWaiting = [] { return OfflineWaiting && !isConnecting(); };
    QVERIFY(isAsleep ? QTest::qWaitFor(isWaiting) : program->connectEntry(entry));
    program->click("FormSetting");
}

void PairingTest::whenOpen(const std::function<void()> &act)
{
    program->forgetPrompts();
    program->whenShown("Match", [act] {
        QVERIFY(dialog());
        act();
        const auto isLeft = [] {
            Program::dismiss("Match");
            return !dialog() || Wait::isEnding();
        };
        if (!QTest::qWaitFor(isLeft)) // a wait prompt that stands over it closes by itself first
            qFatal("the dialog can't be left");
    });
}

void PairingTest::pair(const std::function<void()> &act)
{
    whenOpen(act);
    program->click("pushButton_2");
    QVERIFY(program->shownPrompts().contains("Match") && !PairingState::isRunning());
    QCOMPARE(int(PairingState::state()), int(PairingState::Idle));
    QTRY_VERIFY(!isConnecting()); // where a pairing was begun the mouse is connected anew, however it ended
}

bool PairingTest::isAlive(bool orLeft) const
{
    const std::uint8_t lod = otherLod();
    const auto isInUse = [&] {
        const auto isSet = [lod] { return otherLod() != lod; };
        return (orLeft && !DeviceEntered) ||
               (program->isConnected() && DeviceWindowOpen && SetLod(lod) && QTest::qWaitFor(isSet, 1000));
    };
    return !QTest::currentTestFailed() && QTest::qWaitFor(isInUse, 10000);
}

/** A receiver fresh from its box, and a mouse that had another one; the old receiver is left without a mouse. */
void PairingTest::newReceiver()
{
    VirtualMice::tell({"add", "receiver", "2k", "q1"});
    open(1, true); // between the 1K receiver of the other mouse and the 4K one
    const FlashDataMap before = VirtualMice::record("q1");
    pair([&] {
        start();
        QVERIFY(QTest::qWaitFor([] { return button()->text() == "Pairing..."; }));
        QVERIFY(!DeviceWindowOpen);
        const int sent = VirtualMice::count("sent");
        start(); // asks once more and starts nothing anew
        QTRY_VERIFY(VirtualMice::count("sent") > sent);
        pairWith("q1", "q1-2k");
        QVERIFY(DeviceWindowOpen);
        start(); // nothing more to do
        QVERIFY(isShown("PairSuccess"));
        close();
        QVERIFY(!dialog());
    });
    QCOMPARE(VirtualMice::receiverOf("q1"), QString("q1-2k"));
    QTRY_VERIFY(program->isConnected());
    QVERIFY(VirtualMice::record("q1") == before); // nothing of the receiver before was written to it
    QVERIFY(isAlive() && VirtualMice::device("q1")["program"].toBool());
    QTRY_COMPARE(program->find<QLabel>("label_7")->text(), QString("v1.12"));
}

/** What was set for the mouse before never reaches the new one, which has no place in this window if it's a Q2. */
void PairingTest::anotherModel()
{
    open(1);
    VirtualMice::tell({"fault", "q1", "drop", "1000"});
    QTRY_VERIFY(SetLod(otherLod())); // waits for a mouse that doesn't answer
    const FlashDataMap before = VirtualMice::record("q2");
    pair([&] {
        VirtualMice::tell({"pairing", "q2"}); // it is there before the receiver looks, and between two tries to write
        start();
        QTRY_VERIFY(isShown("PairSuccess"));
    });
    QCOMPARE(VirtualMice::receiverOf("q2"), QString("q1-4k"));
    QTRY_VERIFY(!program->isDeviceWindowShown());
    QVERIFY(VirtualMice::record("q2") == before);
}

/** Each ends as failed within the dialog's own time, and another start runs the whole thing again. */
void PairingTest::failures()
{
    const auto hasFailed = [] { return isShown("PairFail") && button()->text() == "Failed, try again"; };
    const auto tryAgain = [&](const char *hand) {
        QVERIFY(QTest::qWaitFor(hasFailed));
        tell(hand);
        start();
        pairWith("q1", "q1-4k");
    };
    open(1);
    pair([&] {
        tell("fault q1-4k drop 9999 0 requests");
        start(); // the order is never answered
        tryAgain("fault q1-4k drop 0 0 requests");
    });
    QVERIFY(isAlive());
    pair([&] {
        start();
        tell("unplug q1-4k");
        tryAgain("plug q1-4k");
    });
    QVERIFY(isAlive(true)); // the watch may have led back to the chooser
}

/** Escape is the way out of a pairing that goes on; what the receiver says afterwards changes nothing. */
void PairingTest::wayOut()
{
    open(1);
    pair([&] {
        start();
        QTRY_VERIFY(VirtualMice::device("q1-4k")["pairing"].toBool());
        close();
        QVERIFY(dialog());
    });
    QVERIFY(!VirtualMice::device("q1-4k")["pairing"].toBool());
    const std::uint8_t paired[9] = {5, 6, 0, 0, 0, 0, 0, 0, 3};
    PairingState::onReport(paired, 8, paired + 8, 1);
    QCOMPARE(int(PairingState::state()), int(PairingState::Idle));
    QVERIFY(isAlive());

    // An order that the receiver refuses, as for mice of another maker, has failed at once.
    PairingState::begin();
    ReportLink::start(DevicePath().get(), PairingState::onReport);
    PairingState::listen();
    UsbServer_EnterDonglePairOnlyCid(99);
    QVERIFY(QTest::qWaitFor([] { return PairingState::state() == PairingState::Failed; }));
    PairingState::reset();

    // A mouse on its cable has no receiver to look for.
    program.reset();
    VirtualMice::tell({"plug", "q1"});
    open(0);
    pair([&] {
        QTRY_VERIFY(dialog()->findChild<QLabel *>("label")->isVisible());
        QVERIFY(!button()->isEnabled());
        QTest::keyClick(dialog(), Qt::Key_Space);
        QVERIFY(!PairingState::isRunning());
    });
}

/** One receiver alone is paired by the space bar; of two nobody knows which is meant. */
void PairingTest::spaceOnTheChooser()
{
    program = std::make_unique<Program>();
    QTest::keyClick(program->window(), Qt::Key_Space);
    QVERIFY(program->shownPrompts().isEmpty());
    VirtualMice::tell({"remove", "q2"});
    QTRY_COMPARE(program->entryCount(), 1);
    program->whenShown("RePair", [] { Program::clickIn("RePair", "OK"); });
    whenOpen([] {
        QTRY_VERIFY(dialog()->isActiveWindow()); // it has the keyboard
        QTest::keyClick(dialog(), Qt::Key_Space);
        pairWith("q1", "q1-4k");
        close();
    });
    QTest::keyClick(program->window(), Qt::Key_Space);
    QVERIFY(program->shownPrompts().contains("Match"));
    QTRY_VERIFY(program->entryCount() == 1 && !DeviceEntered && !DeviceWindowOpen);
    QVERIFY(program->connectEntry(0));
}

/** The list that had the keyboard when the device was left isn't opened over another page; menus and lists close. */
void PairingTest::spaceAfterAList()
{
    for (const Qt::UIEffect effect : {Qt::UI_General, Qt::UI_AnimateCombo, Qt::UI_AnimateMenu})
        QApplication::setEffectEnabled(effect); // as Windows has them
    open(1);
    program->click("LightsButton");
    program->find("LightMod")->setFocus();
    program->click("UpArrow");
    QTRY_VERIFY(!DeviceEntered);
    QVERIFY(program->connectEntry(1));
    program->click("FormSetting");
    QTRY_VERIFY((program->window()->activateWindow(), program->window()->isActiveWindow())); // as a real click does
    whenOpen([] {});
    QTest::keyClick(static_cast<QWidget *>(nullptr), Qt::Key_Space);
    QVERIFY(program->shownPrompts().contains("Match"));

    program->click("MacroButton");
    Q_EMIT program->find("listWidgetHong")->customContextMenuRequested({});
    QVERIFY(QApplication::activePopupWidget());
    program->click("LightsButton");
    QVERIFY(!QApplication::activePopupWidget());
    program->find<QComboBox>("LightMod")->showPopup();
    QVERIFY(QApplication::activePopupWidget()); // at once
    program->click("FormSetting");
    QVERIFY(!QApplication::activePopupWidget());
}

/** One pairing of the first mouse into which anything comes, up to the end of the program. */
void PairingTest::interrupt(QRandomGenerator &random)
{
    const QStringList hands = {"unplug q1-4k", "plug q1-4k", "sleep q1",  "wake q1",
                               "pairing q1",   "plug q1",    "unplug q1", "pairing q2"};
    const std::function<void()> clicks[] = {start, start, close, [] { postMsg()->post(&PostMsg::SigChangeSize, 1); }};
    if (random.bounded(3) > 0)
        start();
    for (int steps = random.bounded(7); steps >= 0 && dialog() && !Wait::isEnding(); --steps) {
        const int what = random.bounded(hands.size() + int(std::size(clicks)));
        if (what >= hands.size())
            clicks[what - hands.size()]();
        else if (hands[what] != "pairing q1" || !VirtualMice::device("q1")["corded"].toBool()) // where it can't pair
            tell(hands[what]);
        QTest::qWait(random.bounded(40));
    }
}

/** Whatever comes in between: no dialog stays, the window isn't dead afterwards, no wrong mouse is written. */
void PairingTest::interruptions()
{
    QRandomGenerator random(testSeed());
    for (int round = 0; round < testRounds(5) && !QTest::currentTestFailed(); ++round) {
        VirtualMice::restoreScene();
        const FlashDataMap before = VirtualMice::record("q2");
        open(1);
        if (random.bounded(2) == 0) { // a change that waits for the mouse
            VirtualMice::tell({"fault", "q1", "drop", "100"});
            SetLod(otherLod());
        }
        pair([&] { interrupt(random); });
        QVERIFY(!dialog() && (DeviceEntered || !DeviceWindowOpen));
        // Whoever holds the mouse that the window is for lets it go, and the window goes on.
        for (const char *hand : {"fault q1 drop 0", "plug q1-4k", "sleep q1", "wake q1"})
            tell(hand);
        QVERIFY(Wait::isEnding() || isAlive(true));
        QVERIFY(VirtualMice::record("q2") == before);
        program.reset();
        QTimer::singleShot(0, qApp, &QCoreApplication::quit); // after an end of the program no loop would begin
        QApplication::exec();
    }
}

HALVARION_TEST_MAIN(PairingTest)
#include "tst_pairing.moc"
