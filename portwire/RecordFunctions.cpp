#include "portwire/Library.h"
#include "portwire/link/StatusPayload.h"

#include <cstring>

using namespace portwire;

namespace {

/** The working record is global data of the program; a copy doesn't change under a comparison. */
FlashDataMap copyOf(const FlashDataMap &record)
{
    FlashDataMap copy{};
    std::memcpy(&copy, &record, sizeof copy);
    return copy;
}

} // namespace

void ProtocolDataUpdate(const struct FlashDataMap *record)
{
    if (record)
        Library::instance().update(copyOf(*record));
}

void ProtocolDataReplace(const struct FlashDataMap *record)
{
    if (record)
        Library::instance().replace(copyOf(*record));
}

void ProtocolDataParser(const uint8_t *report, struct FlashDataMap *record)
{
    if (!report || !record)
        return;
    DeviceImage image;
    std::memcpy(image.data(), report, image.size());
    FlashDataMap decoded{};
    decodeImage(image, decoded);
    std::memcpy(record, &decoded, sizeof decoded);
    Library::instance().noteRecord(decoded);
}

void BufferToDPILed(const uint8_t *report, uint8_t *dpiLedMode)
{
    if (report && dpiLedMode)
        std::memcpy(dpiLedMode, report, 4);
}

void BufferToLedBar(const uint8_t *report, uint8_t *lightMode)
{
    if (report && lightMode)
        std::memcpy(lightMode, report, 7);
}

void GetDeviceBatteryStatus(const uint8_t *report, uint8_t *out4)
{
    if (report && out4)
        decodeBattery(report, out4);
}

void GetDeviceStatusChanged(const uint8_t *report, uint8_t *out7)
{
    if (report && out7)
        decodeChangedFlags(report, out7);
}
