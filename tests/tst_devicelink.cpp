#include "devicelink/DeviceSetters.h"
#include "devicelink/StatusGate.h"
#include "devicelink/Worker.h"
#include "productdata/ModelData.h"
#include "productdata/UserFolders.h"
#include "support/ConnectedMouse.h"
#include "support/ProductCopy.h"
#include "support/Rows.h"
#include "support/TestHome.h"

namespace {

using Setter = std::function<bool()>;

/** A setter refuses when the mouse doesn't answer in time, as it may on a busy machine; a user would click again. */
bool insist(const Setter &set)
{
    for (int tries = 0; tries < 100; ++tries) {
        if (set())
            return true;
    }
    return false;
}

/** A report with this code as the library hands it over. */
void dispatch(std::uint8_t code, const QByteArray &payload = {})
{
    const std::array<std::uint8_t, 5> header{0, code, 0, 0, 0};
    const auto *const bytes = reinterpret_cast<const std::uint8_t *>(payload.constData());
    ConnectedMouse::runOnThread([&] { dispatchReport(header.data(), 5, bytes, std::uint32_t(payload.size())); });
}

/** Between the library and the dispatcher: lets something happen when a settings reply has left the one for the other.
 */
struct Between
{
    static inline Setter onReply;
    static inline std::atomic<bool> losesAnnouncements{false};
    static inline std::atomic<bool> isArmed{false};

    static void callback(const std::uint8_t *header, int headerLength, const std::uint8_t *payload,
                         std::uint32_t length)
    {
        if (header[1] == 10 && losesAnnouncements)
            return;
        const bool isMeant = header[1] == 8 && isArmed;
        if (isMeant && onReply)
            QMetaObject::invokeMethod(
                qApp, [] { insist(onReply); }, Qt::BlockingQueuedConnection);
        dispatchReport(header, headerLength, payload, length);
        if (isMeant)
            isArmed = false;
    }
};

} // namespace

Q_DECLARE_METATYPE(Setter)

/** Between the pages and the library: setters and the report dispatcher. */
class DeviceLinkTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        UserFolders::prepare();
        VirtualMice::restoreScene();
        ConnectedMouse::select(0);
    }
    void cleanup()
    {
        ConnectedMouse::forget();
        SensorUiUpdating = false;
        ReconnectRequested = false;
        RereadPending = false;
    }
    void setters();
    void dispatcherDropsWhatCannotBe();
    void aSetterMeetsAReply_data();
    void aSetterMeetsAReply();
    void passInTheMiddleOfASelection();
    void twoRereadsInThreeSeconds();
    void resetOfOneMouseSparesTheNext();
    void resetSparesCombinationsOfTheProduct();

private:
    static void connectMouse(PortwireReportCallback callback = dispatchReport)
    {
        QVERIFY(ConnectedMouse::read(false, callback));
        QCOMPARE(bytesOf(WorkingRecord::instance().copy()), bytesOf(VirtualMice::record("q1")));
    }
};

/** What no control does; the pages' tests drive the others. */
void DeviceLinkTest::setters()
{
    connectMouse();
    QVERIFY(insist([] { return SetKeyFunction(15, 10, 1, 2) && SetDpiLedMode(2) && SetDpiLedMode(0); }));
    const FlashDataMap record = WorkingRecord::instance().copy();
    QCOMPARE(bytesOf(record.KeyFunctions[15]).toHex(), QByteArray("0a0102"));
    // The effect is there again when it is switched on.
    QVERIFY(record.DpiLedMode == 2 && record.DpiLedOn == 0);
    // The mouse holds the very record of the program: what was meant and nothing else was written.
    QTRY_COMPARE(bytesOf(VirtualMice::record("q1")), bytesOf(record));
    // What is out of range is refused.
    for (const int index : {-1, 8, 1000}) {
        QVERIFY(!SetDpiLevelCode(index, 1, 1, 1));
        QVERIFY(!SetDpiLevelColor(index, 1, 1, 1));
        QVERIFY(!SetDpiLevelPair({}, {}, index, 0, 0));
        QVERIFY(!SetKeyFunction(index * 2, 1, 1, 1));
    }
    QVERIFY(!SetDpiLevelPair({}, {}, 0, 1, 8));
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), bytesOf(record));
}

/** No cable carries 4000 Hz, whatever a report says, and a report of nothing forgets nothing. */
void DeviceLinkTest::dispatcherDropsWhatCannotBe()
{
    connectMouse();
    const QByteArray before = bytesOf(WorkingRecord::instance().copy());
    const auto reportRate4000 = [](bool isCorded) {
        SelectInfo().update([isCorded](DeviceAllInfo &info) { info.IsCorded = isCorded; });
        dispatch(8, QByteArray(1, 32));
    };
    reportRate4000(true);
    QCOMPARE(bytesOf(WorkingRecord::instance().copy()), before);
    reportRate4000(false);
    QCOMPARE(int{WorkingRecord::instance().copy().ReportRate}, 32);
    QTRY_COMPARE(int{VirtualMice::record("q1").ReportRate}, 32);
    QTRY_COMPARE(SelectInfo().get().MouseVersion, QString("v1.12"));
    VirtualMice::tell({"sleep", "q1"});
    dispatch(18); // and then it can't be asked
    QCOMPARE(SelectInfo().get().MouseVersion, QString("v1.12"));
    QCOMPARE(ModelData::mouseVersion(0), QString("v1.12"));
}

void DeviceLinkTest::aSetterMeetsAReply_data()
{
    // isAnnounced: else the mouse's word of that gets lost, and the program reads on its own
    // click: when the reply has left the library and the program doesn't have it yet
    const Rows<QString, bool, QString, Setter> row("onTheMouse", "isAnnounced", "rateLevelLod", "click");
    row("the same field", "rate q1 4", true, "2 0 1", [] { return SetReportRate(2); });
    row("there and back", "rate q1 4", true, "1 0 1", [] { return SetReportRate(2) && SetReportRate(1); });
    row("another field", "dpi q1 3", true, "1 3 2", [] { return SetLod(2); });
    row("the same and another", "dpi q1 3", true, "1 1 2", [] { return SetLod(2) && SetDpiCurrentLevel(1); });
    row("whole record", "rate q1 4", false, "2 0 1", [] { return SetReportRate(2); });
    row("no click: the mouse has the last word", "rate q1 4", false, "4 0 1", {});
}

/** A click in the microseconds in which a reply is on its way from the library into the record. */
void DeviceLinkTest::aSetterMeetsAReply()
{
    QFETCH(QString, onTheMouse);
    QFETCH(bool, isAnnounced);
    QFETCH(Setter, click);
    QFETCH(QString, rateLevelLod);
    const auto held = [](const FlashDataMap &record) {
        return QStringLiteral("%1 %2 %3").arg(record.ReportRate).arg(record.DpiCurrentLevel).arg(record.Lod);
    };
    connectMouse(Between::callback);
    // What the mouse will change is what the program set last.
    QVERIFY(insist([] { return SetReportRate(8) && SetDpiCurrentLevel(5) && SetLod(2); }));
    QVERIFY(insist([] { return SetReportRate(1) && SetDpiCurrentLevel(0) && SetLod(1); }));
    QVERIFY(ConnectedMouse::isWritten("q1"));
    const int before = VirtualMice::count("written");
    if (click)
        WorkingRecord::instance().settle(); // some report has come since

    Between::onReply = click;
    Between::losesAnnouncements = !isAnnounced;
    Between::isArmed = true;
    VirtualMice::tell(onTheMouse.split(' '));
    if (!isAnnounced)
        UsbServer_ReadAllFlashData();
    QTRY_VERIFY(!Between::isArmed);
    QTRY_COMPARE(held(WorkingRecord::instance().copy()), rateLevelLod);
    QVERIFY(ConnectedMouse::isWritten("q1"));
    if (!click)
        QCOMPARE(VirtualMice::count("written"), before);
    // The next change takes along whatever the program has wrong.
    QVERIFY(insist([] { return SetDebounceTime(19) && SetDebounceTime(20); }));
    QTRY_COMPARE(int{VirtualMice::record("q1").DebounceTime}, 20);
    QVERIFY(ConnectedMouse::isWritten("q1"));
    QCOMPARE(held(VirtualMice::record("q1")), rateLevelLod);
}

/** The GUI thread has set the selection, and not yet the path of the library's calls. */
void DeviceLinkTest::passInTheMiddleOfASelection()
{
    ConnectedMouse::select(1);
    const QByteArray former = DevicePath().get();
    ConnectedMouse::select(0);
    DevicePath().set(former);
    VirtualMice::tell({"rate", "q1", "4"});
    const FlagScope open(DeviceWindowOpen);
    Worker worker;
    worker.request();
    QTRY_COMPARE(int{WorkingRecord::instance().copy().ReportRate}, 4);
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
    QVERIFY(insist([] { return SetMacro(4, {6, 0, 1}, {2, "Ab", 2, {{0, 1, 4, 10}, {1, 1, 4, 0}}}); }));
    QTRY_COMPARE(int{VirtualMice::record("q2").MacroSlots[4].EventCount}, 2);
    ReportLink::end();

    QVERIFY(connectTo(0));
    VirtualMice::tell({"fault", "q1", "drop", "1000000"});
    dispatch(9); // the mouse says that it has its factory settings
    ReportLink::end();

    QVERIFY(connectTo(1));
    QVERIFY(insist([] { return SetReportRate(4); }));
    QTRY_COMPARE(int{VirtualMice::record("q2").ReportRate}, 4);
    QCOMPARE(int{VirtualMice::record("q2").MacroSlots[4].EventCount}, 2);
}

/** A product whose third button is a key combination from the factory on; what is tested runs in a copy of it. */
void DeviceLinkTest::resetSparesCombinationsOfTheProduct()
{
    if (!ProductCopy::isCopy()) {
        ProductCopy copy;
        copy.change("usersetting/Config.ini",
                    [](QByteArray content) { return content.replace("KeyParam3=0x01,", "KeyParam3=0x05,"); });
        const ProductCopy::Result result = copy.run(QTest::currentTestFunction());
        QVERIFY2(result.exitCode == 0, result.log.constData());
        return;
    }
    connectMouse();
    const std::array<int, 3> slots{1, 2, 15};
    for (const int slot : slots)
        QVERIFY(insist([slot] { return SetKeySequence(slot, {5, 0, 0}, {2, {}, {{0, 1, 4, 10}, {1, 1, 4, 10}}}); }));
    QTRY_COMPARE(int{VirtualMice::record("q1").KeySequences[15].EventCount}, 2);
    LinkUp = false;
    dispatch(9);
    QTRY_VERIFY(LinkUp);
    QStringList counts;
    for (const int slot : slots)
        counts << QString::number(WorkingRecord::instance().copy().KeySequences[slot].EventCount);
    QCOMPARE(counts.join(' '), QString("0 2 2"));
}

HALVARION_TEST_MAIN(DeviceLinkTest)
#include "tst_devicelink.moc"
