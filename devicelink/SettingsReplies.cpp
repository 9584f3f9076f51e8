#include "devicelink/SettingsReplies.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceCache.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/ReceiverClasses.h"
#include "devicelink/ReceiverLight.h"
#include "devicelink/Report.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "portwire/portwire.h"
#include "productdata/ConfigStore.h"

#include <algorithm>
#include <utility>

namespace {

/**
 * Two follow-ups of a factory reset: the next whole record skips the receiver and loses its keys and macros. They count
 * until the link of the reset is ended: the whole record after that is another mouse's, whose keys and macros are
 * nobody's to clear. A link that only replaces it, as for a re-read, goes on with them.
 */
bool ResetFollowUp = false; // these three: reports only, and they come one at a time
bool ClearAfterReset = false;
unsigned resetGeneration = 0;

constexpr std::uint32_t imageSize = 6912;
/** A long-range byte that no receiver gives; a library that writes nothing leaves it. */
constexpr std::uint8_t notWritten = 's';

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
    } while (record.version() != shown && ReportLink::isCurrent(report.generation));
}

/** Hands the record to the library if it is still that of the mouse which sent the report. */
void sendAgain(const Report &report)
{
    ReportLink::whileCurrent(report.generation, [] { WorkingRecord::instance().sendAgain(); });
}

/**
 * Puts what a report tells in the working record, and does what there is to do when a setter came in between; see
 * WorkingRecord. Nothing is sent otherwise: reading a mouse must not write to it.
 * \return false if a setter had changed the same.
 */
template<typename Change>
bool takeOver(const Report &report, Change change)
{
    const WorkingRecord::Met met = WorkingRecord::instance().takeReport(report.since, change);
    if (met == WorkingRecord::Met::AnotherByte)
        sendAgain(report);
    else if (met == WorkingRecord::Met::SameByte)
        ReportLink::whileCurrent(report.generation, UsbServer_ReadAllFlashData);
    return met != WorkingRecord::Met::SameByte;
}

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
        DongleRGB rgb = DongleRgb().get();
        UsbFinderC_Get4KDongleRGBValue(path.constData(), &rgb);
        DongleRgb().set(rgb);
        if (rgb.bytes[0] != 0)
            showReceiverLight();
    }
    std::uint8_t mode = notWritten;
    UsbFinderC_GetLongRangeMode(path.constData(), &mode);
    if (mode != notWritten && mode != 0)
        postMsg()->postBlocking(&PostMsg::SigLongRangeMode, true);
}

void onWholeRecord(const Report &report)
{
    takeOver(report, [&report](FlashDataMap &record) { ProtocolDataParser(report.payload, &record); });

    const DeviceAllInfo selected = SelectInfo().get();
    // Not of an ended link: it would be the old device's record under the new one's name.
    ReportLink::whileCurrent(report.generation, [&selected] {
        if (!selected.Path.isEmpty())
            SaveFileName().set(deviceCacheName(selected.Cid, selected.DeviceKind));
    });
    UsbServer_ReadDPILed();
    UsbServer_ReadBatteryLevel();
    UsbServer_ReadVersion();
    UsbServer_ReadConfig();
    const bool isResetOver = ReportLink::hasEndedSince(resetGeneration);
    if (!std::exchange(ResetFollowUp, false) || isResetOver)
        askReceiver(selected, DevicePath().get());
    if (std::exchange(ClearAfterReset, false) && !isResetOver)
        clearKeysAndMacros();

    clearPagesLoaded();
    for (const auto page :
         {&PostMsg::SigUpDataLightUIButton, &PostMsg::SigUpDataLightLight, &PostMsg::SigUpDataLightSensor})
        showRecord(report, [page](const FlashDataMap &current) { postMsg()->postBlocking(page, current); });
    postMsg()->postBlocking(&PostMsg::SigForm);
    // While the pages were blocking us the user may have gone back and selected another device: the end of this record
    // must not pass for the end of that connect.
    ReportLink::whileCurrent(report.generation, [] {
        LinkUp = true;
        ConnectPending = false;
    });
}

void onReportRate(const Report &report)
{
    const std::uint8_t code = report.payload[0];
    if (SelectInfo().get().IsCorded && code >= 16)
        return; // a cable carries 1000 Hz at the most; the code belongs to a receiver
    const bool isTaken = takeOver(report, [code](FlashDataMap &record) { record.ReportRate = code; });
    showRecord(report, [](const FlashDataMap &current) {
        postMsg()->postBlocking(&PostMsg::SigUpDataReportRate, int{current.ReportRate});
    });
    if (isTaken)
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

struct SettingsReply
{
    std::uint8_t selector;
    std::uint32_t length;
    void (*handle)(const Report &);
};

/** Groups of settings by the low selector byte and their exact length; anything else isn't ours. */
constexpr std::array<SettingsReply, 5> settingsReplies = {{
    {0, imageSize, onWholeRecord},
    {0, 1, onReportRate},
    {4, 1, onCurrentDpi},
    {76, 8, onDpiLed},
    {160, 9, onLedBar},
}};

} // namespace

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

void readAfterReset(const Report &report)
{
    // The flags come first: the reply may be here before the call is back.
    ReportLink::whileCurrent(report.generation, [&report] {
        ClearAfterReset = true;
        ResetFollowUp = true;
        resetGeneration = report.generation;
        UsbServer_ReadAllFlashData();
    });
}
