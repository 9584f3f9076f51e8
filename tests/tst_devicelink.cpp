#include "app/hub/PostMsg.h"
#include "devicelink/DeviceCache.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceScan.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/StatusGate.h"
#include "devicelink/WorkingRecord.h"
#include "productdata/UserFolders.h"
#include "support/ConnectedMouse.h"
#include "support/ProductCopy.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QThread>

#include <cstring>
#include <functional>
#include <memory>

namespace {

using Setter = std::function<bool()>;

QByteArray bytesOf(const FlashDataMap &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), static_cast<int>(flashDataMapSize));
}

/** Runs something on a thread of its own, as the library does with a report, while this one serves events. */
void runOnThread(const std::function<void()> &work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->start();
    while (!thread->wait(1))
        QCoreApplication::processEvents();
}

int written() { return QJsonDocument::fromJson(VirtualMice::tell({"stats"})).object()["written"].toInt(); }

/** Between the library and the dispatcher: lets something happen when a settings reply has left the one for the other.
 */
struct Between
{
    static void arm(const Setter &click, bool isAnnounced)
    {
        onReply = click;
        losesAnnouncements = !isAnnounced;
        armed = true;
    }
    static bool isArmed() { return armed; }

    static void callback(const std::uint8_t *header, int headerLength, const std::uint8_t *payload,
                         std::uint32_t length)
    {
        if (header[1] == 10 && losesAnnouncements)
            return;
        const bool isMeant = header[1] == 8 && armed;
        if (isMeant && onReply)
            QMetaObject::invokeMethod(qApp, onReply, Qt::BlockingQueuedConnection);
        dispatchReport(header, headerLength, payload, length);
        if (isMeant)
            armed = false;
    }

private:
    static inline Setter onReply;
    static inline std::atomic<bool> losesAnnouncements{false};
    static inline std::atomic<bool> armed{false};
};

} // namespace

Q_DECLARE_METATYPE(Setter)

/** Between the pages and the library: setters, the report dispatcher, identification, cache files. */
class DeviceLinkTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void setter_data();
    void setter();
    void settersRefuseWhatIsOutOfRange();
    void offlineSetterPromptsOnceAndChangesNothing();
    void manyChangesOfOneField();
    void identify_data();
    void identify();
    void dispatcherDropsRubbish();
    void ratesOfACordedMouse();
    void aSetterMeetsAReply_data();
    void aSetterMeetsAReply();
    void twoRereadsInThreeSeconds();
    void resetOfOneMouseSparesTheNext();
    void resetSparesCombinationsOfTheProduct();
    void combinationsAfterAReset();
    void aBlockingSignalOnTheGuiThread();
    void blockingSignal();
    void cacheFile();
    void damagedCache_data();
    void damagedCache();

private:
    static void connectMouse(PortwireReportCallback callback = dispatchReport);
};

void DeviceLinkTest::init()
{
    UserFolders::prepare();
    VirtualMice::restoreScene();
    ConnectedMouse::select(0);
}

void DeviceLinkTest::cleanup()
{
    ConnectedMouse::forget();
    SensorUiUpdating = false;
    ReconnectRequested = false;
    RereadPending = false;
}

void DeviceLinkTest::connectMouse(PortwireReportCallback callback)
{
    QVERIFY(ConnectedMouse::read(false, callback));
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), bytesOf(VirtualMice::record("q1")));
}

// Setters ------------------------------------------------------------------------------------------------------------

void DeviceLinkTest::setter_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, int offset, const char *hex, const Setter &set) {
        QTest::newRow(name) << set << offset << QByteArray::fromHex(hex);
    };
    row("ReportRate", 0, "02", [] { return SetReportRate(2); });
    row("DpiLevelCount", 1, "03", [] { return SetDpiLevelCount(3); });
    row("DpiCurrentLevel", 2, "04", [] { return SetDpiCurrentLevel(4); });
    row("Lod", 5, "02", [] { return SetLod(2); });
    row("DebounceTime", 6, "14", [] { return SetDebounceTime(20); });
    row("MotionSync", 7, "01", [] { return SetMotionSync(0), SetMotionSync(1); });
    row("StopCloseTime", 8, "f0", [] { return SetStopCloseTime(240); });
    row("StraightLine", 9, "01", [] { return SetStraightLine(1); });
    row("RippeControl", 10, "01", [] { return SetRippeControl(1); });
    row("LightRippeControl", 11, "01", [] { return SetLightRippeControl(1); });
    row("Performance", 12, "01", [] { return SetPerformance(1); });
    row("PerformanceTime", 13, "f0", [] { return SetPerformanceTime(240); });
    row("SensorMode", 14, "00", [] { return SetSensorMode(1), SetSensorMode(0); });
    row("DpiLevelCode of the last level", 57, "2b2b44", [] { return SetDpiLevelCode(7, 43, 43, 0x44); });
    row("DpiLevelColor of the last level", 60, "0102ff", [] { return SetDpiLevelColor(7, 1, 2, 255); });
    row("DpiLevelPair", 15, "010203040506", [] {
        return SetDpiLevelPair({9, 9, 9, 9, 9, 9}, {1, 2, 3, 4, 5, 6}, 0, 2, 2);
    });
    row("DpiLevelPair, the other level", 27, "090909090909", [] {
        return SetDpiLevelPair({9, 9, 9, 9, 9, 9}, {1, 2, 3, 4, 5, 6}, 0, 2, 2);
    });
    row("DpiLevelPair, count and level", 1, "0302", [] {
        return SetDpiLevelPair({9, 9, 9, 9, 9, 9}, {1, 2, 3, 4, 5, 6}, 0, 2, 2);
    });
    row("DpiLevelPair of one level with itself", 15, "010203040506", [] {
        return SetDpiLevelPair({9, 9, 9, 9, 9, 9}, {1, 2, 3, 4, 5, 6}, 0, 0, 0);
    });
    row("DpiLedMode off keeps the effect", 63, "02", [] { return SetDpiLedMode(2) && SetDpiLedMode(0); });
    row("DpiLedMode off", 66, "00", [] { return SetDpiLedMode(2) && SetDpiLedMode(0); });
    row("DpiLedMode on", 66, "01", [] { return SetDpiLedMode(1); });
    row("DpiLedBrightness", 64, "d2", [] { return SetDpiLedBrightness(210); });
    row("DpiLedSpeed", 65, "05", [] { return SetDpiLedSpeed(5); });
    row("LightMode off keeps the effect", 67, "05", [] { return SetLightMode(5) && SetLightMode(0); });
    row("LightMode off", 73, "00", [] { return SetLightMode(5) && SetLightMode(0); });
    row("LightColor", 68, "fe0201", [] { return SetLightColor(254, 2, 1); });
    row("LightSpeed", 71, "09", [] { return SetLightSpeed(9); });
    row("LightBrightness", 72, "00", [] { return SetLightBrightness(4), SetLightBrightness(0); });
    row("KeyFunction of the last slot", 119, "0a0102", [] { return SetKeyFunction(15, 10, 1, 2); });
    row("KeySequence", 124 + 5 * 52, "02000000000104000a000000", [] {
        return SetKeySequence(5, {5, 0, 0}, {2, {0, 0, 0}, {{0, 1, 4, 10}, {1, 1, 4, 10}}});
    });
    row("Macro with a delay beyond 16 bits", 956 + 2 * 592, "0241620000", [] {
        MacroSlot macro{2, "Ab", 2, {}};
        macro.Events[0] = {0, 1, 4, 70000};
        macro.Events[1] = {1, 1, 4, 0};
        return SetMacro(2, {6, 2, 1}, macro);
    });
}

void DeviceLinkTest::setter()
{
    QFETCH(Setter, set);
    QFETCH(int, offset);
    QFETCH(QByteArray, bytes);
    connectMouse();
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    QVERIFY(set());
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()).mid(offset, bytes.size()).toHex(), bytes.toHex());
    // The mouse holds the very record of the program: what was meant and nothing else was written.
    QTRY_COMPARE(bytesOf(VirtualMice::record("q1")), bytesOf(WorkingRecord::instance().copy()));
    // The two reserved bytes and the gap are nobody's.
    const QByteArray after = bytesOf(WorkingRecord::instance().copy());
    QCOMPARE(after.mid(3, 2), before.mid(3, 2));
    QCOMPARE(after.mid(122, 2), before.mid(122, 2));
}

void DeviceLinkTest::settersRefuseWhatIsOutOfRange()
{
    connectMouse();
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    for (const int index : {-1, 8, 1000}) {
        QVERIFY(!SetDpiLevelCode(index, 1, 1, 1));
        QVERIFY(!SetDpiLevelColor(index, 1, 1, 1));
        QVERIFY(!SetDpiLevelPair({}, {}, index, 0, 0));
        QVERIFY(!SetKeyFunction(index * 2, 1, 1, 1));
    }
    QVERIFY(!SetDpiLevelPair({}, {}, 0, 1, 8));
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), before);
}

void DeviceLinkTest::offlineSetterPromptsOnceAndChangesNothing()
{
    connectMouse();
    VirtualMice::tell({"sleep", "q1"});
    QSignalSpy prompts(postMsg(), &PostMsg::SigMouseOffLineo);
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    QVERIFY(!SetLod(before[5] == 1 ? 2 : 1));
    QCOMPARE(prompts.count(), 1);
    QCOMPARE(prompts.first().first().toInt(), 0);
    SensorUiUpdating = true;
    QVERIFY(!SetLod(before[5] == 1 ? 2 : 1));
    QVERIFY(!TestDeviceOnline());
    QCOMPARE(prompts.count(), 1);
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), before);
    QCOMPARE(bytesOf(VirtualMice::record("q1")), before);
}

void DeviceLinkTest::manyChangesOfOneField()
{
    connectMouse();
    const auto sent = [] { return QJsonDocument::fromJson(VirtualMice::tell({"stats"})).object()["sent"].toInt(); };
    int online = 0;
    const int before = sent();
    QElapsedTimer time;
    time.start();
    for (int change = 0; change < 2000; ++change)
        online += SetLightSpeed(static_cast<std::uint8_t>(change % 10)) ? 1 : 0;
    QCOMPARE(online, 2000);
    QTRY_COMPARE(int{VirtualMice::record("q1").LightSpeed}, 9);
    // Each change asks once whether the mouse answers; what is beyond that was written.
    const int written = sent() - before - 2000;
    const qint64 most = 8 + time.elapsed() / 64; // after a few at once the library lets 64 ms pass between two
    QVERIFY2(written > 0 && written <= most, qPrintable(QStringLiteral("%1 write reports").arg(written)));
}

// Identification -----------------------------------------------------------------------------------------------------

void DeviceLinkTest::identify_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("link");
    QTest::addColumn<int>("identity");
    QTest::addColumn<bool>("corded");
    QTest::newRow("Q1 on its cable") << "q1"
                                     << "cable" << 1 << true;
    QTest::newRow("Q2 on a 2K receiver") << "q2"
                                         << "2k" << 1 << false;
    QTest::newRow("an unknown mouse on its cable") << "unknown"
                                                   << "cable" << 2 << true;
}

void DeviceLinkTest::identify()
{
    QFETCH(QString, model);
    QFETCH(QString, link);
    const QString id = VirtualMice::add(model, link);
    const QString carrier = link == "cable" ? id : VirtualMice::receiverOf(id);
    DeviceAllInfo info;
    info.Path = VirtualMice::device(carrier)["path"].toString();
    QVERIFY(!info.Path.isEmpty());
    QTEST(static_cast<int>(identifyDevice(info)), "identity");
    QTEST(info.IsCorded, "corded");
    // Zeros in every answer: it stays an unknown device, and the time is bounded.
    VirtualMice::tell({"unplug", carrier});
    QCOMPARE(identifyDevice(info), Identity::NoAnswer);
    QCOMPARE(info.ModelIndex, 2);
}

// Reports ------------------------------------------------------------------------------------------------------------

void DeviceLinkTest::dispatcherDropsRubbish()
{
    connectMouse();
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    runOnThread([] {
        QRandomGenerator random(20261124);
        for (int round = 0; round < 20000; ++round) {
            std::array<std::uint8_t, 8> header{};
            std::array<std::uint8_t, 32> payload{};
            random.generate(header.begin(), header.end());
            random.generate(payload.begin(), payload.end());
            const int headerLength = static_cast<int>(random.bounded(9));
            header[1] = static_cast<std::uint8_t>(random.bounded(30));
            header[3] = static_cast<std::uint8_t>(random.bounded(2));
            // Left out: reports that are well formed and mean something.
            const bool settings = header[1] == 8 && (headerLength <= 3 || header[3] == 0); // what is missing reads as 0
            if (settings || header[1] == 9 || header[1] == 10 || header[1] == 18)
                continue;
            dispatchReport(header.data(), headerLength, payload.data(), random.bounded(33U));
        }
        const std::array<std::uint8_t, 5> wholeRecord{0, 8, 0, 0, 0};
        const std::array<std::uint8_t, 5> otherPage{0, 8, 0, 1, 0};
        const std::uint8_t one = 2;
        dispatchReport(wholeRecord.data(), 5, nullptr, 6912);
        dispatchReport(wholeRecord.data(), 5, &one, 0);
        dispatchReport(otherPage.data(), 5, &one, 1);
        dispatchReport(nullptr, 0, nullptr, 0);
    });
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), before);
}

void DeviceLinkTest::ratesOfACordedMouse()
{
    connectMouse();
    const std::array<std::uint8_t, 5> header{0, 8, 0, 0, 0};
    const auto report = [&header](std::uint8_t code) {
        runOnThread([&] { dispatchReport(header.data(), 5, &code, 1); });
    };
    SelectInfo().update([](DeviceAllInfo &info) { info.IsCorded = true; });
    const std::uint8_t before = WorkingRecord::instance().copy().ReportRate;
    report(16);
    QCOMPARE(WorkingRecord::instance().copy().ReportRate, before);
    report(8);
    QCOMPARE(int{WorkingRecord::instance().copy().ReportRate}, 8);
    SelectInfo().update([](DeviceAllInfo &info) { info.IsCorded = false; });
    report(16);
    QCOMPARE(int{WorkingRecord::instance().copy().ReportRate}, 16);
    QTRY_COMPARE(int{VirtualMice::record("q1").ReportRate}, 16);
}

void DeviceLinkTest::aSetterMeetsAReply_data()
{
    QTest::addColumn<QStringList>("onTheMouse");
    QTest::addColumn<bool>("isAnnounced"); ///< else its word of that gets lost, and the program reads on its own
    QTest::addColumn<Setter>("click");     ///< when the reply has left the library and the program doesn't have it yet
    QTest::addColumn<QString>("rateLevelLod");
    const auto row = [](const char *name, const char *onTheMouse, bool isAnnounced, const char *wanted,
                        const Setter &click = {}) {
        QTest::newRow(name) << QString(onTheMouse).split(' ') << isAnnounced << click << QString(wanted);
    };
    row("the same field", "rate q1 4", true, "2 0 1", [] { return SetReportRate(2); });
    row("there and back", "rate q1 4", true, "1 0 1", [] { return SetReportRate(2) && SetReportRate(1); });
    row("another field", "dpi q1 3", true, "1 3 2", [] { return SetLod(2); });
    row("the same and another", "dpi q1 3", true, "1 1 2", [] { return SetLod(2) && SetDpiCurrentLevel(1); });
    row("whole record", "rate q1 4", false, "2 0 1", [] { return SetReportRate(2); });
    row("no click: the mouse has the last word", "rate q1 4", false, "4 0 1");
}

/** A click in the microseconds in which a reply is on its way from the library into the record. */
void DeviceLinkTest::aSetterMeetsAReply()
{
    QFETCH(QStringList, onTheMouse);
    QFETCH(bool, isAnnounced);
    QFETCH(Setter, click);
    QFETCH(QString, rateLevelLod);
    const auto held = [](const FlashDataMap &record) {
        return QStringLiteral("%1 %2 %3").arg(record.ReportRate).arg(record.DpiCurrentLevel).arg(record.Lod);
    };
    connectMouse(Between::callback);
    // What the mouse will change is what the program set last.
    QVERIFY(SetReportRate(8) && SetDpiCurrentLevel(5) && SetLod(2));
    QVERIFY(SetReportRate(1) && SetDpiCurrentLevel(0) && SetLod(1));
    QVERIFY(ConnectedMouse::isWritten("q1"));
    const int before = written();
    if (click)
        WorkingRecord::instance().settle(); // some report has come since

    Between::arm(click, isAnnounced);
    VirtualMice::tell(onTheMouse);
    if (!isAnnounced)
        UsbServer_ReadAllFlashData();
    QTRY_COMPARE(Between::isArmed(), false);
    QTRY_COMPARE(held(WorkingRecord::instance().copy()), rateLevelLod);
    QVERIFY(ConnectedMouse::isWritten("q1"));
    if (!click)
        QCOMPARE(written(), before);
    // The next change takes along whatever the program has wrong.
    QVERIFY(SetDebounceTime(19) && SetDebounceTime(20));
    QTRY_COMPARE(int{VirtualMice::record("q1").DebounceTime}, 20);
    QVERIFY(ConnectedMouse::isWritten("q1"));
    QCOMPARE(held(VirtualMice::record("q1")), rateLevelLod);
}

void DeviceLinkTest::twoRereadsInThreeSeconds()
{
    connectMouse();
    statusGate().start();
    QTest::qWait(Wait::scaled(3000) + 50);
    QVERIFY(statusGate().open());
    QVERIFY(!statusGate().open());
    QTest::qWait(Wait::scaled(3000) + 50);
    // A change of the stored profile is announced by the mouse as a change of everything.
    VirtualMice::tell({"profile", "q1", "2"});
    QTRY_VERIFY(RereadPending);
    QVERIFY(ReconnectRequested);
}

/** The record that a reset waits for never comes, the user goes back and takes the other mouse. */
void DeviceLinkTest::resetOfOneMouseSparesTheNext()
{
    const auto connectTo = [](int model) {
        ConnectedMouse::select(model);
        return ConnectedMouse::read(false);
    };
    QVERIFY(connectTo(1));
    QVERIFY(SetMacro(4, {6, 0, 1}, {2, "Ab", 2, {{0, 1, 4, 10}, {1, 1, 4, 0}}}));
    QTRY_COMPARE(int{VirtualMice::record("q2").MacroSlots[4].EventCount}, 2);
    ReportLink::end();

    QVERIFY(connectTo(0));
    VirtualMice::tell({"fault", "q1", "drop", "1000000"});
    const std::array<std::uint8_t, 5> reset{0, 9, 0, 0, 0};
    runOnThread([&reset] { dispatchReport(reset.data(), 5, nullptr, 0); });
    ReportLink::end();

    QVERIFY(connectTo(1));
    QVERIFY(SetReportRate(4));
    QTRY_COMPARE(int{VirtualMice::record("q2").ReportRate}, 4);
    QCOMPARE(int{VirtualMice::record("q2").MacroSlots[4].EventCount}, 2);
}

/** A product whose third button is a key combination from the factory on. */
void DeviceLinkTest::resetSparesCombinationsOfTheProduct()
{
    ProductCopy copy;
    copy.change("usersetting/Config.ini",
                [](QByteArray content) { return content.replace("KeyParam3=0x01,", "KeyParam3=0x05,"); });
    const ProductCopy::Result result = copy.run("combinationsAfterAReset");
    QVERIFY2(result.exitCode == 0, result.log.constData());
    QCOMPARE(result.told, QString("0 2 2"));
}

/** Tells how many events the combinations of the second, the third and the last button have after a reset. */
void DeviceLinkTest::combinationsAfterAReset()
{
    if (!ProductCopy::isCopy())
        QSKIP("runs in the copy that resetSparesCombinationsOfTheProduct makes");
    connectMouse();
    const std::array<int, 3> slots{1, 2, 15};
    for (const int slot : slots)
        QVERIFY(SetKeySequence(slot, {5, 0, 0}, {2, {0, 0, 0}, {{0, 1, 4, 10}, {1, 1, 4, 10}}}));
    QTRY_COMPARE(int{VirtualMice::record("q1").KeySequences[15].EventCount}, 2);
    LinkUp = false;
    const std::array<std::uint8_t, 5> reset{0, 9, 0, 0, 0};
    runOnThread([&reset] { dispatchReport(reset.data(), 5, nullptr, 0); });
    QTRY_VERIFY(LinkUp);
    QStringList counts;
    for (const int slot : slots)
        counts << QString::number(WorkingRecord::instance().copy().KeySequences[slot].EventCount);
    ProductCopy::tell(counts.join(' '));
}

/** It never freezes the program: a debug build ends and says why, any other says why and goes on. */
void DeviceLinkTest::aBlockingSignalOnTheGuiThread()
{
    const ProductCopy::Result result = ProductCopy().run("blockingSignal", 10000);
#ifdef QT_NO_DEBUG
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.log.contains("not sent"), result.log.constData());
#else
    QVERIFY2(result.log.contains("waits for itself"), result.log.constData());
#endif
}

void DeviceLinkTest::blockingSignal()
{
    if (!ProductCopy::isCopy())
        QSKIP("runs in the copy that aBlockingSignalOnTheGuiThread makes");
    qInstallMessageHandler(nullptr); // to standard error
    connect(
        postMsg(), &PostMsg::SigForm, this, [] {}, Qt::BlockingQueuedConnection);
    postMsg()->postBlocking(&PostMsg::SigForm);
}

// Cache files --------------------------------------------------------------------------------------------------------

void DeviceLinkTest::cacheFile()
{
    const QString name = deviceCacheName(18, 1);
    QCOMPARE(name, QStringLiteral("Device_CID12_MID01.bin"));
    FlashDataMap record{};
    for (std::size_t byte = 0; byte < flashDataMapSize; ++byte)
        reinterpret_cast<unsigned char *>(&record)[byte] = static_cast<unsigned char>(byte * 31);
    SaveDeviceCache(name, record);
    QFile file(UserFolders::path(UserFolders::Folder::DeviceInfo) + "/" + name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    QCOMPARE(content.size(), 10432);
    QCOMPARE(content.left(4).toHex(), QByteArray("000028bc"));
    QCOMPARE(content.mid(4), bytesOf(record));
    FlashDataMap read{};
    QVERIFY(LoadDeviceCache(name, read));
    QCOMPARE(bytesOf(read), bytesOf(record));
    SaveDeviceCache(QString(), record);
    QVERIFY(!LoadDeviceCache(QString(), read));
}

void DeviceLinkTest::damagedCache_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray length = QByteArray::fromHex("000028bc");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("shorter than its length") << length;
    QTest::newRow("one byte short") << length + QByteArray(10427, 'x');
    QTest::newRow("one byte long") << length + QByteArray(10429, 'x');
    QTest::newRow("a length of 4 GiB") << QByteArray::fromHex("ffffffff") + QByteArray(10428, 'x');
    QTest::newRow("a length that is too small") << QByteArray::fromHex("00000010") + QByteArray(10428, 'x');
}

void DeviceLinkTest::damagedCache()
{
    QFETCH(QByteArray, content);
    const QString name = deviceCacheName(18, 2);
    QFile file(UserFolders::path(UserFolders::Folder::DeviceInfo) + "/" + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    FlashDataMap record{};
    record.ReportRate = 77;
    QVERIFY(!LoadDeviceCache(name, record));
    QCOMPARE(int{record.ReportRate}, 77);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content); // what was there is for somebody to look at
}

HALVARION_TEST_MAIN(DeviceLinkTest)
#include "tst_devicelink.moc"
