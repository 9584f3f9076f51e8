#include "portwire/control/ControlClient.h"
#include "portwire/control/ControlJson.h"
#include "portwire/control/ControlServer.h"
#include "portwire/control/StateFolder.h"
#include "portwire/portwire.h"
#include "portwire/virtual/SceneKeeper.h"
#include "portwire/virtual/VirtualBus.h"
#include "support/Files.h"
#include "support/Rows.h"
#include "support/TestHome.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocalSocket>
#include <QProcess>

using namespace portwire;

namespace {

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

/** The folder in which the virtual bus is kept, the socket through which a hand acts on it, and its firmware. */
class VirtualBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sceneOutlastsARestart();
    void damagedStateIsPutAside();
    void commandsOfTheSocket();
    void hostileClients();
    void controlProgram();
    void batchIsStagedUntilItsEnd();
    void receiverLooksForAMouse();
    void buttons_data();
    void buttons();
};

void VirtualBusTest::sceneOutlastsARestart()
{
    QTemporaryDir folder;
    const auto bus = VirtualBus::create();
    std::vector<std::uint8_t> before, after;
    {
        SceneKeeper keeper(bus, folder.path());
        std::string id;
        QCOMPARE(bus->add("q1", "cable", id), std::string());
        QCOMPARE(id, std::string("q1-2"));
        QCOMPARE(bus->remove("q2"), std::string());
        bus->setPlugged("q1-4k", false);
        bus->changeProfile("q1", 3);
        bus->changeLevel("q1", 4);
        bus->record("q1", before);
    }
    const auto again = VirtualBus::create();
    SceneKeeper keeper(again, folder.path());
    const auto devices = again->describe();
    QCOMPARE(devices.size(), std::size_t{3});
    QVERIFY(devices[0].id == "q1" && devices[0].profile == 3 && devices[0].dpi == 6400);
    QVERIFY(devices[1].isCorded && !devices[2].isPlugged);
    again->record("q1", after);
    QVERIFY(after == before);
}

void VirtualBusTest::damagedStateIsPutAside()
{
    QTemporaryDir folder;
    const auto load = [](const QString &path, const char *warning = nullptr) {
        if (warning)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
        const auto bus = VirtualBus::create();
        SceneKeeper keeper(bus, path);
        return bus->describe();
    };
    const auto write = [&](const char *name, int at, const QByteArray &content) {
        const QString path = folder.filePath(name);
        Files::put(path, at == 0 ? content : Files::content(path).replace(at, content.size(), content));
    };
    load(folder.path());
    write("flash-q1.bin", 20000, "\x55");
    QCOMPARE(load(folder.path(), "flash-q1.bin can't be used").at(0).dpi, 1600);
    QVERIFY(QFile::exists(folder.filePath("flash-q1.bin.damaged")));
    write("scene.json", 0, "{\"mice\": 7}");
    QCOMPARE(load(folder.path(), "scene.json can't be used").size(), std::size_t{4});
    // Nothing in a file leads out of the folder.
    write("scene.json", 0,
          R"({"mice": [{"id": "../../q1", "model": "q1"}, {"id": "ok", "model": "q1"}, 5], "receivers": []})");
    QCOMPARE(load(folder.path()).size(), std::size_t{1});
    QCOMPARE(load(folder.filePath("scene.json") + "/portwire", "can't write .*/portwire/").size(), std::size_t{4});
}

void VirtualBusTest::commandsOfTheSocket()
{
    int count = 0;
    UsbFinderC_FindHidDevicesByDefaultDeviceId("", "", &count); // the library opens its bus, and with it the socket
    const ControlClient control;
    QCOMPARE(control.call({"devices"}).json().array().size(), 4);
    const QString wrongOnes = "|nothing|record q9|dpi q1 8|dpi q1 x|rate q1 3|profile q1 4|battery q1 101|"
                              "battery q1 10 full|add q3 cable|add q1 8k|fault q1 rain|fault q1 drop -1|"
                              "fault q1 powerloss|fault q1 powerloss 101|boot q9|firmware q1 256.0|firmware q1 1|plug|"
                              "press q1 16|press q1 -1|play q1 2:10-5|play q1 2:0-50 2:40-60|latency q1 1001|"
                              "flash q1 AAAA";
    for (const QString &wrong : wrongOnes.split('|'))
        QVERIFY2(!control.call(wrong.split(' ', Qt::SkipEmptyParts)).error.isEmpty(), qPrintable(wrong));
}

void VirtualBusTest::hostileClients()
{
    // A client that sends without end is dropped, before it takes memory without end.
    QLocalSocket endless;
    endless.connectToServer(portwire::controlSocket());
    QVERIFY(endless.waitForConnected());
    endless.write(QByteArray(1 << 16, 'x'));
    QVERIFY(endless.state() == QLocalSocket::UnconnectedState || endless.waitForDisconnected());

    // Another process's socket is left alone, one that was left behind is replaced.
    const auto bus = VirtualBus::create();
    const auto channels = std::make_shared<Channels>(bus);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("another process serves"));
    {
        ControlServer second(bus, channels, portwire::controlSocket());
    }
    QVERIFY(ControlClient().call({"stats"}).isGood());
#ifndef Q_OS_WIN // a pipe is no file: there is nothing that could be left behind, and any name will do
    QFileInfo socket(portwire::controlSocket());
    QVERIFY(!(socket.permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther)));
    QTemporaryDir folder;
    const QString stale = folder.filePath("control.sock");
    QVERIFY(QFile(stale).open(QIODevice::WriteOnly));
    ControlServer third(bus, channels, stale);
    QLocalSocket probe;
    probe.connectToServer(stale);
    QVERIFY(probe.waitForConnected(1000));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("can't listen on"));
    ControlServer fourth(bus, channels, stale + "/none");
#endif
}

void VirtualBusTest::controlProgram()
{
    // Words and the status; how output and complaint begin, of which nothing must come where it is empty.
    const std::tuple<const char *, int, const char *, const char *> runs[] = {
        {"dpi q1 2", 0, "{", ""},
        {"dpi q1 8", 1, "", "portwirectl: "},
        {"play q1 0:60-90 1:0-50", 0, R"({"action":"press","at":0,"code":2,"ms":0,"type":"button"})", ""},
        {"flash q1 /dev/null", 1, "", "portwirectl: /dev/null doesn't have"},
        {"--help", 0, "usage: ", ""},
        {"", 1, "", "usage: "}};
    for (const auto &[words, status, output, errors] : runs) {
        QProcess program;
        program.start(QCoreApplication::applicationDirPath() + "/portwirectl",
                      QString(words).split(' ', Qt::SkipEmptyParts));
        QVERIFY2(program.waitForFinished(), words);
        QCOMPARE(program.exitCode(), status);
        const QByteArray told = program.readAllStandardOutput(), complaint = program.readAllStandardError();
        QVERIFY2(told.startsWith(output) && told.isEmpty() == (*output == 0), told.constData());
        QVERIFY2(complaint.startsWith(errors) && complaint.isEmpty() == (*errors == 0), complaint.constData());
    }
}

void VirtualBusTest::batchIsStagedUntilItsEnd()
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

void VirtualBusTest::receiverLooksForAMouse()
{
    std::chrono::steady_clock::time_point now; // stands until it is told
    const auto bus = VirtualBus::create([&now] { return now; });
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
    now += std::chrono::seconds(29);
    QCOMPARE(ask(6), 1);
    now += std::chrono::seconds(1);
    QCOMPARE(ask(6), 2);
    ask(5, {18});
    now += std::chrono::seconds(20);
    ask(5, {18}); // looks as long again
    now += std::chrono::seconds(20);
    QVERIFY(bus->startPairing(mouse, std::chrono::seconds(5)).empty());
    QCOMPARE(ask(6), 3);
    QVERIFY(bus->describe()[1].partner.empty()); // the receiver before
    // A mouse that looks doesn't hear its receiver, until it has looked in vain.
    QVERIFY(bus->startPairing(mouse, std::chrono::seconds(5)).empty());
    QCOMPARE(ask(3), 0);
    now += std::chrono::seconds(5);
    QCOMPARE(ask(3), 1);
}

/** Functions of the buttons 2 and following, a block of the flash, what the hand does and what comes of it. */
void VirtualBusTest::buttons_data()
{
    const Rows<QByteArray, QString, QString, QByteArray> all("functions", "events", "presses", "block");
    const auto row = [&all](const char *name, const char *functions, const QString &events,
                            const char *presses = "2:0-50", const char *block = "") {
        all(name, QByteArray::fromHex(functions), events, presses, QByteArray::fromHex(block));
    };
    row("nothing", "000000", "");
    row("shorter than the debounce time", "010800", "10 +button 8, 14 -button 8", "2:0-3 2:10-14");
    row("next level", "020100", "0 +dpi 3200");
    row("level up", "020200", "0 +dpi 3200");
    row("level down", "020300", "0 +dpi 800");
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
    for (const char *unknown : {"7f0101", "010300", "010101", "020400", "030000", "040901", "041404", "050001",
                                "060101", "060200", "0602fb", "070100", "080200", "090100", "0a0701", "0b0300"})
        row(unknown, unknown, "", "2:0-50", tapA);
}

void VirtualBusTest::buttons()
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

HALVARION_TEST_MAIN(VirtualBusTest)
#include "tst_virtualbus.moc"
