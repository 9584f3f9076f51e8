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
        settingsBefore = settings();
        percents.clear();
        ends.clear();
        onPercent = {};
        ended.acquire(ended.available());
    }
    ~Bench()
    {
        upgrades.reset();
        tapped->letGo();
    }

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
    void start(const std::vector<std::uint8_t> &file, std::chrono::milliseconds wait = patience)
    {
        upgrades->start({file.data(), static_cast<std::uint32_t>(file.size())}, callback, wait);
    }
    int upgrade(const std::string &id, std::chrono::milliseconds wait = patience)
    {
        start(firmwareFile(imageFor(id)), wait);
        return awaitEnd();
    }
    /** 1 success, 0 failure, -1 no end at all. */
    static int awaitEnd() { return ended.tryAcquire(1, 20000) ? ends.back() : -1; }
    DeviceDescription device(const std::string &id)
    {
        for (const DeviceDescription &each : bus->describe()) {
            if (each.id == id)
                return each;
        }
        return {};
    }
    /** It works with the new firmware, and an upgrade has left all else alone. */
    bool isUpgraded(const std::string &id)
    {
        return !device(id).isInBoot && device(id).firmware == newVersion && settings() == settingsBefore;
    }
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
    QByteArray settingsBefore;

    // What the callback got. It is a plain function, so there is one, and may run when a bench has gone.
    inline static std::vector<int> percents;
    inline static std::vector<int> ends; ///< 1 success, 0 failure
    inline static QSemaphore ended{0};
    inline static std::function<void(int)> onPercent;
};

} // namespace

class tst_firmware : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void survivesALossOfPower();
    void survivesSpoiledReports();
    void keepsToOneDevice();
    void runsOneAtATime();
    void leavesTheLinkAlone();
    void endsInACallback();
};

/** Plugged again in time, a device gets the whole image. */
void tst_firmware::survivesALossOfPower()
{
    for (const std::string id : {"q1", "q1-3-4k"}) {
        for (const int percent : {0, 1, 50, 99, 100}) {
            Bench bench;
            bench.bus->setPowerLoss(id, percent);
            bench.start(firmwareFile(imageFor(id)));
            QTRY_VERIFY(!bench.device(id).isPlugged);
            QVERIFY(bench.device(id).isInBoot);
            bench.bus->setPlugged(id, true);
            QVERIFY2(Bench::awaitEnd() == 1 && bench.isUpgraded(id), (id + ' ' + std::to_string(percent)).c_str());
        }
    }
}

/** More reports are spoiled than a request is repeated for, from one of each code on. */
void tst_firmware::survivesSpoiledReports()
{
    for (int code = 25; code <= 30; ++code) {
        for (const std::string kind : {"drop", "stall", "garbage", "short"}) {
            for (const std::string reports : {"answers", "requests"}) {
                Bench bench;
                bench.tapped->before(code, code == 28 ? 60 : 1, [&] {
                    bench.bus->setFault("q1", faultByName(kind), 4, 0, *reportClassByName(reports));
                });
                const std::string name = std::to_string(code) + ' ' + kind + ' ' + reports;
                QVERIFY2(bench.upgrade("q1") == 1 && bench.isUpgraded("q1"), name.c_str());
            }
        }
    }
}

void tst_firmware::keepsToOneDevice()
{
    Bench bench;
    std::string twin;
    bench.bus->add("q1", "cable", twin);
    bench.bus->enterBoot(twin);
    QCOMPARE(bench.upgrade("q1"), 0); // one in each mode
    bench.bus->setPlugged(twin, false);

    // The other one takes its place in the middle: nothing of the image reaches it.
    bench.tapped->before(28, 30, [&] {
        bench.bus->setPlugged("q1", false);
        bench.bus->setPlugged(twin, true);
    });
    QCOMPARE(bench.upgrade("q1", std::chrono::milliseconds(400)), 0);
    QVERIFY(bench.device(twin).isInBoot && bench.device("q1").isInBoot);
    QCOMPARE(bench.upgrade(twin), 1);
    QVERIFY(bench.device("q1").firmware == 0x0112 && bench.device(twin).firmware == newVersion);

    bench.bus->setPlugged(twin, false);
    QCOMPARE(bench.upgrade("q1"), 0); // only mice on receivers are left
    bench.bus->setPlugged("q1", true);
    QCOMPARE(bench.upgrade("q1"), 1);
}

void tst_firmware::runsOneAtATime()
{
    Bench bench;
    const auto receiver = firmwareFile(imageFor("q1-3-4k"));
    Bench::onPercent = [&](int percent) {
        if (percent == 20)
            bench.start(receiver);
        if (percent == 40 && Bench::ends != std::vector<int>{0})
            qFatal("the second start isn't refused while the first one goes on");
    };
    bench.start(firmwareFile(imageFor("q1")));
    QVERIFY(Bench::ended.tryAcquire(2, 20000));
    QCOMPARE(Bench::ends, (std::vector<int>{0, 1}));
    QCOMPARE(int{bench.device("q1").firmware}, newVersion);
    Bench::onPercent = {};
    QCOMPARE(bench.upgrade("q1-3-4k"), 1);
    bench.start({}); // nothing at all
    QCOMPARE(Bench::awaitEnd(), 0);
}

/** What the program asks of a mouse that is in boot mode is asked when it is back. */
void tst_firmware::leavesTheLinkAlone()
{
    Bench bench;
    const std::string path = bench.device("q1").path;
    const auto link = Link::start(bench.channels, path, ReportCollector<1>::callback, std::make_shared<Work>(path));
    bench.tapped->before(28, 30, [&] { link->add({Job::Kind::Read, {ReportCode::MouseVersion}}); });
    QCOMPARE(bench.upgrade("q1"), 1);
    QVERIFY(std::is_sorted(Bench::percents.begin(), Bench::percents.end()));
    QVERIFY(Bench::percents.size() > 90 && Bench::percents.front() == 0 && Bench::percents.back() == 100);
    const auto report = ReportCollector<1>::await(18);
    link->end();
    QVERIFY(report && report->payload == (std::vector<std::uint8_t>{newVersion & 0xFF, newVersion >> 8}));
}

/** It may stand in a callback that is waiting for whoever ends it. */
void tst_firmware::endsInACallback()
{
    Bench bench;
    static QSemaphore isHalf; // the thread of the callback may still be on its way out of one when all else is over
    static QSemaphore mayGoOn;
    Bench::onPercent = [](int percent) {
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
