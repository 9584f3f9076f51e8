#include "app/DialogMain.h"
#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "maintenance/Match.h"
#include "maintenance/PairingState.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"

#include <QJsonDocument>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTextEdit>
#include <QToolButton>

#include <cstring>
#include <memory>

namespace {

/** A mouse on its cable can't be put into its pairing state. */
bool mayDo(const QStringList &hand) { return hand[0] != "pairing" || !VirtualMice::device(hand[1])["corded"].toBool(); }

int reportsSent() { return QJsonDocument::fromJson(VirtualMice::tell({"stats"})).object()["sent"].toInt(); }

} // namespace

/** The pairing dialog before the whole program: who has which mouse in the end, and that the program goes on. */
class PairingTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void newReceiver();
    void anotherModel();
    void failure_data();
    void failure();
    void escape();
    void onItsCable();
    void spaceOnTheChooser();
    void interruptions();

private:
    /** Opens the device of a picture. */
    void open(int entry, bool isAsleep = false);
    /** Opens the pairing dialog from the settings page, does something with it, and returns when it has closed. */
    void pair(const std::function<void()> &act);
    /** The pairing dialog; null when it has closed. Another prompt may stand over it. */
    static Match *dialog();
    QPushButton *button() const { return dialog()->findChild<QPushButton *>("MatchButton"); }
    void start()
    {
        button()->click();
        hasStarted = true;
    }
    /** By Escape; a wait prompt that stands over the dialog closes by itself first. */
    void leave();
    bool isShown(const char *picture) const { return button()->styleSheet().contains(picture); }
    static QString mouseOf(const QString &receiver) { return VirtualMice::device(receiver)["mouse"].toString(); }
    /** The device window is in use again: what is set reaches the mouse. */
    bool isAlive(const QString &mouse) const;

    std::unique_ptr<Program> program;
    bool hasStarted = false;
};

void PairingTest::init() { VirtualMice::restoreScene(); }

void PairingTest::cleanup() { program.reset(); }

Match *PairingTest::dialog()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (auto *match = qobject_cast<Match *>(window); match && match->isVisible())
            return match;
    }
    return nullptr;
}

void PairingTest::leave() { QTRY_VERIFY(!dialog() || (QTest::keyClick(dialog(), Qt::Key_Escape), !dialog())); }

void PairingTest::open(int entry, bool isAsleep)
{
    program = std::make_unique<Program>();
    program->whenShown("MouseOffLine", [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    if (isAsleep) {
        program->click(QStringLiteral("btn%1").arg(entry));
        QTRY_VERIFY(program->isDeviceWindowShown() && !ConnectPending && !program->isPromptShown());
    } else {
        QVERIFY2(program->connectEntry(entry), qPrintable(QStringLiteral("%1 pictures; %2 %3 %4; %5")
                                                              .arg(program->entryCount())
                                                              .arg(program->isDeviceWindowShown())
                                                              .arg(LinkUp)
                                                              .arg(DeviceOnline)
                                                              .arg(program->shownPrompts().join(' '))));
    }
    program->click("FormSetting");
}

void PairingTest::pair(const std::function<void()> &act)
{
    bool isOver = false;
    hasStarted = false;
    program->forgetPrompts();
    program->whenShown("Match", [&] {
        program->whenShown("Match", [] {});
        QTRY_VERIFY(button()->isEnabled() || !dialog()->findChild<QTextEdit *>("textEdit")->isVisible());
        act();
        isOver = true;
    });
    program->click("pushButton_2");
    QVERIFY(isOver);
    // Where a pairing was begun the mouse is connected anew, however it ended; one that sleeps is waited for.
    if (hasStarted && DeviceEntered)
        QTRY_VERIFY(program->shownPrompts().size() > 1 || OfflineWaiting || !DeviceEntered);
}

bool PairingTest::isAlive(const QString &mouse) const
{
    if (!QTest::qWaitFor([this] { return program->isConnected() && DeviceWindowOpen && DeviceOnline; }, 10000))
        return false;
    const std::uint8_t lod = VirtualMice::record(mouse).Lod == 1 ? 2 : 1;
    return SetLod(lod) && QTest::qWaitFor([&] { return VirtualMice::record(mouse).Lod == lod; }) &&
           VirtualMice::device(mouse)["program"].toBool();
}

/** A receiver fresh from its box, and a mouse that had another one; the old receiver is left without a mouse. */
void PairingTest::newReceiver()
{
    VirtualMice::tell({"add", "receiver", "2k", "q1"});
    open(1, true); // between the 1K receiver of the other mouse and the 4K one
    QVERIFY(DevicePath().get().contains("q1-2k"));
    FlashDataMap marked = VirtualMice::record("q1");
    pair([&] {
        start();
        QTRY_COMPARE(button()->text(), QString("Pairing.."));
        QVERIFY(!DeviceWindowOpen);
        const int sent = reportsSent();
        start(); // asks once more and starts nothing anew
        QTRY_VERIFY(reportsSent() > sent);
        VirtualMice::tell({"pairing", "q1"});
        QTRY_VERIFY(isShown("PairSuccess"));
        QVERIFY(DeviceWindowOpen);
        start(); // nothing more to do
        QVERIFY(isShown("PairSuccess"));
        QTest::mouseClick(dialog()->findChild<QToolButton *>("CloseButton"), Qt::LeftButton);
    });
    QCOMPARE(mouseOf("q1-2k"), QString("q1"));
    QCOMPARE(mouseOf("q1-4k"), QString());
    QTRY_VERIFY(program->isConnected());
    const FlashDataMap held = VirtualMice::record("q1");
    QVERIFY(std::memcmp(&held, &marked, sizeof held) == 0); // nothing of the receiver before was written to it
    QVERIFY(isAlive("q1"));
    QTRY_COMPARE(program->find<QLabel>("label_7")->text(), QString("v1.12"));
}

/** What was set for the mouse before never reaches the new one, and one of another model has no place in this window.
 */
void PairingTest::anotherModel()
{
    open(1);
    VirtualMice::tell({"sleep", "q1"});
    const FlashDataMap before = VirtualMice::record("q2");
    pair([&] {
        start();
        VirtualMice::tell({"pairing", "q2"});
        QTRY_VERIFY(isShown("PairSuccess"));
        leave();
    });
    QCOMPARE(mouseOf("q1-4k"), QString("q2"));
    QTRY_VERIFY(!program->isDeviceWindowShown());
    const FlashDataMap after = VirtualMice::record("q2");
    QVERIFY(std::memcmp(&before, &after, sizeof before) == 0);
}

void PairingTest::failure_data()
{
    QTest::addColumn<QStringList>("hand");
    QTest::newRow("the order is never answered") << QStringList{"fault", "q1-4k", "drop", "3"};
    QTest::newRow("pulled out") << QStringList{"unplug", "q1-4k"};
}

/** Each ends as failed within the dialog's own time, and another start runs the whole thing again. */
void PairingTest::failure()
{
    QFETCH(QStringList, hand);
    open(1);
    pair([&] {
        if (hand[0] == "unplug")
            start();
        VirtualMice::tell(hand);
        if (hand[0] != "unplug")
            start();
        QTRY_VERIFY(isShown("PairFail"));
        QCOMPARE(button()->text(), QString("Failed, try again"));
        VirtualMice::tell({"plug", "q1-4k"});
        start();
        // A receiver whose answers got lost pairs already. A mouse that it finds before the new order is lost to that
        // one, and its buttons are held once more.
        const auto pairs = [this] {
            VirtualMice::tell({"pairing", "q1"});
            return isShown("PairSuccess");
        };
        QTRY_VERIFY(pairs());
        leave();
    });
    QCOMPARE(mouseOf("q1-4k"), QString("q1"));
    if (program->isDeviceWindowShown()) // pulled out, the watch has led back to the chooser
        QVERIFY(isAlive("q1"));
    else
        QTRY_VERIFY(program->entryCount() == 2 && !DeviceWindowOpen);
}

/** The way out of a pairing that goes on; what the receiver says afterwards changes nothing. */
void PairingTest::escape()
{
    open(1);
    pair([&] {
        start();
        const QPointer<QWidget> match = dialog();
        QTest::mouseClick(match->findChild<QToolButton *>("CloseButton"), Qt::LeftButton);
        QVERIFY(match && match->isVisible()); // it is no way out yet
        leave();
    });
    QVERIFY(!PairingState::isRunning());
    QCOMPARE(int(PairingState::state()), 0);
    const std::uint8_t header[8] = {5, 6};
    const std::uint8_t paired = 3;
    const QSignalSpy told(postMsg(), &PostMsg::SigButtonEnable);
    PairingState::onReport(header, 8, &paired, 1);
    QCOMPARE(told.size(), 0);
    QVERIFY(isAlive("q1"));

    // An order that the receiver refuses, as for mice of another maker, has failed at once.
    PairingState::begin();
    ReportLink::start(DevicePath().get(), PairingState::onReport);
    UsbServer_EnterDonglePairOnlyCid(99);
    QTRY_COMPARE(int(PairingState::state()), int(PairingState::Failed));
    PairingState::reset();
}

void PairingTest::onItsCable()
{
    VirtualMice::tell({"plug", "q1"});
    open(0);
    const int sent = reportsSent();
    pair([&] {
        QTRY_VERIFY(dialog()->findChild<QLabel *>("label")->isVisible());
        QVERIFY(!button()->isEnabled());
        QTest::keyClick(dialog(), Qt::Key_Space);
        QTest::qWait(150);
        QVERIFY(!PairingState::isRunning());
        leave();
    });
    QVERIFY(reportsSent() - sent < 20);
}

/** One receiver alone is paired by the space bar; of two nobody knows which is meant. */
void PairingTest::spaceOnTheChooser()
{
    program = std::make_unique<Program>();
    QTest::keyClick(program->window(), Qt::Key_Space);
    QVERIFY(program->shownPrompts().isEmpty());
    VirtualMice::tell({"remove", "q2"});
    QTRY_COMPARE(program->entryCount(), 1);
    program->whenShown("RePair", [] { QApplication::activeModalWidget()->findChild<QToolButton *>("OK")->click(); });
    program->whenShown("Match", [this] {
        program->whenShown("Match", [] {});
        QTRY_VERIFY(button()->isEnabled());
        start();
        VirtualMice::tell({"pairing", "q1"});
        QTRY_VERIFY(isShown("PairSuccess"));
        leave();
    });
    QTest::keyClick(program->window(), Qt::Key_Space);
    QVERIFY(program->shownPrompts().contains("Match"));
    QTRY_VERIFY(program->entryCount() == 1 && !DeviceEntered && !DeviceWindowOpen);
    QVERIFY(program->connectEntry(0));
}

/** Whatever comes in between: no dialog stays, no state is left in which the window is dead, no wrong mouse is written.
 */
void PairingTest::interruptions()
{
    const int rounds =
        qEnvironmentVariableIntValue("HALVARION_ROUNDS") > 0 ? qEnvironmentVariableIntValue("HALVARION_ROUNDS") : 4;
    bool hasSeed = false;
    const int given = qEnvironmentVariableIntValue("HALVARION_SEED", &hasSeed);
    const quint32 seed = hasSeed ? quint32(given) : QRandomGenerator::global()->generate();
    qInfo("HALVARION_SEED=%u", seed);
    QRandomGenerator random(seed);
    const QList<QStringList> hands = {{"unplug", "q1-4k"}, {"plug", "q1-4k"}, {"sleep", "q1"},  {"wake", "q1"},
                                      {"pairing", "q1"},   {"plug", "q1"},    {"unplug", "q1"}, {"pairing", "q2"}};
    for (int round = 0; round < rounds && !QTest::currentTestFailed(); ++round) {
        VirtualMice::restoreScene();
        const FlashDataMap before = VirtualMice::record("q2");
        open(1);
        pair([&] {
            for (int steps = random.bounded(6); steps >= 0 && dialog(); --steps) {
                const int what = random.bounded(hands.size() + 3);
                if (what < hands.size() && mayDo(hands[what]))
                    VirtualMice::tell(hands[what]);
                else if (what == hands.size())
                    start();
                QTest::qWait(random.bounded(40));
            }
            leave();
        });
        QTRY_VERIFY(!program->isPromptShown("Match"));
        QVERIFY(!PairingState::isRunning());
        const FlashDataMap after = VirtualMice::record("q2");
        QVERIFY(std::memcmp(&before, &after, sizeof before) == 0);
        // Either the chooser is in front, or the window goes on; a mouse that sleeps is waited for.
        QTRY_VERIFY(!DeviceEntered || DeviceWindowOpen);
        program.reset();
    }
}

HALVARION_TEST_MAIN(PairingTest)
#include "tst_pairing.moc"
