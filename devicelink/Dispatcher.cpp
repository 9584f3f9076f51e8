#include "devicelink/Dispatcher.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/ReceiverClasses.h"
#include "devicelink/ReceiverLight.h"
#include "devicelink/Report.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/SettingsReplies.h"
#include "devicelink/StatusGate.h"
#include "devicelink/WorkingRecord.h"
#include "portwire/portwire.h"
#include "productdata/ConfigStore.h"
#include "productdata/FirmwareImages.h"
#include "productdata/ModelData.h"

#include <QDebug>

#include <cstring>

namespace {

std::atomic<int> dispatching{0};

void onBattery(const Report &report)
{
    std::array<std::uint8_t, 4> status{};
    GetDeviceBatteryStatus(report.padded().data(), status.data());
    const int percent = std::min<int>(status[0], 100);
    postMsg()->postBlocking(&PostMsg::SigBattery, status[1] != 0, percent, ShowBatteryValue == 1);
}

/**
 * The receiver's defaults are no settings of the mouse and are set from here. They are shown as they were set, without
 * a question back: the receiver has passed this report on a moment ago, and hears.
 */
void onReset(const Report &report)
{
    const DeviceAllInfo selected = SelectInfo().get();
    const QByteArray path = DevicePath().get();
    const QList<int> defaults = ConfigStore::instance()->numberList(selectedSection(), QStringLiteral("Adveanced"));
    const int longRange = defaults.value(0, -1);
    const int light = defaults.value(1, -1);
    if (light >= 1 && light <= 255 && !selected.IsCorded && selected.ReceiverClass == ReceiverClasses::receiver4K) {
        DongleRGB rgb = DongleRgb().get();
        rgb.bytes[0] = static_cast<std::uint8_t>(light);
        DongleRgb().set(rgb);
        UsbFinderC_Set4KDongleRGB(path.constData(), &rgb);
        showReceiverLight();
    }
    if (longRange == 0 || longRange == 1) {
        UsbFinderC_SetLongRangeMode(path.constData(), longRange);
        postMsg()->postBlocking(&PostMsg::SigLongRangeMode, longRange == 1);
    }
    readAfterReset(report);
}

void requestReread()
{
    if (!statusGate().open())
        return;
    // In this order: the poll that finds the request may start the pass in between, which without the mark would find
    // nothing changed and leave the mark to a later connect.
    RereadPending = true;
    ReconnectRequested = true;
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
    const std::uint16_t told = UsbFinderC_GetVersion(DevicePath().get().constData());
    if (told == 0) {
        // It fell asleep since. Whoever looks for newer firmware would take "v0.0" for one that is old.
        qWarning() << "a mouse that told its version doesn't answer the question for it";
        return;
    }
    const QString version = FirmwareImages::versionText(told);
    SelectInfo().update([&version](DeviceAllInfo &selected) { selected.MouseVersion = version; });
    postMsg()->post(&PostMsg::SigSetver, 0);
    ModelData::storeMouseVersion(SelectInfo().get().ModelIndex, version);
}

void onReceiverLight(const Report &report)
{
    DongleRGB rgb = DongleRgb().get();
    if (report.payloadLength == sizeof rgb.bytes)
        std::memcpy(rgb.bytes, report.payload, sizeof rgb.bytes);
    DongleRgb().set(rgb);
    showReceiverLight();
}

void onLongRange(const Report &report)
{
    if (report.payloadLength == 10)
        postMsg()->postBlocking(&PostMsg::SigLongRangeMode, false);
}

struct ReportKind
{
    std::uint8_t code;
    void (*handle)(const Report &);
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
    const Report report{header,
                        headerLength,
                        payload,
                        payload ? payloadLength : 0,
                        ReportLink::generation(),
                        WorkingRecord::instance().settled()};
    for (const ReportKind &kind : reportKinds) {
        if (kind.code == report.headerByte(1)) {
            kind.handle(report);
            break;
        }
    }
    WorkingRecord::instance().settle();
    --dispatching;
}

bool isDispatching() { return dispatching > 0; }
