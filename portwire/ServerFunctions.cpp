#include "portwire/Library.h"
#include "portwire/link/ImageLayout.h"

using namespace portwire;

namespace {

void addJob(Job::Kind kind, ReportCode code, std::vector<std::uint8_t> payload = {}, bool isForReceiver = false)
{
    if (const auto link = Library::instance().link())
        link->add({kind, {code, 0, 0, std::move(payload)}, isForReceiver});
}

/** Reads a group of the settings block; the answer comes as a report with the group's address as selector. */
void addRead(std::size_t address, std::size_t length)
{
    if (const auto link = Library::instance().link())
        link->add(
            {Job::Kind::Read,
             {ReportCode::ReadFlash, static_cast<std::uint16_t>(address), 0, {static_cast<std::uint8_t>(length)}}});
}

} // namespace

void UsbServerC_Start(const char *path, const char *, PortwireReportCallback callback)
{
    Library::instance().startLink(path, callback);
}

void UsbServer_Exit(void) { Library::instance().endLink(); }

void UsbServer_SetPCDriverStatus(int on)
{
    addJob(Job::Kind::Tell, ReportCode::ProgramStatus, {static_cast<std::uint8_t>(on ? 1 : 0)});
}

void UsbServer_ReadAllFlashData(void) { addJob(Job::Kind::WholeRecord, ReportCode::ReadFlash); }

void UsbServer_ReadVersion(void) { addJob(Job::Kind::Read, ReportCode::MouseVersion); }

void UsbServer_ReadConfig(void) { addJob(Job::Kind::Read, ReportCode::CurrentConfig); }

void UsbServer_ReadBatteryLevel(void) { addJob(Job::Kind::Read, ReportCode::Battery); }

void UsbServer_ReadDPILed(void) { addRead(ImageLayout::dpiIndicator, ImageLayout::dpiIndicatorSize); }

void UsbServer_ReadLedBar(void) { addRead(ImageLayout::light, ImageLayout::lightSize); }

void UsbServer_ReadCurrentDPI(void) { addRead(ImageLayout::dpiCurrentLevel, 1); }

void UsbServer_ReadReportRate(void) { addRead(ImageLayout::reportRate, 1); }

void UsbServer_ReadDonglePairStatus(void) { addJob(Job::Kind::Read, ReportCode::PairingStatus, {}, true); }

void UsbServer_SetCurrentConfig(uint8_t index) { addJob(Job::Kind::SelectProfile, ReportCode::SelectConfig, {index}); }

void UsbServer_SetClearSetting(void) { addJob(Job::Kind::FactoryReset, ReportCode::FactoryReset); }

void UsbServer_SetBatteryOptimizeSection(const int *table21)
{
    constexpr int values = 21;
    if (!table21)
        return;
    std::vector<std::uint8_t> curve;
    for (int i = 0; i < values; ++i) {
        curve.push_back(static_cast<std::uint8_t>(table21[i] & 0xFF));
        curve.push_back(static_cast<std::uint8_t>(table21[i] >> 8 & 0xFF));
    }
    Library::instance().setBatteryCurve(std::move(curve));
}

void UsbServer_EnterDonglePairOnlyCid(uint8_t cid) { addJob(Job::Kind::Tell, ReportCode::EnterPairing, {cid}, true); }
