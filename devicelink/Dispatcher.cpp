#include "devicelink/Dispatcher.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceCache.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/ReceiverClasses.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "productdata/ConfigStore.h"
#include "productdata/ModelData.h"

#include <QDebug>

#include <algorithm>
#include <cstring>

DongleRGB DongleRgb{};

namespace {

/** Two follow-ups of a factory reset: the next whole record skips the receiver and loses its keys and macros. */
std::atomic<bool> ResetFollowUp{false};
std::atomic<bool> ClearAfterReset{false};

/** Tells a report of an ended link from one of the present link. */
std::atomic<unsigned> linkGeneration{0};
std::atomic<int> dispatching{0};

/** Orders the starts and ends of the link. The library neither waits nor calls back in either. */
QMutex &linkMutex()
{
    static auto *const mutex = new QMutex;
    return *mutex;
}

constexpr std::uint32_t imageSize = 6912;
/** A long-range byte that no receiver gives; a library that writes nothing leaves it. */
constexpr std::uint8_t notWritten = 's';

/** One report as its handlers see it. Bytes beyond what arrived read as 0. */
struct Report
{
    const std::uint8_t *header;
    int headerLength;
    const std::uint8_t *payload;
    std::uint32_t payloadLength;
    unsigned generation;
    unsigned recordVersion; ///< of the working record when the report came

    std::uint8_t headerByte(int index) const { return header && index < headerLength ? header[index] : 0; }
    /** The beginning of the payload, filled up with zeros, for decoders that read a fixed number of bytes. */
    std::array<std::uint8_t, 64> padded() const
    {
        std::array<std::uint8_t, 64> bytes{};
        if (payload)
            std::memcpy(bytes.data(), payload, std::min<std::size_t>(payloadLength, bytes.size()));
        return bytes;
    }
};

void onBattery(const Report &report)
{
    std::array<std::uint8_t, 4> status{};
    GetDeviceBatteryStatus(report.padded().data(), status.data());
    const int percent = std::min<int>(status[0], 100);
    postMsg()->postBlocking(&PostMsg::SigBattery, status[1] != 0, percent, ShowBatteryValue == 1);
}

/**
 * Shows the working record, and shows it again when it was changed while the report stood in line for the GUI thread: a
 * click that was served in between would otherwise be painted over by the value from before it, and the mouse would
 * hold what the screen doesn't show. Each turn takes another change by the user, so this comes to an end.
 */
template<typename Show>
void showRecord(const Report &report, Show show)
{
    const WorkingRecord &record = WorkingRecord::instance();
    unsigned shown = 0;
    do {
        shown = record.version();
        show(record.copy());
    } while (record.version() != shown && report.generation == linkGeneration);
}

/** Hands the record to the library if it is still that of the mouse which sent the report. */
void sendAgain(const Report &report)
{
    const QMutexLocker locker(&linkMutex());
    if (report.generation == linkGeneration)
        WorkingRecord::instance().sendAgain();
}

/**
 * Puts what a report tells in the working record. The library has brought the report up to date with what was set until
 * then; a setter that came in between has its value on the way to the mouse while the record now holds another, so the
 * mouse is told again. Nothing is sent otherwise: reading a mouse must not write to it.
 */
template<typename Change>
void takeOver(const Report &report, Change change)
{
    WorkingRecord &record = WorkingRecord::instance();
    record.update(change);
    if (record.version() != report.recordVersion + 1)
        sendAgain(report);
}

// Settings replies ---------------------------------------------------------------------------------------------------

/** Buttons of type 5 (key combination) keep their sequences, from the first of them on; 16 if there is none. */
int firstKeptSequence()
{
    const QString section = selectedSection();
    for (int button = 1; button <= 6; ++button) {
        const QStringList parameters =
            ConfigStore::instance()->valueList(section, QStringLiteral("KeyParam") + QString::number(button));
        if (!parameters.isEmpty() && parameters.first() == QLatin1String("0x05"))
            return button - 1;
    }
    return 16;
}

void clearKeysAndMacros()
{
    const int keep = firstKeptSequence();
    WorkingRecord::instance().update([keep](FlashDataMap &record) {
        std::fill_n(record.KeySequences, keep, KeySequence{});
        std::fill(std::begin(record.MacroSlots), std::end(record.MacroSlots), MacroSlot{});
    });
}

void askReceiver(const DeviceAllInfo &selected, const QByteArray &path)
{
    if (!selected.IsCorded && selected.ReceiverClass == ReceiverClasses::receiver4K) {
        UsbFinderC_Get4KDongleRGBValue(path.constData(), &DongleRgb);
        if (DongleRgb.bytes[0] != 0)
            postMsg()->postBlocking(&PostMsg::SigRGBValue, &DongleRgb);
    }
    std::uint8_t mode = notWritten;
    UsbFinderC_GetLongRangeMode(path.constData(), &mode);
    if (mode != notWritten && mode != 0)
        postMsg()->postBlocking(&PostMsg::SigLongRangeMode, true);
}

void onWholeRecord(const Report &report)
{
    FlashDataMap record{};
    ProtocolDataParser(report.payload, &record);
    takeOver(report, [&record](FlashDataMap &working) { working = record; });

    const DeviceAllInfo selected = SelectInfo().get();
    // Not of an ended link: it would be the old device's record under the new one's name.
    if (report.generation == linkGeneration && !selected.Path.isEmpty())
        SaveFileName().set(deviceCacheName(selected.Cid, selected.DeviceKind));
    UsbServer_ReadDPILed();
    UsbServer_ReadBatteryLevel();
    UsbServer_ReadVersion();
    UsbServer_ReadConfig();
    if (!ResetFollowUp)
        askReceiver(selected, DevicePath().get());
    ResetFollowUp = false;
    if (ClearAfterReset.exchange(false))
        clearKeysAndMacros();

    clearPagesLoaded();
    for (const auto page :
         {&PostMsg::SigUpDataLightUIButton, &PostMsg::SigUpDataLightLight, &PostMsg::SigUpDataLightSensor})
        showRecord(report, [page](const FlashDataMap &current) { postMsg()->postBlocking(page, current); });
    postMsg()->postBlocking(&PostMsg::SigForm);
    // While the pages were blocking us the user may have gone back and selected another device: the end of this record
    // must not pass for the end of that connect.
    if (report.generation == linkGeneration) {
        LinkUp = true;
        ConnectPending = false;
    }
}

void onReportRate(const Report &report)
{
    const std::uint8_t code = report.payload[0];
    if (SelectInfo().get().IsCorded && code >= 16)
        return; // a cable carries 1000 Hz at the most; the code belongs to a receiver
    takeOver(report, [code](FlashDataMap &record) { record.ReportRate = code; });
    showRecord(report, [](const FlashDataMap &current) {
        postMsg()->postBlocking(&PostMsg::SigUpDataReportRate, int{current.ReportRate});
    });
    sendAgain(report);
}

void onCurrentDpi(const Report &report)
{
    const std::uint8_t level = report.payload[0];
    takeOver(report, [level](FlashDataMap &record) { record.DpiCurrentLevel = level; });
    showRecord(report, [](const FlashDataMap &current) {
        postMsg()->postBlocking(&PostMsg::SigUpDataDPI, int{current.DpiCurrentLevel});
    });
}

void onDpiLed(const Report &report)
{
    takeOver(report, [&report](FlashDataMap &record) { BufferToDPILed(report.payload, &record.DpiLedMode); });
    showRecord(report,
               [](const FlashDataMap &current) { postMsg()->postBlocking(&PostMsg::SigUpDataDPILed, current); });
}

void onLedBar(const Report &report)
{
    takeOver(report, [&report](FlashDataMap &record) { BufferToLedBar(report.payload, &record.LightMode); });
    showRecord(report,
               [](const FlashDataMap &current) { postMsg()->postBlocking(&PostMsg::SigUpDataLightLight, current); });
}

using Handler = void (*)(const Report &);

struct SettingsReply
{
    std::uint8_t selector;
    std::uint32_t length;
    Handler handle;
};

/** Groups of settings by the low selector byte and their exact length; anything else isn't ours. */
constexpr std::array<SettingsReply, 5> settingsReplies = {{
    {0, imageSize, onWholeRecord},
    {0, 1, onReportRate},
    {4, 1, onCurrentDpi},
    {76, 8, onDpiLed},
    {160, 9, onLedBar},
}};

void onSettings(const Report &report)
{
    if (report.headerByte(3) != 0 || !report.payload)
        return;
    for (const SettingsReply &reply : settingsReplies) {
        if (reply.selector == report.headerByte(4) && reply.length == report.payloadLength) {
            reply.handle(report);
            return;
        }
    }
}

// Other reports ------------------------------------------------------------------------------------------------------

void onReset(const Report &report)
{
    const DeviceAllInfo selected = SelectInfo().get();
    const QByteArray path = DevicePath().get();
    const QList<int> defaults = ConfigStore::instance()->numberList(selectedSection(), QStringLiteral("Adveanced"));
    const int longRange = defaults.value(0, -1);
    const int light = defaults.value(1, -1);
    if (light >= 1 && light <= 255 && !selected.IsCorded && selected.ReceiverClass == ReceiverClasses::receiver4K) {
        DongleRgb.bytes[0] = static_cast<std::uint8_t>(light);
        UsbFinderC_Set4KDongleRGB(path.constData(), &DongleRgb);
        postMsg()->postBlocking(&PostMsg::SigRGBValue, &DongleRgb);
    }
    if (longRange == 0 || longRange == 1) {
        UsbFinderC_SetLongRangeMode(path.constData(), longRange);
        postMsg()->postBlocking(&PostMsg::SigLongRangeMode, longRange == 1);
    }
    // After the end of the link the next whole record is another mouse's, whose keys and macros are nobody's to clear.
    if (report.generation != linkGeneration)
        return;
    // The flags come first: the reply may be here before the call is back.
    ClearAfterReset = true;
    ResetFollowUp = true;
    UsbServer_ReadAllFlashData();
}

void requestReread()
{
    if (!statusGate().open())
        return;
    ReconnectRequested = true;
    RereadPending = true;
}

struct StatusFlag
{
    std::size_t byte;
    void (*follow)();
};

/** What a changed flag asks for, in the order in which the flags are tested. Byte 4 has no use. */
constexpr std::array<StatusFlag, 6> statusFlags = {{
    {0, UsbServer_ReadCurrentDPI},
    {1, UsbServer_ReadReportRate},
    {6, UsbServer_ReadBatteryLevel},
    {5, UsbServer_ReadLedBar},
    {3, UsbServer_ReadDPILed},
    {2, requestReread},
}};

void onStatusChanged(const Report &report)
{
    std::array<std::uint8_t, 7> changed{};
    GetDeviceStatusChanged(report.padded().data(), changed.data());
    for (const StatusFlag &flag : statusFlags) {
        if (changed[flag.byte] != 0)
            flag.follow();
    }
}

void onConfig(const Report &report)
{
    const bool known = report.payloadLength == 1 && report.payload;
    postMsg()->postBlocking(&PostMsg::SigUpDataConfigUI, known ? 4 : 0, known ? int{report.payload[0]} : 0, known);
}

void onVersion(const Report &)
{
    const QString version = versionText(UsbFinderC_GetVersion(DevicePath().get().constData()));
    SelectInfo().update([&version](DeviceAllInfo &selected) { selected.MouseVersion = version; });
    postMsg()->post(&PostMsg::SigSetver, 0);
    ModelData::storeMouseVersion(SelectInfo().get().ModelIndex, version);
}

void onReceiverLight(const Report &) { postMsg()->postBlocking(&PostMsg::SigRGBValue, &DongleRgb); }

void onLongRange(const Report &report)
{
    if (report.payloadLength == 10)
        postMsg()->postBlocking(&PostMsg::SigLongRangeMode, false);
}

struct ReportKind
{
    std::uint8_t code;
    Handler handle;
};

constexpr std::array<ReportKind, 8> reportKinds = {{
    {4, onBattery},
    {8, onSettings},
    {9, onReset},
    {10, onStatusChanged},
    {14, onConfig},
    {18, onVersion},
    {21, onReceiverLight},
    {23, onLongRange},
}};

} // namespace

void dispatchReport(const std::uint8_t *header, int headerLength, const std::uint8_t *payload,
                    std::uint32_t payloadLength)
{
    ++dispatching;
    const Report report{header,         headerLength,
                        payload,        payload ? payloadLength : 0,
                        linkGeneration, WorkingRecord::instance().version()};
    for (const ReportKind &kind : reportKinds) {
        if (kind.code == report.headerByte(1)) {
            kind.handle(report);
            break;
        }
    }
    --dispatching;
}

void startReportLink(const char *path)
{
    startReportLinkIf([] { return true; }, path);
}

bool startReportLinkIf(const std::function<bool()> &wanted, const char *path)
{
    const QMutexLocker locker(&linkMutex());
    if (!wanted())
        return false;
    ++linkGeneration;
    UsbServerC_Start(path, path, dispatchReport);
    return true;
}

void endReportLink()
{
    const QMutexLocker locker(&linkMutex());
    ++linkGeneration;
    UsbServer_Exit();
    ResetFollowUp = false;
    ClearAfterReset = false;
}

bool isDispatching() { return dispatching > 0; }

void StatusGate::start()
{
    const QMutexLocker locker(&mutex);
    timer.start();
}

bool StatusGate::open()
{
    const QMutexLocker locker(&mutex);
    if (timer.isValid() && timer.elapsed() <= Wait::scaled(3000))
        return false;
    timer.start();
    return true;
}

StatusGate &statusGate()
{
    static auto *const gate = new StatusGate;
    return *gate;
}
