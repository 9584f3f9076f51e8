/**
 * Any record on the pages that show it, as a cache file or another build of the library could bring it. Showing a
 * record is no change: it neither asks the mouse for anything nor leaves a trace in the working record.
 */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "lighting/LampLight.h"
#include "sensor/Sensor.h"

#include <QApplication>

#include <cstring>

namespace {

using RecordBytes = std::array<std::uint8_t, flashDataMapSize>;

/** The pages as the device window has them. They live as long as the process. */
struct Pages
{
    Pages()
    {
        FuzzHome::instance();
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application = new QApplication(count, arguments);
        sensor = new Sensor;
        light = new LampLight;
        DeviceWritesEnabled = true;
        QObject::connect(postMsg(), &PostMsg::SigMouseOffLineo,
                         [](int) { require(false, "showing a record asks nothing of the mouse"); });
    }

    static Pages &instance()
    {
        static auto *const pages = new Pages;
        return *pages;
    }

    int count = 1;
    char name[6] = "pages";
    char *arguments[2] = {name, nullptr};
    QApplication *application;
    Sensor *sensor;
    LampLight *light;
};

void select(FuzzInput &input)
{
    DeviceAllInfo info;
    info.ModelIndex = input.byte() % 4;
    info.ReceiverClass = input.byte() % 6;
    info.IsCorded = input.byte() % 2 == 1;
    SelectInfo().set(info);
}

RecordBytes bytesOf(const FlashDataMap &record)
{
    RecordBytes bytes;
    std::memcpy(bytes.data(), &record, bytes.size());
    return bytes;
}

/** The settings head is given in full as far as the input goes, the rest of a record in stretches. */
FlashDataMap recordFrom(FuzzInput &input)
{
    RecordBytes bytes{};
    const auto head = input.bytes();
    std::copy(head.begin(), head.end(), bytes.begin());
    input.patch(bytes);
    FlashDataMap record{};
    std::memcpy(&record, bytes.data(), sizeof record);
    return record;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Pages &pages = Pages::instance();
    FuzzInput input(data, size);
    const FlashDataMap before = WorkingRecord::instance().copy();
    select(input);
    constexpr int most = 4;
    for (int report = 0; report < most && !input.isEmpty(); ++report) {
        switch (input.byte() % 5) {
        case 0:
            pages.sensor->SlotUpDataReportRate(input.byte());
            break;
        case 1:
            pages.sensor->SlotUpDataDPI(input.byte());
            break;
        case 2:
            pages.sensor->SlotUpDataDPILed(recordFrom(input));
            break;
        default:
            const FlashDataMap record = recordFrom(input);
            pages.sensor->SlotUpDataSenSorUISensor(record);
            pages.light->SlotUpDataLightUILight(record);
            require(SensorUiLoaded && LightUiLoaded, "a record ends the wait for it");
        }
        require(!SensorUiUpdating && !LightUiUpdating, "a shown record leaves the pages to the user");
    }
    require(bytesOf(before) == bytesOf(WorkingRecord::instance().copy()), "showing a record changes none");
    return 0;
}
