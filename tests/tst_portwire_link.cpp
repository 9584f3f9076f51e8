#include "portwire/control/ControlClient.h"
#include "portwire/portwire.h"
#include "support/LinkBench.h"
#include "support/Rows.h"
#include "support/TestHome.h"

#include <QProcess>

using namespace LinkTest;

namespace {

const char q1Path[] = "virtual/receiver/q1-4k";

/** The callback of changes on the bus. */
struct Changes
{
    inline static int calls = 0;
    inline static bool isInside = false;
    inline static std::function<void()> act;

    static void callback()
    {
        QVERIFY(QThread::currentThread() == qApp->thread() && !std::exchange(isInside, true));
        ++calls;
        if (const auto once = std::exchange(act, {}))
            once();
        isInside = false;
    }
    static void startAnother() { StartUsbChanged(callback, 20); }
};

WriteQueue::Batch takeNow(WriteQueue &queue)
{
    std::optional<WriteQueue::Clock::time_point> due;
    const auto batch = queue.take(true, {}, due);
    return batch ? *batch : WriteQueue::Batch{};
}

/** Makes the whole image known to a queue. */
FlashDataMap readInto(WriteQueue &queue, const DeviceImage &image)
{
    std::vector<std::uint8_t> bytes(image.begin(), image.end());
    queue.merge(0, bytes.data(), bytes.size(), queue.serial());
    queue.setGiven(true);
    FlashDataMap record{};
    decodeImage(image, record);
    return record;
}

} // namespace

Q_DECLARE_METATYPE(portwire::Job)

class tst_portwire_link : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        First::reset();
        Second::reset();
    }
    void readsOfParts();
    void whatGetsLostIsNotToldLater();
    void answersThatAreTooShort();
    void refusedBytesAreGivenUpAlone();
    void deadDeviceGivesUpSoon();
    void sleepInMidBatch();
    void undeliveredWritesOutliveALinkToTheSameDevice();
    void changeInMidReadStartsOver();
    void everythingHasAnEnd_data();
    void everythingHasAnEnd();
    void writesKeepToTheirProfile_data();
    void writesKeepToTheirProfile();
    void whatIsOfTheProfileBeforeCountsNoMore();
    void whatOutlivesALink_data();
    void whatOutlivesALink();
    void floodKeepsNobodyWaiting();
    void whatIsForgottenIsNotCarriedAlong();
    void slowDeviceWorks();
    void callbackThatStands();
    void callbackMayStartAndExit();
    void processEndsWhileACallbackIsBlocked();
    void finders();
    void busChangesReachTheGuiThread();
    void queueKeepsTheNewestValue();
    void partsOfTheUnknownAreWrittenWhole();
    void levelsTravelTogether();
    void readingDoesNotUndoAChange();
    void changingAddressIsHeldBack();
};

/** Parts of the record that the mouse changes by itself, by address and length. */
void tst_portwire_link::readsOfParts()
{
    const std::tuple<void (*)(), int, std::size_t> reads[] = {{UsbServer_ReadReportRate, 0, 1},
                                                              {UsbServer_ReadCurrentDPI, 4, 1},
                                                              {UsbServer_ReadDPILed, 76, 8},
                                                              {UsbServer_ReadLedBar, 160, 9}};
    UsbServerC_Start(q1Path, q1Path, First::callback);
    for (const auto &[ask, address, length] : reads) {
        ask();
        const auto report = First::await(8, address, length);
        QVERIFY2(report && report->payload.size() == length, qPrintable(QString::number(address)));
    }
    UsbServer_Exit();
}

void tst_portwire_link::whatGetsLostIsNotToldLater()
{
    LinkBench bench;
    bench.bus->setFault("q1", FaultKind::Drop, 1, 0, ReportClass::Announcements);
    bench.bus->changeLevel("q1", 1);
    bench.bus->changeRate("q1", 8);
    QCOMPARE(int{First::await(10).value().payload.at(0)}, 2);
}

void tst_portwire_link::answersThatAreTooShort()
{
    // The code, how many answers are empty, and the length of the report that comes in the end.
    for (const auto &[code, times, length] :
         {std::tuple(4, 1, 4), {6, 1, 1}, {14, 1, 1}, {18, 1, 2}, {14, INT_MAX, 0}}) {
        if (length == 0)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("never answers request 14"));
        First::reset();
        std::atomic<int> left{times};
        LinkBench bench;
        bench.tapped->replaceAnswers([&, spoiled = code](const Packet &request) -> Replacement {
            if (request.code != spoiled || left-- <= 0)
                return {};
            return {{request.answer()}};
        });
        bench.link->add({Job::Kind::Read, {static_cast<ReportCode>(code)}, code == 6});
        const auto report = First::await(code);
        QVERIFY2(report && static_cast<int>(report->payload.size()) == length, qPrintable(QString::number(code)));
    }
}

void tst_portwire_link::refusedBytesAreGivenUpAlone()
{
    std::atomic<int> refusals{0};
    LinkBench bench;
    const FlashDataMap before = bench.read();
    bench.tapped->replaceAnswers([&](const Packet &request) -> Replacement {
        if (request.code != 7 || request.address != 161)
            return {};
        ++refusals;
        return {{request.refusal()}};
    });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("refuses a write at address 161"));
    First::reset();
    FlashDataMap wanted = changedEverywhere(before);
    bench.change(wanted);
    wanted.LightRed = before.LightRed;
    QVERIFY(bench.awaitInFlash(wanted));
    const auto told = bench.awaitRecord();
    QVERIFY2(told && isSame(*told, wanted), "the screen goes on showing what the mouse doesn't hold");
    bench.record = *told;
    bench.record.Lod = 3 - bench.record.Lod;
    bench.change(bench.record);
    wanted.Lod = bench.record.Lod;
    QVERIFY(bench.awaitInFlash(wanted));
    QCOMPARE(refusals.load(), 1);
}

void tst_portwire_link::deadDeviceGivesUpSoon()
{
    std::atomic<int> asked{0};
    LinkBench bench;
    bench.bus->setFault("q1-4k", FaultKind::Drop, 1000);
    bench.tapped->replaceAnswers([&](const Packet &request) -> Replacement {
        asked += request.code == 1;
        return {};
    });
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 10; ++i)
        QVERIFY(!bench.channels->ask(bench.path, {ReportCode::DeviceInfo}));
    // Some 30 ms for the first and 2 ms for the others: a scan asks this often, and whoever scans must not be kept
    // waiting. A busy machine makes more of it, and may give some all three tries.
    QVERIFY2(timer.elapsed() >= 25 + 9 && asked < 10 * 3, qPrintable(QString::number(asked)));
    bench.bus->setFault("q1-4k", FaultKind::Drop, 0);
    QVERIFY(bench.channels->ask(bench.path, {ReportCode::DeviceInfo}));
    // It has shown itself: the next lost answer is repeated again.
    bench.bus->setFault("q1-4k", FaultKind::Drop, 2);
    QVERIFY(bench.channels->ask(bench.path, {ReportCode::Online}));
    // What isn't asked by a scan always gets its time.
    bench.bus->setFault("q1-4k", FaultKind::Drop, 5);
    for (int i = 0; i < 2; ++i)
        QVERIFY(bool(bench.channels->ask(bench.path, {ReportCode::LongRange})) == (i == 1));
}

/** The mouse then has none of the batch. It gets all of it when it is awake again, and is read only then. */
void tst_portwire_link::sleepInMidBatch()
{
    LinkBench bench;
    const FlashDataMap before = bench.read();
    const FlashDataMap wanted = changedEverywhere(before);
    First::reset();
    QSemaphore asleep;
    bench.tapped->before(7, 40, [&] {
        bench.bus->setAwake("q1", false);
        asleep.release();
    });
    bench.change(wanted);
    bench.readAll();
    QVERIFY(asleep.tryAcquire(1, 10000));
    QVERIFY(isSame(bench.flash(), before));
    QVERIFY(!bench.channels->ask(bench.path, {ReportCode::Battery}));
    std::atomic<bool> isReadTooEarly{false};
    bench.tapped->replaceAnswers([&](const Packet &request) -> Replacement {
        const bool isOfRecord = request.code == 8 && request.data[0] > 1; // one byte is read to see whether it sleeps
        isReadTooEarly = isReadTooEarly || (isOfRecord && isSame(bench.flash(), before));
        return {};
    });
    bench.bus->setAwake("q1", true);
    const auto read = bench.awaitRecord();
    QVERIFY(read && isSame(*read, wanted) && isSame(bench.flash(), wanted));
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

    const auto wishAsleep = [&](std::uint8_t red) {
        QVERIFY(control.call({"sleep", "q2"}).isGood());
        record.LightRed = red;
        ProtocolDataUpdate(&record);
    };
    wishAsleep(21);
    UsbServerC_Start(path, path, First::callback);
    QVERIFY(control.call({"wake", "q2"}).isGood());
    QTRY_COMPARE(int{lightRed()}, 21);
    wishAsleep(42);
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
    LinkBench bench;
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
    // from: address; status: that it gets, -1 for no answer
    const Rows<Job, int, int> row("job", "from", "status");
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
    QFETCH(int, from);
    QFETCH(int, status);
    const int ignored = static_cast<int>(job.request.code);
    std::atomic<bool> isSilent{false};
    std::atomic<int> asked{0};
    LinkBench bench(std::chrono::milliseconds(2));
    const FlashDataMap before = bench.read();
    bench.tapped->replaceAnswers([&](const Packet &request) -> Replacement {
        const bool isIgnored = request.code == ignored && request.address >= from;
        asked += request.code == ignored;
        if (!isSilent && !isIgnored)
            return {};
        if (isSilent || status < 0)
            return std::vector<Packet>{};
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
    QTRY_VERIFY(asked > 3 * 8); // three times a try
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("q1-4k (never answers|keeps losing) .* given up"));
    isSilent = false;
    QVERIFY(First::await(4));
    QVERIFY(isSame(bench.flash(), before));
    // What the user sees of it must not stay.
    const bool isShown = job.request.code == ReportCode::WriteFlash || job.kind == Job::Kind::SelectProfile;
    QTRY_COMPARE(First::count(8), std::size_t{isShown ? 2U : 1U});
}

void tst_portwire_link::writesKeepToTheirProfile_data()
{
    // By name g: the light gets more green, r: red, i: import, R: reset, 0, 1: profile, t: then the mouse itself turns
    // to profile 1. first, second: what has reached the profiles in the end.
    const Rows<QByteArray, QByteArray> row("first", "second");
    row("g1r", "g", "r");
    row("g1r0g", "gg", "r");
    row("g1i", "g", "i");
    row("gRr", "r", "");
    row("gt", "", "");
    row("gRt", "", "");
    row("g1rt", "", "r");
}

/** What is wished while the mouse doesn't answer, and what becomes of it with another profile. */
void tst_portwire_link::writesKeepToTheirProfile()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QByteArray wishes = QTest::currentDataTag();
    const bool isTurned = wishes.endsWith('t');
    wishes.replace('t', "");
    LinkBench bench;
    bench.enter(1);
    bench.record.DebounceTime = 19; // so that the two differ
    bench.change(bench.record);
    QVERIFY(bench.awaitDone());
    const FlashDataMap other = bench.record;
    bench.enter(0);
    FlashDataMap wanted[] = {bench.record, other};
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
        QVERIFY(bench.awaitRequest(14, [&] { bench.bus->changeProfile("q1", 1); }));
    }
    bench.tapped->replaceAnswers({});
    QVERIFY(bench.awaitDone());
    QVERIFY(!isTurned || bench.awaitRecord()); // of the other profile, which nobody has asked for
    for (const int profile : {0, 1}) {
        for (const char wish : profile == 0 ? first : second)
            change(wish, wanted[profile]);
        bench.bus->changeProfile("q1", profile);
        QVERIFY(isSame(bench.flash(), wanted[profile]));
    }
}

/** After a change of profile on the mouse, a program that doesn't know what is there gets to know it and can't write.
 */
void tst_portwire_link::whatIsOfTheProfileBeforeCountsNoMore()
{
    LinkBench bench;
    bench.enter(2);
    bench.record.DpiLedSpeed = 5;
    bench.change(bench.record);
    QVERIFY(bench.awaitDone());
    FlashDataMap other = bench.record;
    bench.enter(0);
    First::block(true); // in this report, or in a whole record that the link read once more
    bench.link->add({Job::Kind::Read, {ReportCode::Battery}});
    bench.link->add({Job::Kind::Read, {ReportCode::ReadFlash, 76, 0, {8}}}); // answered, and not delivered yet
    QVERIFY(bench.awaitDone());
    QVERIFY(bench.awaitRequest(14, [&] { bench.bus->changeProfile("q1", 2); }));
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
    // The link is replaced while nothing can be delivered; another mouse is paired then; it is replaced in a reset.
    const Rows<bool, bool, bool> row("isReplaced", "isOtherMouse", "isInMidReset");
    row("same mouse", true, false, false);
    row("another mouse", true, true, false);
    row("another mouse under the link", false, true, false);
    row("in the middle", false, false, true);
}

/** A write and a factory reset that the user confirmed happen once, in this order, and to nobody else. */
void tst_portwire_link::whatOutlivesALink()
{
    QFETCH(bool, isReplaced);
    QFETCH(bool, isOtherMouse);
    QFETCH(bool, isInMidReset);
    std::atomic<int> writes{0}, resets{0}, writesBefore{0};
    std::atomic<bool> isAsleep{isOtherMouse && !isReplaced}; // until it is asked whose it is
    QSemaphore isReset;
    LinkBench bench;
    bench.enter(0);
    First::reset();
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
    bench.tapped->replaceAnswers([&](const Packet &request) -> Replacement {
        if (request.code == 3 && isOtherMouse) {
            isAsleep = false;
            return {{request.answer({1, 9, 9, 9})}};
        }
        // The receiver says that a mouse has paired, between any two answers.
        if (request.code == 24)
            return {{{6, 0, 0, 0, {3}}, request.answer({0, 1})}};
        if (isAsleep)
            return {{request.offline()}};
        writes += request.code == 7;
        if (request.code == 9 && ++resets == 1) {
            writesBefore = writes.load();
            if (isInMidReset)
                replaceLink();
            isReset.release();
        }
        return {};
    });
    if (isReplaced)
        replaceLink();
    else if (isOtherMouse)
        QVERIFY(bench.channels->ask(bench.path, {ReportCode::ReceiverVersion}));
    if (isOtherMouse && !isReplaced)
        QVERIFY(First::await(8, 0, imageSize)); // nobody else tells the program that what it shows is of that one
    QVERIFY(isOtherMouse || isReset.tryAcquire(1, 10000));
    QVERIFY(bench.awaitDone());
    QCOMPARE(writes.load(), isOtherMouse ? 0 : 1);
    QCOMPARE(resets.load(), isOtherMouse ? 0 : 1);
    QCOMPARE(writesBefore.load(), writes.load());
    QVERIFY(isOtherMouse || Second::await(9));
    QVERIFY(isSame(bench.flash(), before));
    QCOMPARE(First::count(9) + Second::count(9), std::size_t(isOtherMouse ? 0 : 1));
}

/** Whether the one who asks has to take it all, or the reader takes it. */
void tst_portwire_link::floodKeepsNobodyWaiting()
{
    for (const bool isRead : {false, true}) {
        First::reset();
        LinkBench bench;
        QVERIFY(bench.awaitDone()); // the link has put its own questions
        bench.tapped->replaceAnswers([](const Packet &) -> Replacement { return std::vector<Packet>{}; });
        TappedBus::Reader &reader = *bench.tapped->reader;
        First::block(true);
        reader.takesFlood = isRead;
        reader.isFlooded = true;
        bench.bus->changeLevel("q1", 1); // the reader looks up
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!bench.channels->ask(bench.path, {ReportCode::Battery}));
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed()))); // 30 on a machine with time
        QVERIFY(First::await(10));
        QVERIFY(!bench.channels->ask(bench.path, {ReportCode::Battery})); // takes some more behind that report
        reader.isFlooded = false;
        QVERIFY(!bench.channels->ask(bench.path, {ReportCode::Battery})); // before it asks again all is taken
        First::block(false);
        QTRY_COMPARE(First::count(), std::size_t{2});
        QCOMPARE(int{First::await(10)->payload.at(0)}, 3); // nothing is lost of what came meanwhile
    }
}

/** Bytes between two that change go along in a report, but not when they may be others by now. */
void tst_portwire_link::whatIsForgottenIsNotCarriedAlong()
{
    LinkBench bench;
    bench.read();
    FlashDataMap wanted = bench.record;
    wanted.LightGreen ^= 0x55;
    bench.tapped->replaceAnswers(
        [](const Packet &request) { return request.code == 8 ? Replacement{{request.offline()}} : std::nullopt; });
    bench.bus->setPlugged("q1-4k", false);
    std::vector<std::uint8_t> bytes(sizeof wanted);
    std::memcpy(bytes.data(), &wanted, sizeof wanted);
    QCOMPARE(bench.bus->setRecord("q1", bytes), std::string());
    bench.bus->setPlugged("q1-4k", true);
    FlashDataMap changed = bench.record;
    changed.LightRed = wanted.LightRed = 11;
    changed.LightBlue = wanted.LightBlue = 12;
    bench.change(changed);
    QVERIFY(bench.awaitInFlash(wanted));
}

/** 15 ms for each answer: more than the usual answer time, so the bus has to tell. Then the computer is busy as well.
 */
void tst_portwire_link::slowDeviceWorks()
{
    LinkBench bench;
    bench.bus->setLatency("q1", std::chrono::milliseconds(15));
    bench.bus->setLatency("q1-4k", std::chrono::milliseconds(15));
    for (const bool isReaderLate : {false, true}) {
        bench.tapped->reader->isLate = isReaderLate;
        First::reset();
        QElapsedTimer timer;
        timer.start();
        QVERIFY(bench.channels->ask(bench.path, {ReportCode::Online}));
        QVERIFY(timer.elapsed() >= 14); // it counts whole ones
        bench.link->add({Job::Kind::Read, {ReportCode::ReadFlash, 160, 0, {9}}});
        QVERIFY(First::await(8, 160));
        FlashDataMap wanted = bench.record = bench.flash();
        wanted.LightRed ^= 9;
        bench.change(wanted);
        QVERIFY(bench.awaitInFlash(wanted));
    }
}

/** An ended link says nothing more, and a function is never entered twice: the next links have another, or the same. */
void tst_portwire_link::callbackThatStands()
{
    for (const bool isSame : {false, true}) {
        init();
        LinkBench bench;
        First::block(true);
        bench.bus->changeLevel("q1", 1);
        QVERIFY(First::await(10));
        for (int level = 0; level < 5; ++level) {
            bench.bus->changeLevel("q1", level);
            const auto ended = bench.link;
            ended->end(); // comes back although the callback stands
            bench.startLink(isSame ? First::callback : Second::callback);
            // The thread of the ended one may come to open its device again when its successor has done so.
            LinkedDevice(bench.channels, bench.path, ended->work()).open(ended);
        }
        bench.bus->changeLevel("q1", 2);
        if (isSame) {
            for (int i = 0; i < 3; ++i) {
                bench.link->add({Job::Kind::Read, {ReportCode::Battery}});
                QVERIFY(bench.awaitDone());
            }
            QVERIFY(!QTest::qWaitFor([] { return First::mostInside() > 1; }, 60));
        } else {
            QVERIFY(Second::await(10));
        }
        QCOMPARE(First::count(), std::size_t{1});
        First::block(false);
        bench.readAll();
        QVERIFY(isSame ? First::await(8, 0, imageSize) : Second::await(8, 0, imageSize));
        QVERIFY(First::awaitIdle());
        QCOMPARE(First::mostInside(), 1);
        QCOMPARE(First::count(4), std::size_t{isSame ? 1U : 0U}); // of three that waited the newest
        QVERIFY(isSame || First::count() == 1);
    }
}

void tst_portwire_link::callbackMayStartAndExit()
{
    First::doInCallback([] {
        UsbServer_Exit();
        UsbServerC_Start(q1Path, q1Path, Second::callback);
        UsbServer_ReadVersion();
        UsbFinderC_GetVersion(q1Path);
    });
    Second::doInCallback([] { UsbServer_Exit(); });
    UsbServerC_Start(q1Path, q1Path, First::callback);
    UsbServer_ReadBatteryLevel();
    QVERIFY(First::await(4));
    QVERIFY(Second::await(18));
    QVERIFY(Second::awaitIdle());
    UsbServer_ReadVersion(); // without a link nothing comes of it
    QVERIFY(First::awaitIdle());
    QCOMPARE(Second::count(), std::size_t{1});
}

/** It stands still as in a blocking emit without an event loop. The child is this function in a process of its own. */
void tst_portwire_link::processEndsWhileACallbackIsBlocked()
{
    const QString child = QStringLiteral("CALLBACK_IS_BLOCKED");
    auto environment = QProcessEnvironment::systemEnvironment();
    if (environment.contains(child)) {
        First::block(true);
        UsbServerC_Start(q1Path, q1Path, First::callback);
        UsbServer_ReadAllFlashData();
        UsbServer_ReadVersion();
        QVERIFY(First::await(8, 0, imageSize));
        return UsbServer_Exit();
    }
    environment.insert(child, "1");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {QTest::currentTestFunction()});
    QVERIFY(process.waitForFinished(20000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

void tst_portwire_link::finders()
{
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

    DongleRGB light{{3}};
    UsbFinderC_Get4KDongleRGBValue("virtual/receiver/q2-1k", &light);
    QVERIFY2(light.bytes[0] == 3, "a receiver without a light refuses");
    std::uint8_t mode = 's';
    UsbFinderC_GetLongRangeMode("a", &mode);
    QVERIFY2(mode == 's', "nobody says that it is off");
}

void tst_portwire_link::busChangesReachTheGuiThread()
{
    ControlClient control;
    StartUsbChanged(Changes::startAnother, 1);
    QCOMPARE(Changes::calls, 1);
    // Quick changes count as one, however long the event loop stands still meanwhile.
    for (int i = 0; i < 3; ++i) {
        QVERIFY(control.call({"unplug", "q1-4k"}).isGood());
        QVERIFY(control.call({"plug", "q1-4k"}).isGood());
    }
    QCOMPARE(Changes::calls, 1);
    QTRY_COMPARE(Changes::calls, 2);
    QTest::qWait(60);
    QCOMPARE(Changes::calls, 2);

    // A callback that shows a prompt: the event loop runs inside it, and the user pulls the next receiver meanwhile.
    Changes::act = [&] {
        control.call({"unplug", "q1-4k"});
        QTest::qWait(60);
    };
    QVERIFY(control.call({"plug", "q1"}).isGood());
    QTRY_COMPARE(Changes::calls, 4); // the cable, and the receiver once the callback is back
    StopUsbChanged();
    QVERIFY(control.call({"plug", "q1-4k"}).isGood());
    QVERIFY(control.call({"unplug", "q1"}).isGood());
    QTest::qWait(60);
    QCOMPARE(Changes::calls, 4);
}

void tst_portwire_link::queueKeepsTheNewestValue()
{
    WriteQueue queue;
    FlashDataMap record = readInto(queue, {});
    for (const std::uint8_t value : {1, 200}) {
        record.LightRed = value;
        queue.update(record, record);
    }
    const auto batch = takeNow(queue);
    QCOMPARE(batch.writes.size(), std::size_t{1});
    QCOMPARE(batch.writes[0].bytes, std::vector<std::uint8_t>{200});
    // A change while the batch travels outlives its acknowledgement.
    record.LightRed = 201;
    queue.update(record, record);
    queue.confirm(batch, {});
    QCOMPARE(takeNow(queue).writes.at(0).bytes, std::vector<std::uint8_t>{201});
}

/** What replaces something that nobody has read doesn't mix with it. */
void tst_portwire_link::partsOfTheUnknownAreWrittenWhole()
{
    DeviceImage mouse{};
    mouse.fill(0x55);
    FlashDataMap before{}; // of another mouse
    decodeImage(FirmwareFlash::factory(*findMouseModel("q1")).bytes, before);
    FlashDataMap record = before;
    for (std::uint8_t *byte : {&record.KeyFunctions[4].KeyParam2, &record.DpiLevels[6].Red,
                               &record.KeySequences[7].Events[0].Action, &record.MacroSlots[8].Events[0].Action})
        *byte ^= 1;
    WriteQueue queue;
    queue.update(record, before);
    std::size_t written = 0;
    for (const WriteQueue::Write &write : takeNow(queue).writes) {
        std::copy(write.bytes.begin(), write.bytes.end(), mouse.begin() + write.address);
        written += write.bytes.size();
    }
    FlashDataMap held{};
    decodeImage(mouse, held);
    QVERIFY(std::memcmp(&held.KeyFunctions[4], &record.KeyFunctions[4], sizeof(KeyFunction)) == 0);
    QVERIFY(held.DpiLevels[6].Green == record.DpiLevels[6].Green && held.DpiLevels[6].Blue == record.DpiLevels[6].Blue);
    QVERIFY(std::memcmp(&held.KeySequences[7], &record.KeySequences[7], sizeof(KeySequence)) == 0);
    QVERIFY(std::memcmp(&held.MacroSlots[8], &record.MacroSlots[8], sizeof(MacroSlot)) == 0);
    QVERIFY2(written <= 3 + 3 + ImageLayout::keySequenceSize + ImageLayout::macroSize, "and nothing else is");
}

void tst_portwire_link::levelsTravelTogether()
{
    WriteQueue queue;
    FlashDataMap record = readInto(queue, FirmwareFlash::factory(*findMouseModel("q1")).bytes);
    std::swap(record.DpiLevels[0], record.DpiLevels[7]);
    record.DpiLevelCount = 1;
    record.KeyFunctions[2].KeyType = 6;
    record.MacroSlots[2].EventCount = 1;
    queue.update(record, record);
    const auto writes = takeNow(queue).writes;
    QCOMPARE(writes.size(), std::size_t{3});
    QVERIFY2(writes[0].address >= 768, "the macro goes before the button that plays it");
    QVERIFY(writes[1].address == 1 && writes[1].bytes.size() >= 5 + 8 * 6 - 4);
}

void tst_portwire_link::readingDoesNotUndoAChange()
{
    WriteQueue queue;
    DeviceImage mouse = FirmwareFlash::factory(*findMouseModel("q1")).bytes;
    FlashDataMap record = readInto(queue, mouse);
    const std::uint64_t readBegan = queue.serial();
    std::vector<std::uint8_t> read(mouse.begin(), mouse.end());
    read[0] = 8; // changed on the mouse
    record.LightRed = 77;
    queue.update(record, record);
    const auto batch = takeNow(queue);
    queue.confirm(batch, {});
    queue.merge(0, read.data(), read.size(), readBegan);
    QCOMPARE(int{read[161]}, 77);
    QCOMPARE(int{read[0]}, 8);
    // The program, not told of the new rate yet, hands over the old one: that is a change.
    queue.update(record, record);
    QCOMPARE(int{takeNow(queue).writes.at(0).address}, 0);
    // What was read after the change counts as it was read.
    std::vector<std::uint8_t> later{33};
    queue.merge(161, later.data(), later.size(), queue.serial());
    QCOMPARE(int{later[0]}, 33);
}

void tst_portwire_link::changingAddressIsHeldBack()
{
    using std::chrono::milliseconds;
    WriteQueue queue;
    FlashDataMap record = readInto(queue, FirmwareFlash::factory(*findMouseModel("q1")).bytes);
    WriteQueue::Clock::time_point now{};
    int batches = 0;
    // A slider that is dragged for four seconds, a change a millisecond.
    for (int i = 0; i < 4000; ++i, now += milliseconds(1)) {
        record.LightBlue = static_cast<std::uint8_t>(i);
        queue.update(record, record);
        std::optional<WriteQueue::Clock::time_point> due;
        if (const auto batch = queue.take(false, now, due)) {
            queue.confirm(*batch, now);
            ++batches;
        } else {
            QVERIFY(due && *due > now && *due <= now + milliseconds(64));
        }
    }
    QVERIFY2(batches > 10 && batches < 80, qPrintable(QString::number(batches)));
    std::optional<WriteQueue::Clock::time_point> due;
    QVERIFY(queue.take(true, now, due));
    record.Lod = 2; // another address isn't held back, and takes the rest along
    const auto last = queue.take(true, now, due);
    queue.confirm(*last, now);
    queue.update(record, record);
    QVERIFY(queue.take(false, now, due));
}

HALVARION_TEST_MAIN(tst_portwire_link)
#include "tst_portwire_link.moc"
