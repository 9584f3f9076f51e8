#include "portwire/ChangeNotice.h"
#include "portwire/control/ControlClient.h"
#include "portwire/control/ControlServer.h"
#include "portwire/control/StateFolder.h"
#include "portwire/link/Link.h"
#include "portwire/portwire.h"
#include "portwire/virtual/SceneKeeper.h"
#include "portwire/virtual/VirtualBus.h"
#include "support/ReportCollector.h"
#include "support/TappedBus.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocalSocket>
#include <QProcess>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QtTest>

#include <cstring>
#include <thread>

using namespace portwire;

namespace {

const char exitWhileBlocked[] = "--exit-while-a-callback-is-blocked";

/** Long enough for a machine that is busy with something else; nothing here takes a tenth of it. */
constexpr std::chrono::seconds patience{10};

using First = ReportCollector<1>;
using Second = ReportCollector<2>;

/** A Q1 on a 4K receiver, and a link to it. */
struct Bench
{
    Bench()
    {
        bus->add("q1", "4k", mouse);
        startLink(First::callback);
    }
    ~Bench()
    {
        link->end();
        tapped->letGo();
    }

    void startLink(PortwireReportCallback callback)
    {
        link = Link::start(channels, path, callback, std::make_shared<Work>(path));
    }

    void readAll() { link->add({Job::Kind::WholeRecord, {ReportCode::ReadFlash}}); }

    /** The record as the callback got it; the link knows the mouse afterwards. */
    std::optional<FlashDataMap> awaitRecord()
    {
        const auto report = First::await(8, 0, imageSize);
        if (!report)
            return std::nullopt;
        DeviceImage image;
        std::copy(report->payload.begin(), report->payload.end(), image.begin());
        FlashDataMap read{};
        decodeImage(image, read);
        link->work()->recordTaken();
        return read;
    }

    /** Turns the mouse to a profile by hand and reads it. */
    void enter(int profile)
    {
        bus->changeProfile(mouse, profile);
        First::reset();
        readAll();
        record = awaitRecord().value();
    }

    /** From now on the mouse answers nothing but its profile, as if it slept; what it does by itself is told. */
    void holdUp()
    {
        tapped->replaceAnswers([](const TappedBus::Packet &request) -> TappedBus::Replacement {
            const bool isAnswered = request.code == 1 || request.code == 3 || request.code == 14;
            return isAnswered ? std::nullopt : TappedBus::Replacement{{request.offline()}};
        });
    }

    /** Waits until all is done that was asked for until now. */
    bool awaitDone()
    {
        QSemaphore asked;
        tapped->before(18, 1, [&] { asked.release(); });
        link->add({Job::Kind::Read, {ReportCode::MouseVersion}});
        return asked.tryAcquire(1, 10000);
    }

    void change(const FlashDataMap &to)
    {
        link->update(to, record);
        record = to;
    }

    FlashDataMap flash()
    {
        std::vector<std::uint8_t> bytes;
        bus->record(mouse, bytes);
        FlashDataMap held{};
        std::memcpy(&held, bytes.data(), sizeof held);
        return held;
    }

    bool awaitInFlash(const FlashDataMap &wanted)
    {
        const auto end = std::chrono::steady_clock::now() + patience;
        while (std::chrono::steady_clock::now() < end) {
            const FlashDataMap held = flash();
            if (std::memcmp(&held, &wanted, sizeof held) == 0)
                return true;
            std::this_thread::yield();
        }
        return false;
    }

    std::string mouse;
    const std::string path = "virtual/receiver/q1-4k";
    const std::shared_ptr<VirtualBus> bus = VirtualBus::create();
    const std::shared_ptr<TappedBus> tapped = std::make_shared<TappedBus>(bus);
    const std::shared_ptr<Channels> channels = std::make_shared<Channels>(tapped);
    std::shared_ptr<Link> link;
    FlashDataMap record{};
};

/** A record of which every write report that there is must carry something. */
FlashDataMap changedEverywhere(FlashDataMap record)
{
    record.LightRed = 99;
    for (std::size_t slot = 0; slot < 16; ++slot) {
        record.MacroSlots[slot].NameLength = 30;
        std::memset(record.MacroSlots[slot].Name, 'a' + static_cast<int>(slot), 30);
        record.MacroSlots[slot].EventCount = 70;
        for (int i = 0; i < 70; ++i)
            record.MacroSlots[slot].Events[i] = {0, 1, static_cast<std::uint16_t>(4 + i),
                                                 70000u + static_cast<std::uint32_t>(slot)};
    }
    return record;
}

bool isSame(const FlashDataMap &a, const FlashDataMap &b) { return std::memcmp(&a, &b, sizeof a) == 0; }

int changeCalls = 0;
QThread *changeThread = nullptr;
void countChange()
{
    ++changeCalls;
    changeThread = QThread::currentThread();
}
void startAnother() { StartUsbChanged(countChange, 20); }

int changesInside = 0;
int mostChangesInside = 0;
/** As a callback that shows a prompt: the event loop runs inside it, and the user pulls the next receiver meanwhile. */
void promptOnChange()
{
    mostChangesInside = std::max(mostChangesInside, ++changesInside);
    if (++changeCalls == 2) {
        ControlClient().call({"unplug", "q1-4k"});
        QTest::qWait(60);
    }
    --changesInside;
}

} // namespace

Q_DECLARE_METATYPE(portwire::Job)

class tst_portwire_link : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void reportsOfEachRead();
    void faultsAreRepaired_data();
    void faultsAreRepaired();
    void onlyWhatMayComeUnaskedPasses();
    void answersThatAreTooShort_data();
    void answersThatAreTooShort();
    void refusedBytesAreGivenUpAlone();
    void lateAnswerIsNotTaken();
    void deadDeviceGivesUpSoon();
    void manyChangesCostFewReports();
    void batchTakesEffectAsAWhole();
    void writesComeBeforeReading();
    void undeliveredWritesOutliveALinkToTheSameDevice();
    void changeInMidReadStartsOver();
    void everythingHasAnEnd_data();
    void everythingHasAnEnd();
    void writesKeepToTheirProfile_data();
    void writesKeepToTheirProfile();
    void whatIsOfTheProfileBeforeCountsNoMore();
    void whatOutlivesALink_data();
    void whatOutlivesALink();
    void endedLinkDoesNotListen();
    void floodKeepsNobodyWaiting();
    void unpluggedInMidRead();
    void endedLinkCallsNoMore();
    void replacedCallbackTakesEffectAtOnce();
    void oneFunctionIsNeverEnteredTwice();
    void callbackMayStartAndExit();
    void processEndsWhileACallbackIsBlocked();
    void finders();
    void busChangesReachTheGuiThread();
    void busChangeInsideTheCallbackWaitsForIt();
    void sceneOutlastsARestart();
    void damagedStateIsPutAside();
    void controlSocket();
    void controlProgram_data();
    void controlProgram();
};

void tst_portwire_link::init()
{
    First::reset();
    Second::reset();
}

void tst_portwire_link::reportsOfEachRead()
{
    struct
    {
        void (*ask)();
        int code, selector;
        std::size_t length;
    } const reads[] = {
        {UsbServer_ReadAllFlashData, 8, 0, 6912},  {UsbServer_ReadReportRate, 8, 0, 1},
        {UsbServer_ReadCurrentDPI, 8, 4, 1},       {UsbServer_ReadDPILed, 8, 76, 8},
        {UsbServer_ReadLedBar, 8, 160, 9},         {UsbServer_ReadBatteryLevel, 4, 0, 4},
        {UsbServer_ReadConfig, 14, 0, 1},          {UsbServer_ReadVersion, 18, 0, 2},
        {UsbServer_ReadDonglePairStatus, 6, 0, 1}, {UsbServer_SetClearSetting, 9, 0, 0},
    };
    UsbServerC_Start("virtual/receiver/q1-4k", "virtual/receiver/q1-4k", First::callback);
    for (const auto &read : reads) {
        First::reset();
        read.ask();
        const auto report = First::await(read.code, read.selector, read.length);
        QVERIFY2(report, qPrintable(QString::number(read.code)));
        QCOMPARE(report->payload.size(), read.length);
    }
    First::reset();
    UsbServer_SetCurrentConfig(3);
    const auto status = First::await(10);
    QVERIFY(status);
    std::uint8_t changed[7];
    GetDeviceStatusChanged(status->payload.data(), changed);
    QCOMPARE(int{changed[2]}, 1);
    UsbServer_EnterDonglePairOnlyCid(18);
    const auto pairing = First::await(6);
    QVERIFY(pairing);
    QCOMPARE(int{pairing->payload.at(0)}, 1); // it goes on: no mouse looks for a receiver
    UsbServer_Exit();
}

void tst_portwire_link::faultsAreRepaired_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("answers");
    const std::pair<const char *, FaultKind> kinds[] = {{"drop", FaultKind::Drop},
                                                        {"stall", FaultKind::Stall},
                                                        {"garbage", FaultKind::Garbage},
                                                        {"short", FaultKind::Short}};
    for (const auto &[name, kind] : kinds) {
        for (const int answers : {1, 2, 7})
            QTest::addRow("%s %d", name, answers) << static_cast<int>(kind) << answers;
    }
}

void tst_portwire_link::faultsAreRepaired()
{
    QFETCH(int, kind);
    QFETCH(int, answers);
    Bench bench;
    bench.tapped->before(8, 50, [&] { bench.bus->setFault("q1", static_cast<FaultKind>(kind), answers); });
    bench.readAll();
    const auto read = bench.awaitRecord();
    QVERIFY(read);
    QVERIFY(isSame(*read, bench.flash()));
    bench.record = *read;

    bench.tapped->before(7, 20, [&] { bench.bus->setFault("q1", static_cast<FaultKind>(kind), answers); });
    const FlashDataMap wanted = changedEverywhere(*read);
    bench.change(wanted);
    QVERIFY(bench.awaitInFlash(wanted));
    QVERIFY(bench.channels->statistics().repeated > 0);
    if (static_cast<FaultKind>(kind) == FaultKind::Garbage)
        QVERIFY(bench.channels->statistics().dropped >= static_cast<unsigned>(answers));
}

void tst_portwire_link::onlyWhatMayComeUnaskedPasses()
{
    Bench bench;
    // Nobody ordered a reset, asked for a profile or a level; and an answer counts only under its request's number.
    bench.tapped->replaceAnswers([](const TappedBus::Packet &request) -> TappedBus::Replacement {
        if (request.code != 4)
            return {};
        return {{{9}, {14, 0, 0, 0, {2}}, {8, 0, 4, 0, {5}}, {9, 77}, {6, 0, 0, 0, {1}}, request.answer({7, 0, 0, 0})}};
    });
    const auto answer = bench.channels->ask(bench.path, {ReportCode::Battery});
    QVERIFY(answer);
    QCOMPARE(int{answer->payload[0]}, 7);
    QVERIFY(First::await(6));
    QCOMPARE(First::count(), std::size_t{1});
    QCOMPARE(bench.channels->statistics().dropped.load(), std::uint64_t{4});
}

void tst_portwire_link::answersThatAreTooShort_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("times");
    QTest::addColumn<int>("length"); ///< of the report that comes in the end
    for (const auto &[code, length] : {std::pair(4, 4), {6, 1}, {14, 1}, {18, 2}})
        QTest::addRow("%d", code) << code << 1 << length;
    QTest::newRow("14 always") << 14 << INT_MAX << 0;
}

void tst_portwire_link::answersThatAreTooShort()
{
    QFETCH(int, code);
    QFETCH(int, times);
    QFETCH(int, length);
    if (length == 0)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("never answers request 14"));
    std::atomic<int> left{times};
    Bench bench;
    bench.tapped->replaceAnswers([&](const TappedBus::Packet &request) -> TappedBus::Replacement {
        if (request.code != code || left-- <= 0)
            return {};
        return {{request.answer()}};
    });
    bench.link->add({Job::Kind::Read, {static_cast<ReportCode>(code)}, code == 6});
    const auto report = First::await(code);
    QVERIFY(report);
    QCOMPARE(static_cast<int>(report->payload.size()), length);
}

void tst_portwire_link::refusedBytesAreGivenUpAlone()
{
    std::atomic<int> refusals{0};
    Bench bench;
    bench.readAll();
    const FlashDataMap before = bench.awaitRecord().value();
    bench.record = before;
    bench.tapped->replaceAnswers([&](const TappedBus::Packet &request) -> TappedBus::Replacement {
        if (request.code != 7 || request.address != 161)
            return {};
        ++refusals;
        return {{request.refusal()}};
    });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("refuses a write at address 161"));
    FlashDataMap wanted = changedEverywhere(before);
    bench.change(wanted);
    wanted.LightRed = before.LightRed;
    QVERIFY(bench.awaitInFlash(wanted));
    bench.record.Lod = 3 - bench.record.Lod;
    bench.change(bench.record);
    wanted.Lod = bench.record.Lod;
    QVERIFY(bench.awaitInFlash(wanted));
    QCOMPARE(refusals.load(), 1);
}

void tst_portwire_link::lateAnswerIsNotTaken()
{
    Bench bench;
    bench.readAll();
    QVERIFY(bench.awaitRecord()); // the link has put its own questions
    // The first answer says "online". It is held up and arrives in front of the second, when that is no longer true.
    bench.bus->setFault("q1-4k", FaultKind::Stall, 1);
    bench.tapped->before(3, 2, [&] { bench.bus->setAwake("q1", false); });
    const auto answer = bench.channels->ask(bench.path, {ReportCode::Online});
    QVERIFY(answer);
    QCOMPARE(int{answer->payload[0]}, 0);
    QCOMPARE(bench.channels->statistics().dropped.load(), std::uint64_t{1});
}

void tst_portwire_link::deadDeviceGivesUpSoon()
{
    Bench bench;
    bench.bus->setFault("q1-4k", FaultKind::Drop, 1000);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 10; ++i)
        QVERIFY(!bench.channels->ask(bench.path, {ReportCode::DeviceInfo}));
    // Some 30 ms for the first and 2 ms for the others, with a margin for a busy machine: a scan asks this often, and
    // whoever scans must not be kept waiting.
    QVERIFY2(timer.elapsed() >= 25 + 9 && timer.elapsed() < 150, qPrintable(QString::number(timer.elapsed())));
    bench.bus->setFault("q1-4k", FaultKind::Drop, 0);
    QVERIFY(bench.channels->ask(bench.path, {ReportCode::DeviceInfo}));
    // It has shown itself: the next lost answer is repeated again.
    bench.bus->setFault("q1-4k", FaultKind::Drop, 2);
    QVERIFY(bench.channels->ask(bench.path, {ReportCode::Online}));
    // What isn't asked by a scan always gets its time.
    bench.bus->setFault("q1-4k", FaultKind::Drop, 1000);
    timer.start();
    for (int i = 0; i < 2; ++i)
        QVERIFY(!bench.channels->ask(bench.path, {ReportCode::LongRange}));
    QVERIFY2(timer.elapsed() >= 50, qPrintable(QString::number(timer.elapsed())));
    timer.start();
    QVERIFY(!bench.channels->ask("a", {ReportCode::Online}));
    QVERIFY(timer.elapsed() < 25);
}

void tst_portwire_link::manyChangesCostFewReports()
{
    Bench bench;
    bench.readAll();
    FlashDataMap record = bench.awaitRecord().value();
    const auto before = bench.channels->statistics().written.load();
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < 2000; ++i) {
        record.LightRed = static_cast<std::uint8_t>(i * 7);
        bench.change(record);
    }
    QVERIFY(bench.awaitInFlash(record));
    const auto written = bench.channels->statistics().written.load() - before;
    const qint64 most = 8 + time.elapsed() / 64; // after a few at once 64 ms pass between two
    QVERIFY2(qint64(written) <= most, qPrintable(QString::number(written)));
}

void tst_portwire_link::batchTakesEffectAsAWhole()
{
    Bench bench;
    bench.readAll();
    bench.record = bench.awaitRecord().value();
    const FlashDataMap before = bench.flash();
    const FlashDataMap wanted = changedEverywhere(bench.record);
    QSemaphore asleep;
    bench.tapped->before(7, 40, [&] {
        bench.bus->setAwake("q1", false);
        asleep.release();
    });
    bench.change(wanted);
    QVERIFY(asleep.tryAcquire(1, 10000));
    QVERIFY(isSame(bench.flash(), before));
    bench.bus->setAwake("q1", true);
    QVERIFY(bench.awaitInFlash(wanted));
}

void tst_portwire_link::writesComeBeforeReading()
{
    std::atomic<bool> isReadTooEarly{false};
    Bench bench;
    bench.readAll();
    FlashDataMap wanted = bench.awaitRecord().value();
    bench.record = wanted;
    First::reset();
    bench.bus->setAwake("q1", false);
    wanted.LightGreen = 12;
    bench.change(wanted);
    bench.readAll();
    QVERIFY(!bench.channels->ask(bench.path, {ReportCode::Battery}));
    QCOMPARE(First::count(), std::size_t{0});
    bench.tapped->replaceAnswers([&](const TappedBus::Packet &request) -> TappedBus::Replacement {
        const bool isOfRecord = request.code == 8 && request.data[0] > 1; // one byte is read to see whether it sleeps
        isReadTooEarly = isReadTooEarly || (isOfRecord && bench.flash().LightGreen != 12);
        return {};
    });
    bench.bus->setAwake("q1", true);
    const auto read = bench.awaitRecord();
    QVERIFY(read);
    QVERIFY(isSame(*read, wanted));
    QVERIFY(!isReadTooEarly);
    QVERIFY2(First::await(10), "a mouse that wakes up announces itself");
}

void tst_portwire_link::undeliveredWritesOutliveALinkToTheSameDevice()
{
    const char path[] = "virtual/receiver/q2-1k";
    ControlClient control;
    UsbServerC_Start(path, path, First::callback);
    UsbServer_ReadAllFlashData();
    const auto report = First::await(8, 0, imageSize);
    QVERIFY(report);
    FlashDataMap record{};
    ProtocolDataParser(report->payload.data(), &record);
    const auto lightRed = [&] { return control.call({"record", "q2"}).output.at(68); };

    QVERIFY(control.call({"sleep", "q2"}).isGood());
    QVERIFY(!UsbFinderC_GetDeviceOnLine(path));
    record.LightRed = 21;
    ProtocolDataUpdate(&record);
    UsbServerC_Start(path, path, First::callback);
    QVERIFY(control.call({"wake", "q2"}).isGood());
    QTRY_COMPARE(int{lightRed()}, 21);

    QVERIFY(control.call({"sleep", "q2"}).isGood());
    record.LightRed = 42;
    ProtocolDataUpdate(&record);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("1 bytes .* dropped: the program has left the device"));
    UsbServer_Exit();
    UsbServerC_Start(path, path, First::callback);
    First::reset();
    QVERIFY(control.call({"wake", "q2"}).isGood());
    UsbServer_ReadAllFlashData();
    QVERIFY(First::await(8, 0, imageSize));
    QVERIFY2(lightRed() == 21, "what was queued at the end of the link is given up");
    UsbServer_Exit();
}

void tst_portwire_link::changeInMidReadStartsOver()
{
    Bench bench;
    bench.tapped->before(8, 100, [&] {
        bench.bus->changeProfile("q1", 1);
        bench.bus->changeRate("q1", 8);
        bench.bus->changeLevel("q1", 5);
    });
    bench.readAll();
    const auto read = bench.awaitRecord();
    QVERIFY(read);
    QCOMPARE(int{read->ReportRate}, 8);
    QVERIFY(isSame(*read, bench.flash()));
}

void tst_portwire_link::everythingHasAnEnd_data()
{
    QTest::addColumn<Job>("job");
    QTest::addColumn<int>("ignored"); ///< code
    QTest::addColumn<int>("from");    ///< address
    QTest::addColumn<int>("status");  ///< that it gets, -1 for no answer
    const auto row = [](const char *name, Job job, int from, int status) {
        QTest::newRow(name) << job << static_cast<int>(job.request.code) << from << status;
    };
    row("tell", {Job::Kind::Tell, {ReportCode::BatteryCurve, 0, 0, std::vector<std::uint8_t>(42)}}, 0, -1);
    row("order", {Job::Kind::FactoryReset, {ReportCode::FactoryReset}}, 0, -1);
    row("profile", {Job::Kind::SelectProfile, {ReportCode::SelectConfig, 0, 0, {1}}}, 0, -1);
    row("whole record", {Job::Kind::WholeRecord, {ReportCode::ReadFlash}}, 540, -1);
    row("offline", {Job::Kind::Tell, {ReportCode::ProgramStatus, 0, 0, {1}}}, 0, 1);
    row("write", {Job::Kind::Tell, {ReportCode::WriteFlash}}, 161, -1);
    row("batch lost", {Job::Kind::Tell, {ReportCode::WriteFlash}}, 161, 3);
}

/** A mouse that answers everything but one thing keeps nothing waiting behind it; one that is silent gets it later. */
void tst_portwire_link::everythingHasAnEnd()
{
    QFETCH(Job, job);
    QFETCH(int, ignored);
    QFETCH(int, from);
    QFETCH(int, status);
    std::atomic<bool> isSilent{false};
    std::atomic<int> asked{0};
    Bench bench;
    bench.readAll();
    const FlashDataMap before = bench.awaitRecord().value();
    bench.record = before;
    bench.tapped->replaceAnswers([&](const TappedBus::Packet &request) -> TappedBus::Replacement {
        const bool isIgnored = request.code == ignored && request.address >= from;
        asked += request.code == ignored;
        if (!isSilent && !isIgnored)
            return {};
        if (isSilent || status < 0)
            return std::vector<TappedBus::Packet>{};
        return {{{request.code, request.sequence, request.address, static_cast<std::uint8_t>(status)}}};
    });
    isSilent = true;
    if (job.request.code == ReportCode::WriteFlash) {
        bench.record.LightRed = 99;
        bench.change(bench.record);
    } else {
        bench.link->add(job);
    }
    bench.link->add({Job::Kind::Read, {ReportCode::Battery}});
    QTRY_VERIFY(asked > 3);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("q1-4k (never answers|keeps losing) .* given up"));
    isSilent = false;
    QVERIFY(First::await(4));
    QVERIFY(isSame(bench.flash(), before));
}

void tst_portwire_link::writesKeepToTheirProfile_data()
{
    QTest::addColumn<QByteArray>(
        "wishes");                         ///< g: the light gets more green, r: red, i: import, R: reset, 0, 1: profile
    QTest::addColumn<bool>("isTurned");    ///< then the mouse itself turns to profile 1
    QTest::addColumn<QByteArray>("first"); ///< what has reached profile 0 in the end
    QTest::addColumn<QByteArray>("second");
    const auto row = [](const char *wishes, bool isTurned, const char *first, const char *second) {
        QTest::addRow("%s%s", wishes, isTurned ? " and turned" : "")
            << QByteArray(wishes) << isTurned << QByteArray(first) << QByteArray(second);
    };
    row("g1r", false, "g", "r");
    row("g1r0g", false, "gg", "r");
    row("g1i", false, "g", "i");
    row("gRr", false, "r", "");
    row("g", true, "", "");
    row("gR", true, "", "");
    row("g1r", true, "", "r");
}

/** What is wished while the mouse doesn't answer, and what becomes of it with another profile. */
void tst_portwire_link::writesKeepToTheirProfile()
{
    QFETCH(QByteArray, wishes);
    QFETCH(bool, isTurned);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    Bench bench;
    bench.enter(1);
    bench.record.DebounceTime = 19; // so that the two differ
    bench.change(bench.record);
    QVERIFY(bench.awaitInFlash(bench.record));
    FlashDataMap wanted[] = {bench.record, bench.record};
    bench.link->add({Job::Kind::Read, {ReportCode::CurrentConfig}});
    bench.enter(0);
    wanted[0] = bench.record;
    const auto change = [imported = changedEverywhere(wanted[0])](char wish, FlashDataMap &record) {
        if (wish == 'i')
            record = imported;
        else
            (wish == 'g' ? record.LightGreen : record.LightRed) += 5;
    };
    bench.link->add({Job::Kind::Read, {ReportCode::CurrentConfig}});
    QVERIFY(bench.awaitDone());
    bench.holdUp();
    FlashDataMap record = bench.record;
    for (const char wish : wishes) {
        if (wish == 'R')
            bench.link->add({Job::Kind::FactoryReset, {ReportCode::FactoryReset}});
        else if (wish == '0' || wish == '1')
            bench.link->add(
                {Job::Kind::SelectProfile, {ReportCode::SelectConfig, 0, 0, {static_cast<std::uint8_t>(wish - '0')}}});
        else
            change(wish, record);
        if (wish == 'i')
            bench.link->replace(record);
        else
            bench.change(record);
    }
    if (isTurned) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("dropped: the mouse has another profile active"));
        First::reset();
        bench.bus->changeProfile("q1", 1);
        QVERIFY(First::await(10));
    }
    bench.tapped->replaceAnswers({});
    QVERIFY(bench.awaitDone());
    const auto checks = {std::pair(0, first), {1, second}};
    for (const auto &[profile, changes] : checks) {
        for (const char wish : changes)
            change(wish, wanted[profile]);
        bench.bus->changeProfile("q1", profile);
        QVERIFY(isSame(bench.flash(), wanted[profile]));
    }
}

/** After a change of profile on the mouse, a program that doesn't know what is there gets to know it and can't write.
 */
void tst_portwire_link::whatIsOfTheProfileBeforeCountsNoMore()
{
    Bench bench;
    bench.enter(2);
    bench.record.DpiLedSpeed = 5;
    bench.change(bench.record);
    QVERIFY(bench.awaitInFlash(bench.record));
    FlashDataMap other = bench.record;
    bench.enter(0);
    First::block(true);
    bench.link->add({Job::Kind::Read, {ReportCode::Battery}});
    QVERIFY(First::await(4));
    bench.link->add({Job::Kind::Read, {ReportCode::ReadFlash, 76, 0, {8}}}); // answered, and not delivered yet
    QVERIFY(bench.awaitDone());
    QSemaphore isAsked;
    bench.tapped->before(14, 1, [&] { isAsked.release(); });
    bench.bus->changeProfile("q1", 2);
    QVERIFY(isAsked.tryAcquire(1, 10000));
    QVERIFY(bench.awaitDone());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("a change is dropped"));
    bench.record.LightRed = 21;
    bench.change(bench.record);
    First::block(false);
    const auto indicator = First::await(8, 76);
    QVERIFY(indicator);
    QCOMPARE(int{indicator->payload.at(2)}, 5);
    bench.record = bench.awaitRecord().value();
    QVERIFY(isSame(bench.record, other));
    other.LightRed = 22;
    bench.change(other);
    QVERIFY(bench.awaitInFlash(other));
}

void tst_portwire_link::whatOutlivesALink_data()
{
    QTest::addColumn<bool>("isReplaced");   ///< the link, while nothing can be delivered
    QTest::addColumn<bool>("isOtherMouse"); ///< is paired then
    QTest::addColumn<bool>("isInMidReset"); ///< the link is replaced while the mouse does it
    QTest::newRow("same mouse") << true << false << false;
    QTest::newRow("another mouse") << true << true << false;
    QTest::newRow("another mouse under the link") << false << true << false;
    QTest::newRow("in the middle") << false << false << true;
}

/** A write and a factory reset that the user confirmed happen once, in this order, and to nobody else. */
void tst_portwire_link::whatOutlivesALink()
{
    QFETCH(bool, isReplaced);
    QFETCH(bool, isOtherMouse);
    QFETCH(bool, isInMidReset);
    std::atomic<int> writes{0}, resets{0}, writesBefore{0};
    QSemaphore isReset;
    Bench bench;
    bench.enter(0);
    const FlashDataMap before = bench.record;
    bench.holdUp();
    bench.record.LightGreen = 77;
    bench.change(bench.record);
    bench.link->add({Job::Kind::FactoryReset, {ReportCode::FactoryReset}});
    const auto replaceLink = [&] {
        bench.link->end();
        bench.link->work()->passOn();
        bench.link = Link::start(bench.channels, bench.path, Second::callback, bench.link->work());
    };
    if (isReplaced)
        bench.link->end();
    if (isOtherMouse)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("1 bytes .* 1 orders .* another mouse is there"));
    bench.tapped->replaceAnswers([&](const TappedBus::Packet &request) -> TappedBus::Replacement {
        writes += request.code == 7;
        if (request.code == 9 && ++resets == 1) {
            writesBefore = writes.load();
            if (isInMidReset)
                replaceLink();
            isReset.release();
        }
        if (request.code == 3 && isOtherMouse)
            return {{request.answer({1, 9, 9, 9})}};
        // The receiver says that a mouse has paired, between any two answers.
        if (request.code == 24)
            return {{{6, 0, 0, 0, {3}}, request.answer({0, 1})}};
        return {};
    });
    if (isReplaced)
        replaceLink();
    else if (isOtherMouse)
        QVERIFY(bench.channels->ask(bench.path, {ReportCode::ReceiverVersion}));
    QVERIFY(isOtherMouse || isReset.tryAcquire(1, 10000));
    QVERIFY(bench.awaitDone());
    QCOMPARE(writes.load(), isOtherMouse ? 0 : 1);
    QCOMPARE(resets.load(), isOtherMouse ? 0 : 1);
    QCOMPARE(writesBefore.load(), writes.load());
    QVERIFY(isOtherMouse || Second::await(9));
    QVERIFY(isSame(bench.flash(), before));
    QCOMPARE(First::count(9) + Second::count(9), std::size_t(isOtherMouse ? 0 : 1));
}

/** The thread of an ended link may come to open its device again when its successor has done so. */
void tst_portwire_link::endedLinkDoesNotListen()
{
    Bench bench;
    const auto ended = bench.link;
    ended->end();
    bench.startLink(Second::callback);
    LinkedDevice(bench.channels, bench.path, ended->work()).open(ended);
    bench.bus->changeLevel("q1", 1);
    QVERIFY(Second::await(10));
}

namespace {

/** A device that says the same all the time. */
struct FloodingBus : Bus
{
    struct Mouth : Endpoint
    {
        explicit Mouth(FloodingBus &ofBus) : bus(ofBus) {}
        bool send(const Report &) override { return true; }
        bool waitForReport() override { return !isClosed; }
        bool takeReport(Report &report) override
        {
            report = encodeFrame({ReportCode::StatusChanged, 0, 0, 0, {1}});
            return bus.isFlooding && ++bus.told > 0;
        }
        void close() override { isClosed = true; }
        FloodingBus &bus;
        std::atomic<bool> isClosed{false};
    };
    std::vector<DeviceNode> enumerate() override { return {}; }
    std::unique_ptr<Endpoint> open(const std::string &) override { return std::make_unique<Mouth>(*this); }
    void setChangeNotice(std::function<void()>) override {}
    std::atomic<bool> isFlooding{true};
    std::atomic<int> told{0};
};

} // namespace

void tst_portwire_link::floodKeepsNobodyWaiting()
{
    static auto *const bus = new FloodingBus; // the reader thread of a channel ends when it likes
    First::block(true);
    {
        const auto channels = std::make_shared<Channels>(std::shared_ptr<Bus>(bus, [](Bus *) {}));
        const auto link = Link::start(channels, "flood", First::callback, std::make_shared<Work>("flood"));
        QTRY_VERIFY(bus->told > 1000);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!channels->ask("flood", {ReportCode::Battery}));
        QVERIFY2(timer.elapsed() < 150, qPrintable(QString::number(timer.elapsed()))); // 30, on a machine with time
        bus->isFlooding = false;
        First::block(false);
        QVERIFY(First::awaitIdle());
        QTest::qWait(20);
        QVERIFY(First::awaitIdle());
        QVERIFY2(First::count() <= 3, qPrintable(QString::number(First::count())));
        link->end();
    }
}

void tst_portwire_link::unpluggedInMidRead()
{
    Bench bench;
    bench.tapped->before(8, 60, [&] { bench.bus->setPlugged("q1-4k", false); });
    bench.readAll();
    QTRY_VERIFY(bench.bus->enumerate().empty());
    QVERIFY(!bench.channels->ask(bench.path, {ReportCode::Online}));
    QCOMPARE(First::count(), std::size_t{0});
    bench.bus->setPlugged("q1-4k", true);
    QVERIFY2(bench.channels->ask(bench.path, {ReportCode::Online}), "answers as soon as it is back");
    const auto read = bench.awaitRecord();
    QVERIFY(read);
    QVERIFY(isSame(*read, bench.flash()));
}

void tst_portwire_link::endedLinkCallsNoMore()
{
    Bench bench;
    First::block(true);
    bench.bus->changeLevel("q1", 1);
    QVERIFY(First::await(10));
    for (int level = 0; level < 5; ++level)
        bench.bus->changeLevel("q1", level);
    bench.readAll();
    bench.link->end(); // comes back although the callback stands
    First::block(false);
    QVERIFY(First::awaitIdle());
    bench.bus->changeLevel("q1", 1);
    QVERIFY(bench.channels->ask(bench.path, {ReportCode::Battery}));
    QCOMPARE(First::count(), std::size_t{1});
}

void tst_portwire_link::replacedCallbackTakesEffectAtOnce()
{
    Bench bench;
    First::block(true);
    bench.bus->changeLevel("q1", 1);
    QVERIFY(First::await(10));
    bench.link->end();
    bench.startLink(Second::callback);
    bench.readAll();
    QVERIFY(Second::await(8, 0, imageSize));
    QCOMPARE(First::count(), std::size_t{1});
    First::block(false);
    QVERIFY(First::awaitIdle());
}

void tst_portwire_link::oneFunctionIsNeverEnteredTwice()
{
    Bench bench;
    First::block(true);
    bench.bus->changeLevel("q1", 1);
    QVERIFY(First::await(10));
    for (int i = 0; i < 5; ++i) {
        bench.link->end();
        bench.startLink(First::callback);
    }
    bench.bus->changeLevel("q1", 2);
    QVERIFY(!QTest::qWaitFor([] { return First::mostInside() > 1; }, 60));
    bench.readAll();
    First::block(false);
    QVERIFY(bench.awaitRecord());
    QVERIFY(First::awaitIdle());
    QCOMPARE(First::mostInside(), 1);
}

void tst_portwire_link::callbackMayStartAndExit()
{
    const char path[] = "virtual/receiver/q1-4k";
    First::doInCallback([&] {
        UsbServer_Exit();
        UsbServerC_Start(path, path, Second::callback);
        UsbServer_ReadVersion();
        UsbFinderC_GetVersion(path);
    });
    Second::doInCallback([] { UsbServer_Exit(); });
    UsbServerC_Start(path, path, First::callback);
    UsbServer_ReadBatteryLevel();
    QVERIFY(First::await(4));
    QVERIFY(Second::await(18));
    QVERIFY(Second::awaitIdle());
    UsbServer_ReadVersion(); // without a link nothing comes of it
    QVERIFY(First::awaitIdle());
    QCOMPARE(Second::count(), std::size_t{1});
}

void tst_portwire_link::processEndsWhileACallbackIsBlocked()
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {exitWhileBlocked});
    QVERIFY(process.waitForFinished(20000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.readAllStandardOutput(), QByteArray("blocked\n"));
    QCOMPARE(process.exitCode(), 7);
}

void tst_portwire_link::finders()
{
    ControlClient control;
    int count = 5;
    const char *const *paths = UsbFinderC_FindHidDevicesByDeviceId("f0a1", "0204", 1, 5, &count);
    QCOMPARE(count, 1);
    const std::string path = paths[0];
    std::thread([] {
        int others = 5;
        UsbFinderC_FindHidDevicesByDefaultDeviceId("F0A1", "0201", &others);
    }).join();
    QCOMPARE(paths[0], path.c_str());
    count = 0;
    UsbFinderC_FindHidDevicesByDefaultDeviceId("F0A1", "0204", &count);
    QCOMPARE(count, 0);
    count = 5;
    paths = UsbFinderC_FindHidDevicesByDeviceId("F0A1", "0204", 0, 5, &count);
    QCOMPARE(count, 1);
    QVERIFY2(path != paths[0] && !UsbFinderC_GetDeviceOnLine(paths[0]), "another interface says nothing");

    std::uint8_t info[3];
    UsbFinderC_GetDeviceInfo(path.c_str(), info);
    QCOMPARE(QByteArray(reinterpret_cast<char *>(info), 3), QByteArray::fromHex("120101"));
    std::uint8_t wireless[10], corded[10], attribute[12];
    UsbFinderC_GetDeviceOnLineWithUsbAddress(path.c_str(), wireless);
    QCOMPARE(int{wireless[6]}, 1);
    UsbFinderC_GetUsbDeviceAttribute(path.c_str(), attribute);
    QCOMPARE(attribute[8] + attribute[9] * 256, 0x0142);
    std::uint16_t version = 0;
    QVERIFY(UsbFinderC_GetSlaveVersion(path.c_str(), &version));
    QCOMPARE(int{version}, 0x010C);
    QCOMPARE(int{UsbFinderC_GetVersion(path.c_str())}, 0x0112);

    // On its cable the same mouse has a path of its own, and its receiver shows it without reaching it.
    QVERIFY(control.call({"plug", "q1"}).isGood());
    count = 5;
    paths = UsbFinderC_FindHidDevicesByDefaultDeviceId("F0A1", "0101", &count);
    QCOMPARE(count, 1);
    UsbFinderC_GetDeviceOnLineWithUsbAddress(paths[0], corded);
    QVERIFY(std::equal(wireless + 6, wireless + 10, corded + 6));
    UsbFinderC_GetDeviceInfo(paths[0], info);
    QCOMPARE(QByteArray(reinterpret_cast<char *>(info), 3), QByteArray::fromHex("120102"));
    UsbFinderC_GetDeviceOnLineWithUsbAddress(path.c_str(), wireless);
    QCOMPARE(int{wireless[6]}, 0);
    QVERIFY(std::equal(wireless + 7, wireless + 10, corded + 7));
    QVERIFY(control.call({"unplug", "q1"}).isGood());
    QVERIFY(UsbFinderC_GetDeviceOnLine(path.c_str()));

    DongleRGB light{{3, 1, 2, 3, 4, 5, 6, 7, 8, 9}}, back{};
    UsbFinderC_Set4KDongleRGB(path.c_str(), &light);
    UsbFinderC_Get4KDongleRGBValue(path.c_str(), &back);
    QVERIFY(std::equal(std::begin(light.bytes), std::end(light.bytes), back.bytes));
    UsbFinderC_Get4KDongleRGBValue("virtual/receiver/q2-1k", &back);
    QVERIFY2(back.bytes[0] == 3, "a receiver without a light refuses");
    std::uint8_t mode = 's';
    UsbFinderC_SetLongRangeMode(path.c_str(), 1);
    UsbFinderC_GetLongRangeMode(path.c_str(), &mode);
    QCOMPARE(int{mode}, 1);
    mode = 's';
    UsbFinderC_GetLongRangeMode("a", &mode);
    QCOMPARE(int{mode}, int{'s'});
}

void tst_portwire_link::busChangesReachTheGuiThread()
{
    ControlClient control;
    StartUsbChanged(startAnother, 1);
    QCOMPARE(changeCalls, 1);
    QCOMPARE(changeThread, QThread::currentThread());
    // Quick changes count as one, however long the event loop stands still meanwhile.
    for (int i = 0; i < 3; ++i) {
        QVERIFY(control.call({"unplug", "q1-4k"}).isGood());
        QVERIFY(control.call({"plug", "q1-4k"}).isGood());
    }
    QCOMPARE(changeCalls, 1);
    QTRY_COMPARE(changeCalls, 2);
    QTest::qWait(60);
    QCOMPARE(changeCalls, 2);
    StopUsbChanged();
    QVERIFY(control.call({"unplug", "q1"}).isGood());
    QTest::qWait(60);
    QCOMPARE(changeCalls, 2);
}

void tst_portwire_link::busChangeInsideTheCallbackWaitsForIt()
{
    const ControlClient control;
    changeCalls = 0;
    StartUsbChanged(promptOnChange, 1);
    QVERIFY(control.call({"plug", "q1"}).isGood());
    QTRY_COMPARE(changeCalls, 3); // the start, the cable, and the receiver once the callback is back
    QCOMPARE(mostChangesInside, 1);
    StopUsbChanged();
    QVERIFY(control.call({"plug", "q1-4k"}).isGood());
    QVERIFY(control.call({"unplug", "q1"}).isGood());
}

void tst_portwire_link::sceneOutlastsARestart()
{
    QTemporaryDir folder;
    const auto bus = VirtualBus::create();
    std::vector<std::uint8_t> before;
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
    QCOMPARE(again->describe().size(), std::size_t{3});
    const auto devices = again->describe();
    QCOMPARE(devices[0].id, std::string("q1"));
    QCOMPARE(devices[0].profile, 3);
    QCOMPARE(devices[0].dpi, 6400);
    QVERIFY(devices[1].isCorded);
    QVERIFY(!devices[2].isPlugged);
    std::vector<std::uint8_t> after;
    again->record("q1", after);
    QVERIFY(after == before);
}

void tst_portwire_link::damagedStateIsPutAside()
{
    QTemporaryDir folder;
    const auto write = [&](const char *name, const QByteArray &content) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    {
        SceneKeeper keeper(VirtualBus::create(), folder.path());
    }
    QFile flash(folder.filePath("flash-q1.bin"));
    QVERIFY(flash.open(QIODevice::ReadWrite));
    QVERIFY(flash.seek(20000) && flash.putChar(0x55));
    flash.close();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("flash-q1.bin can't be used"));
    auto bus = VirtualBus::create();
    {
        SceneKeeper keeper(bus, folder.path());
    }
    QCOMPARE(bus->describe().at(0).dpi, 1600);
    QVERIFY(QFile::exists(folder.filePath("flash-q1.bin.damaged")));

    write("scene.json", "{\"mice\": 7}");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("scene.json can't be used"));
    bus = VirtualBus::create();
    {
        SceneKeeper keeper(bus, folder.path());
    }
    QCOMPARE(bus->describe().size(), std::size_t{4});

    // Nothing in a file leads out of the folder.
    write("scene.json", R"({"mice": [{"id": "../../q1", "model": "q1"}, {"id": "ok", "model": "q1"}, 5,
        {"id": "ok", "model": "q2"}], "receivers": [{"id": "r", "model": "q1", "link": "9k", "mouse": "ok"}]})");
    bus = VirtualBus::create();
    {
        SceneKeeper keeper(bus, folder.path());
    }
    QCOMPARE(bus->describe().size(), std::size_t{1});

    const QString blocked = folder.filePath("scene.json") + "/portwire";
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("can't write .*/portwire/"));
    bus = VirtualBus::create();
    {
        SceneKeeper keeper(bus, blocked);
    }
    QCOMPARE(bus->describe().size(), std::size_t{4});
}

void tst_portwire_link::controlSocket()
{
    const ControlClient control;
    const auto devices = control.call({"devices"});
    QVERIFY(devices.isGood());
    for (const auto &device : devices.json().array()) {
        for (const char *key : {"id", "kind", "pid", "path", "plugged", "awake", "corded", "address", "battery",
                                "model", "dpi", "rate", "light", "level"})
            QVERIFY2(device.toObject().contains(QLatin1String(key)), key);
    }
    QCOMPARE(control.call({"record", "q1"}).output.size(), 10428);
    const QList<QStringList> wrong = {{},
                                      {"nothing"},
                                      {"record", "q9"},
                                      {"dpi", "q1", "8"},
                                      {"dpi", "q1", "x"},
                                      {"rate", "q1", "3"},
                                      {"profile", "q1", "4"},
                                      {"battery", "q1", "101"},
                                      {"battery", "q1", "10", "full"},
                                      {"add", "q3", "cable"},
                                      {"add", "q1", "8k"},
                                      {"fault", "q1", "rain"},
                                      {"fault", "q1", "drop", "-1"},
                                      {"fault", "q1", "powerloss"},
                                      {"fault", "q1", "powerloss", "101"},
                                      {"boot", "q9"},
                                      {"firmware", "q1", "256.0"},
                                      {"firmware", "q1", "1"},
                                      {"plug"},
                                      {"press", "q1", "16"}};
    for (const QStringList &words : wrong)
        QVERIFY2(!control.call(words).error.isEmpty(), qPrintable(words.join(' ')));

    // A client that sends without end is dropped, before it takes memory without end.
    QLocalSocket endless;
    endless.connectToServer(portwire::controlSocket());
    QVERIFY(endless.waitForConnected());
    endless.write(QByteArray(1 << 16, 'x'));
    QVERIFY(endless.state() == QLocalSocket::UnconnectedState || endless.waitForDisconnected());

    QFileInfo socket(portwire::controlSocket());
    QVERIFY(!(socket.permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther)));
    // Another process's socket is left alone, one that was left behind is replaced.
    const auto bus = VirtualBus::create();
    const auto channels = std::make_shared<Channels>(bus);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("another process serves"));
    {
        ControlServer second(bus, channels, portwire::controlSocket());
    }
    QVERIFY(control.call({"stats"}).isGood());
    QTemporaryDir folder;
    const QString stale = folder.filePath("control.sock");
    QVERIFY(QFile(stale).open(QIODevice::WriteOnly));
    ControlServer third(bus, channels, stale);
    QLocalSocket probe;
    probe.connectToServer(stale);
    QVERIFY(probe.waitForConnected(1000));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("can't listen on"));
    ControlServer fourth(bus, channels, stale + "/none");
}

void tst_portwire_link::controlProgram_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("output"); // how it begins
    QTest::addColumn<QByteArray>("errors");
    QTest::newRow("done") << QStringList{"dpi", "q1", "2"} << 0 << QByteArray("{") << QByteArray();
    QTest::newRow("refused") << QStringList{"dpi", "q1", "8"} << 1 << QByteArray() << QByteArray("portwirectl: ");
    QTest::newRow("played") << QStringList{"play", "q1", "1:0-50", "0:60-90"} << 0
                            << QByteArray(R"({"action":"press","at":0,"code":2,"ms":0,"type":"button"})")
                            << QByteArray();
    QTest::newRow("no record") << QStringList{"flash", "q1", "/dev/null"} << 1 << QByteArray()
                               << QByteArray("portwirectl: /dev/null doesn't have");
    QTest::newRow("help") << QStringList{"--help"} << 0 << QByteArray("usage: ") << QByteArray();
    QTest::newRow("no command") << QStringList() << 1 << QByteArray() << QByteArray("usage: ");
}

void tst_portwire_link::controlProgram()
{
    QFETCH(QStringList, words);
    QFETCH(int, status);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, errors);
    QProcess program;
    program.start(QCoreApplication::applicationDirPath() + "/portwirectl", words);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), status);
    const auto begins = [](const QByteArray &text, const QByteArray &start) {
        return start.isEmpty() ? text.isEmpty() : text.startsWith(start);
    };
    const QByteArray told = program.readAllStandardOutput();
    const QByteArray complaint = program.readAllStandardError();
    QVERIFY2(begins(told, output), told.constData());
    QVERIFY2(begins(complaint, errors), complaint.constData());
}

namespace {

/** A program that ends while its callback stands still, as it does in a blocking emit without an event loop. */
int endWhileBlocked(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    First::block(true);
    UsbServerC_Start("virtual/receiver/q1-4k", "virtual/receiver/q1-4k", First::callback);
    UsbServer_ReadAllFlashData();
    UsbServer_ReadVersion();
    if (!First::await(8, 0, imageSize))
        return 1;
    std::fputs("blocked\n", stdout);
    UsbServer_Exit();
    return 7;
}

} // namespace

int main(int argc, char *argv[])
{
    const bool isChild = argc > 1 && std::strcmp(argv[1], exitWhileBlocked) == 0;
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qunsetenv("XDG_DATA_HOME");
    if (isChild)
        return endWhileBlocked(argc, argv);
    QCoreApplication application(argc, argv);
    tst_portwire_link test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_portwire_link.moc"
