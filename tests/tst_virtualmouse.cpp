#include "portwire/control/ControlJson.h"
#include "portwire/virtual/VirtualBus.h"
#include "support/Rows.h"

#include <QtTest>

using namespace portwire;

namespace {

/** A clock that stands until it is told. */
struct HandClock
{
    std::shared_ptr<std::chrono::steady_clock::time_point> time =
        std::make_shared<std::chrono::steady_clock::time_point>();
    std::chrono::steady_clock::time_point operator()() const { return *time; }
    void pass(int seconds) const { *time += std::chrono::seconds(seconds); }
};

/** Writes bytes of the device image as the protocol document has them. */
FirmwarePacket writing(int at, std::vector<std::uint8_t> bytes, std::uint8_t flags = 3)
{
    return {7, 1, static_cast<std::uint16_t>(at), flags, std::move(bytes)};
}

/** The events as text, such as "0 +key 4, 10 -key 4". */
QString text(const std::vector<HidEvent> &events)
{
    QStringList list;
    for (const HidEvent &event : events) {
        list << QStringLiteral("%1 %2%3 %4")
                    .arg(event.atMs)
                    .arg(event.isPress ? "+" : "-", toJson(event)["type"].toString())
                    .arg(event.code);
    }
    return list.join(", ");
}

/** Presses written as for `portwirectl play`. */
std::vector<ButtonPress> pressesIn(const QString &words)
{
    std::vector<ButtonPress> presses;
    for (const QString &word : words.split(' ')) {
        const QStringList numbers = QString(word).replace('-', ':').split(':');
        presses.push_back({numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt()});
    }
    return presses;
}

struct Q1 : VirtualMouse
{
    Q1() : VirtualMouse(*findMouseModel("q1"), &std::chrono::steady_clock::now) {}
    void put(int at, const QByteArray &bytes)
    {
        QCOMPARE(int{answer(writing(at, {bytes.begin(), bytes.end()})).flags}, 0);
    }
};

} // namespace

class tst_virtualmouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void batchIsStagedUntilItsEnd();
    void receiverLooksForAMouse();
    void buttons_data();
    void buttons();
};

void tst_virtualmouse::batchIsStagedUntilItsEnd()
{
    Q1 mouse;
    const std::function<void()> interruptions[] = {[&] { mouse.sleep(), mouse.wake(); },
                                                   [&] { mouse.connectionLost(); }, [&] { mouse.setCorded(true); }};
    mouse.put(161, "2");
    for (const auto &interruption : interruptions) {
        mouse.answer(writing(161, {70}, 1));
        interruption();
        QCOMPARE(int{mouse.answer(writing(162, {80}, 2)).flags}, 3);
        QCOMPARE(int{mouse.flash().bytes[161]}, int{'2'});
    }
}

void tst_virtualmouse::receiverLooksForAMouse()
{
    const HandClock clock;
    const auto bus = VirtualBus::create(clock);
    std::string mouse, id;
    bus->add("q1", "4k", mouse);
    QVERIFY(bus->addReceiver("1k", "q1", id).empty());
    const auto ask = [&](std::uint8_t code, std::vector<std::uint8_t> data = {}) {
        Inbox inbox;
        bus->receive("virtual/receiver/" + id, FirmwarePacket{code, 1, 0, 0, std::move(data)}.build(), inbox);
        Report answer;
        return inbox.take(answer) ? int{answer.at(8)} : -1;
    };
    ask(5, {18});
    clock.pass(29);
    QCOMPARE(ask(6), 1);
    clock.pass(1);
    QCOMPARE(ask(6), 2);
    ask(5, {18});
    clock.pass(20);
    ask(5, {18}); // looks as long again
    clock.pass(20);
    QVERIFY(bus->startPairing(mouse, std::chrono::seconds(5)).empty());
    QCOMPARE(ask(6), 3);
    QVERIFY(bus->describe()[1].partner.empty()); // the receiver before
    // A mouse that looks doesn't hear its receiver, until it has looked in vain.
    QVERIFY(bus->startPairing(mouse, std::chrono::seconds(5)).empty());
    QCOMPARE(ask(3), 0);
    clock.pass(5);
    QCOMPARE(ask(3), 1);
}

/** Functions of the buttons 2 and following, a block of the flash, what the hand does and what comes of it. */
void tst_virtualmouse::buttons_data()
{
    const Rows<QByteArray, QString, QString, QByteArray> all("functions", "events", "presses", "block");
    const auto row = [&all](const char *name, const char *functions, const QString &events,
                            const char *presses = "2:0-50", const char *block = "") {
        all(name, QByteArray::fromHex(functions), events, presses, QByteArray::fromHex(block));
    };
    row("nothing", "000000", "");
    row("back", "010800", "0 +button 8, 50 -button 8");
    row("shorter than the debounce time", "010800", "10 +button 8, 14 -button 8", "2:0-3 2:10-14");
    row("next level", "020100", "0 +dpi 3200");
    row("level up", "020200", "0 +dpi 3200");
    row("level down", "020300", "0 +dpi 800");
    row("tilt right", "030200", "0 +tilt 1");
    row("fire", "041e02", "0 +button 1, 15 -button 1, 30 +button 1, 45 -button 1", "2:0-5");
    row("fire while held", "041401", "0 +button 1, 10 -button 1");
    row("fire until let go", "041400", "0 +button 1, 10 -button 1, 20 +button 1, 30 -button 1", "2:0-25");
    const char ctrlC[] = "040840010000 3240010000 3340010000 0940010000";
    row("Ctrl+C", "050000", "0 +modifier 1, 10 +key 6, 50 -key 6, 60 -modifier 1", "2:0-50", ctrlC);
    row("short Ctrl+C", "050000", "0 +modifier 1, 10 +key 6, 20 -key 6, 30 -modifier 1", "2:0-15", ctrlC);
    row("browser search", "050000", "0 +consumer 545, 300 -consumer 545", "2:0-300", "02 0c51010000 0d51010000");
    // two events, 70,000 ms between them, played twice; the second press comes too early
    row("macro", "060202", "0 +key 4, 70000 -key 4, 70000 +key 4, 140000 -key 4", "2:0-50 2:60-70",
        "02 22002e2200 2300000000");
    const char shiftA[] = "04 1040010000 22800c0000 2340010000 1140010000"; // 10, 100, 10 and 10 ms
    row("until let go", "0602fe", "0 +modifier 2, 10 +key 4, 110 -key 4, 110 -modifier 2", "2:0-50", shiftA);
    row("held on in time", "0602fe",
        "0 +modifier 2, 10 +key 4, 110 -key 4, 120 -modifier 2, 130 +modifier 2, 140 -modifier 2", "2:0-50 2:90-135",
        shiftA);
    row("without delays", "0602fe", "0 +button 2, 0 -button 2, 1 +button 2, 1 -button 2, 10 +button 2, 10 -button 2",
        "2:0-2 2:10-10", "02 1600000000 1700000000");
    const char tapA[] = "02 22c0030000 23c0030000"; // 30 ms each
    const QString twice = "0 +key 4, 30 -key 4, 60 +key 4, 90 -key 4";
    row("until pressed again", "0602ff", twice, "2:0-50 2:100-110", tapA);
    row("another button is none of its", "0602ff", "0 +button 1, " + twice + ", 95 -button 1",
        "2:0-50 0:0-95 2:100-110", tapA);
    row("until any button", "0602fd", twice + ", 100 +button 1, 110 -button 1", "2:0-50 0:100-110", tapA);
    row("until any button, its own", "0602fd", twice, "2:0-50 2:100-110", tapA);
    row("what no report holds", "060201", "20 -key 4", "2:0-50", "04 1840010000 0641010000 0208000000 2300000000");
    row("rates, up to the fastest of the link", "070000", "0 +rate 2000, 20 +rate 4000, 40 +rate 125",
        "2:0-10 2:20-30 2:40-50");
    row("all lights", "080000", "0 +light 0, 0 +indicator 0");
    row("indicator", "080100", "0 +indicator 0");
    row("next effect", "080400", "0 +light 1");
    row("profile", "090000", "0 +profile 1");
    row("profile in a macro", "060201 090000", "0 +key 4, 10 +profile 1, 30 -key 4", "2:0-5 3:10-20", tapA);
    row("DPI locks", "0a0700 0a0f00", "0 +dpi 400, 20 +dpi 800, 50 +dpi 800, 100 +dpi 1600", "2:0-50 3:20-100");
    row("wheel down", "0b0200", "0 +wheel -1");
    for (const char *unknown : {"7f0101", "010300", "010101", "020400", "030000", "040901", "041404", "050001",
                                "060101", "060200", "0602fb", "070100", "080200", "090100", "0a0701", "0b0300"})
        row(unknown, unknown, "", "2:0-50", tapA);
}

void tst_virtualmouse::buttons()
{
    QFETCH(QByteArray, functions);
    QFETCH(QByteArray, block);
    QFETCH(QString, presses);
    QFETCH(QString, events);
    Q1 mouse;
    mouse.put(54, QByteArray(1, QByteArray(QTest::currentDataTag()).startsWith("without") ? 0 : 4)); // ms
    mouse.put(96 + 2 * 3, functions);
    if (!block.isEmpty())
        mouse.put(functions.at(0) == 5 ? 256 + 2 * 32 : 768 + 2 * 384 + 31, block);
    QCOMPARE(text(ButtonPlayer(mouse, 4000).play(pressesIn(presses))), events);
}

QTEST_GUILESS_MAIN(tst_virtualmouse)
#include "tst_virtualmouse.moc"
