#include "portwire/control/ControlCommands.h"
#include "portwire/link/Link.h"
#include "portwire/link/Upgrades.h"
#include "portwire/virtual/VirtualBus.h"
#include "support/ReportCollector.h"
#include "support/TappedBus.h"
#include "tools/FirmwareFile.h"

#include <QSemaphore>
#include <QtTest>

using namespace portwire;

namespace {

/** Long enough for a busy machine. Nothing that succeeds waits for its end. */
constexpr std::chrono::milliseconds patience{10000};
constexpr int newVersion = 0x0234;

/** What the callback gets; a plain function, so there is one. */
struct Told
{
    inline static std::vector<int> percents;
    inline static std::vector<int> ends; ///< 1 success, 0 failure
    inline static QSemaphore ended{0};
    inline static std::function<void(int)> onPercent;

    static void callback(const std::uint8_t *message, int length)
    {
        if (length != 3 || message[0] != 7 || (message[1] != 1 && message[1] != 2))
            qFatal("no message of an upgrade");
        (message[1] == 1 ? percents : ends).push_back(message[2]);
        if (message[1] == 2)
            ended.release();
        else if (onPercent)
            onPercent(message[2]);
    }
    static void reset()
    {
        percents.clear();
        ends.clear();
        onPercent = {};
        ended.acquire(ended.available());
    }
    /** 1 success, 0 failure, -1 no end at all. */
    static int awaitEnd() { return ended.tryAcquire(1, 20000) ? ends.back() : -1; }
};

FirmwareDescription imageFor(const std::string &id)
{
    FirmwareDescription image{210, 18, 1, "HALVARION-Q1", newVersion, 5000};
    if (id.rfind("q2", 0) == 0)
        image.modelId = 2, image.name = "HALVARION-Q2";
    if (id.size() > 3 && id.back() == 'k')
        image.target = 211, image.name = std::string("HALVARION-R") + id[id.size() - 2];
    return image;
}

/** A Q1 on its cable, a Q2 on its cable, and receivers of three classes with a mouse each. */
struct Bench
{
    Bench()
    {
        std::string id;
        for (const auto &[model, link] : {std::pair("q1", "cable"), {"q2", "1k"}, {"q1", "2k"}, {"q1", "4k"}})
            bus->add(model, link, id);
        bus->setPlugged("q2", true);
        bus->setRecord("q1", std::vector<std::uint8_t>(10428, 3));
        Told::reset();
    }
    ~Bench()
    {
        upgrades.reset();
        tapped->letGo();
    }

    void start(const std::vector<std::uint8_t> &file, std::chrono::milliseconds wait = patience)
    {
        upgrades->start({file.data(), static_cast<std::uint32_t>(file.size())}, Told::callback, wait);
    }
    int upgrade(const std::string &id, std::chrono::milliseconds wait = patience)
    {
        start(firmwareFile(imageFor(id)), wait);
        return Told::awaitEnd();
    }
    DeviceDescription device(const std::string &id)
    {
        for (const DeviceDescription &each : bus->describe()) {
            if (each.id == id)
                return each;
        }
        return {};
    }
    /** All that an upgrade leaves alone. */
    QByteArray settings()
    {
        QByteArray all;
        for (const DeviceDescription &each : bus->describe()) {
            std::vector<std::uint8_t> bytes;
            bus->record(each.id, bytes);
            all.append(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
            all.append(each.partner.c_str()).append(static_cast<char>(each.receiverLightMode));
        }
        return all;
    }

    const std::shared_ptr<VirtualBus> bus = VirtualBus::create();
    const std::shared_ptr<TappedBus> tapped = std::make_shared<TappedBus>(bus);
    const std::shared_ptr<Channels> channels = std::make_shared<Channels>(tapped);
    std::optional<Upgrades> upgrades{std::in_place, channels};
};

} // namespace

class tst_firmware : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void upgradesADevice_data();
    void upgradesADevice();
    void survives_data();
    void survives();
    void keepsToOneDevice();
    void runsOneAtATime();
    void leavesTheLinkAlone();
    void endsInACallback();
};

void tst_firmware::upgradesADevice_data()
{
    QTest::addColumn<QString>("id");
    for (const char *id : {"q1", "q2", "q2-1k", "q1-2-2k", "q1-3-4k"})
        QTest::newRow(id) << id;
}

void tst_firmware::upgradesADevice()
{
    QFETCH(QString, id);
    const std::string name = id.toStdString();
    Bench bench;
    ControlCommands commands(bench.bus, bench.channels);
    const QByteArray settings = bench.settings();
    const auto nodes = bench.bus->enumerate().size();
    QVERIFY(commands.run({"firmware", id, "1.1f"}).output.contains("\"firmware\":\"1.1f\""));
    for (const char *mode : {"normal", "boot"}) {
        QVERIFY(commands.run({"firmware", id}).output.contains(QByteArray("\"mode\":\"") + mode));
        Told::reset();
        QCOMPARE(bench.upgrade(name), 1);
        QCOMPARE(int{bench.device(name).firmware}, newVersion);
        QVERIFY(!bench.device(name).isInBoot);
        QCOMPARE(bench.settings(), settings);
        QCOMPARE(bench.bus->enumerate().size(), nodes);
        QVERIFY(std::is_sorted(Told::percents.begin(), Told::percents.end()));
        QVERIFY(Told::percents.size() > 90 && Told::percents.front() == 0 && Told::percents.back() == 100);
        commands.run({"boot", id});
    }
}

void tst_firmware::survives_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<int>("where"); // percent, or code of the report before which it happens
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("reports"); // that are spoiled; none where the power is lost
    for (const char *id : {"q1", "q1-3-4k"}) {
        for (const int percent : {0, 1, 50, 99, 100})
            QTest::addRow("%s %d", id, percent) << id << percent << QString() << QString();
    }
    for (int code = 25; code <= 30; ++code) {
        for (const char *kind : {"drop", "stall", "garbage", "short"}) {
            for (const char *reports : {"answers", "requests"})
                QTest::addRow("%d %s %s", code, kind, reports) << "q1" << code << kind << reports;
        }
    }
}

/** A device without power is plugged again in time; of spoiled reports there are more than a request is repeated for.
 */
void tst_firmware::survives()
{
    QFETCH(QString, id);
    QFETCH(int, where);
    QFETCH(QString, kind);
    QFETCH(QString, reports);
    const std::string name = id.toStdString();
    Bench bench;
    const QByteArray settings = bench.settings();
    if (kind.isEmpty()) {
        bench.bus->setPowerLoss(name, where);
        bench.start(firmwareFile(imageFor(name)));
        QTRY_VERIFY(!bench.device(name).isPlugged);
        QVERIFY(bench.device(name).isInBoot);
        bench.bus->setPlugged(name, true);
    } else {
        bench.tapped->before(where, where == 28 ? 60 : 1, [&] {
            bench.bus->setFault(name, faultByName(kind.toStdString()), 4, 0, *reportClassByName(reports.toStdString()));
        });
        bench.start(firmwareFile(imageFor(name)));
    }
    QCOMPARE(Told::awaitEnd(), 1);
    QVERIFY(!bench.device(name).isInBoot);
    QCOMPARE(int{bench.device(name).firmware}, newVersion);
    QCOMPARE(bench.settings(), settings);
}

void tst_firmware::keepsToOneDevice()
{
    Bench bench;
    std::string twin;
    bench.bus->add("q1", "cable", twin);
    bench.bus->enterBoot(twin);
    QCOMPARE(bench.upgrade("q1"), 0); // one in each mode
    QCOMPARE(int{bench.device("q1").firmware}, 0x0112);
    bench.bus->setPlugged(twin, false);

    // The other one takes its place in the middle: nothing of the image reaches it.
    bench.tapped->before(28, 30, [&] {
        bench.bus->setPlugged("q1", false);
        bench.bus->setPlugged(twin, true);
    });
    QCOMPARE(bench.upgrade("q1", std::chrono::milliseconds(400)), 0);
    QVERIFY(bench.device(twin).isInBoot && bench.device("q1").isInBoot);
    QCOMPARE(bench.upgrade(twin), 1);
    QCOMPARE(int{bench.device("q1").firmware}, 0x0112);
    QCOMPARE(int{bench.device(twin).firmware}, newVersion);

    bench.bus->setPlugged(twin, false);
    QCOMPARE(bench.upgrade("q1"), 0); // only mice on receivers are left
    bench.bus->setPlugged("q1", true);
    QCOMPARE(bench.upgrade("q1"), 1);
}

void tst_firmware::runsOneAtATime()
{
    Bench bench;
    const auto receiver = firmwareFile(imageFor("q1-3-4k"));
    Told::onPercent = [&](int percent) {
        if (percent == 20)
            bench.start(receiver);
        if (percent == 40 && Told::ends != std::vector<int>{0})
            qFatal("the second start isn't refused while the first one goes on");
    };
    bench.start(firmwareFile(imageFor("q1")));
    QVERIFY(Told::ended.tryAcquire(2, 20000));
    QCOMPARE(Told::ends, (std::vector<int>{0, 1}));
    QCOMPARE(int{bench.device("q1").firmware}, newVersion);
    Told::onPercent = {};
    QCOMPARE(bench.upgrade("q1-3-4k"), 1);
    bench.start({}); // nothing at all
    QCOMPARE(Told::awaitEnd(), 0);
}

/** What the program asks of a mouse that is in boot mode is asked when it is back. */
void tst_firmware::leavesTheLinkAlone()
{
    Bench bench;
    const std::string path = bench.device("q1").path;
    const auto link = Link::start(bench.channels, path, ReportCollector<1>::callback, std::make_shared<Work>(path));
    bench.tapped->before(28, 30, [&] { link->add({Job::Kind::Read, {ReportCode::MouseVersion}}); });
    QCOMPARE(bench.upgrade("q1"), 1);
    const auto report = ReportCollector<1>::await(18);
    link->end();
    QVERIFY(report);
    QCOMPARE(report->payload, (std::vector<std::uint8_t>{newVersion & 0xFF, newVersion >> 8}));
}

/** It may stand in a callback that is waiting for whoever ends it. */
void tst_firmware::endsInACallback()
{
    Bench bench;
    QSemaphore isHalf;
    QSemaphore mayGoOn;
    Told::onPercent = [&](int percent) {
        if (percent == 50) {
            isHalf.release();
            mayGoOn.acquire();
        }
    };
    bench.start(firmwareFile(imageFor("q1")));
    QVERIFY(isHalf.tryAcquire(1, 20000));
    bench.upgrades->end();
    mayGoOn.release();
}

QTEST_GUILESS_MAIN(tst_firmware)
#include "tst_firmware.moc"
