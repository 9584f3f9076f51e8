/** Reports as another build of the library could hand them to the program's callback: nothing behind their ends. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"

#include <QCoreApplication>
#include <QSemaphore>

#include <cstring>
#include <thread>

namespace {

constexpr std::size_t imageSize = 6912;

/** Reports come on a thread that isn't the application's; so it is the application that has to live elsewhere. */
void startApplication()
{
    static QSemaphore started;
    std::thread([] {
        static int count = 1;
        static char name[] = "fuzz_dispatcher";
        static char *arguments[] = {name, nullptr};
        const QCoreApplication application(count, arguments);
        postMsg();
        started.release();
        QCoreApplication::exec();
    }).detach();
    started.acquire();
}

/** What the pages count on. */
void checkSignals()
{
    QObject::connect(postMsg(), &PostMsg::SigBattery, [](bool, int percent, bool) {
        require(percent >= 0 && percent <= 100, "a charge is a percentage");
    });
    QObject::connect(postMsg(), &PostMsg::SigUpDataReportRate, [](int code) {
        require(!SelectInfo().get().IsCorded || code < 16, "a cable has no rate of a receiver");
    });
    QObject::connect(postMsg(), &PostMsg::SigUpDataLightUIButton, [](const FlashDataMap &record) {
        for (const MacroSlot &macro : record.MacroSlots)
            require(macro.EventCount <= std::size(macro.Events) && macro.NameLength <= sizeof macro.Name,
                    "a macro stays in its slot");
        for (const KeySequence &sequence : record.KeySequences)
            require(sequence.EventCount <= std::size(sequence.Events), "a key sequence stays in its slot");
    });
}

void select(FuzzInput &input)
{
    DeviceAllInfo info;
    info.ModelIndex = input.byte() % 4;
    info.ReceiverClass = input.byte() % 6;
    info.IsCorded = input.byte() % 2 == 1;
    info.Cid = input.byte();
    info.DeviceKind = input.byte();
    SelectInfo().set(info);
}

void dispatch(const std::vector<std::uint8_t> &header, const std::vector<std::uint8_t> &payload)
{
    const FlashDataMap before = WorkingRecord::instance().copy();
    dispatchReport(header.data(), static_cast<int>(header.size()), payload.data(),
                   static_cast<std::uint32_t>(payload.size()));
    const FlashDataMap after = WorkingRecord::instance().copy();
    const bool mayChange = header.size() >= 2 && header[1] == 8;
    require(mayChange || std::memcmp(&before, &after, sizeof after) == 0, "only settings change the record");
}

/** A whole record is too long for an input: one of zeros with a few stretches changed. */
std::vector<std::uint8_t> wholeRecord(FuzzInput &input)
{
    std::vector<std::uint8_t> image(imageSize, 0);
    input.patch(image);
    return image;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool isStarted = [] {
        FuzzHome::instance();
        startApplication();
        checkSignals();
        return true;
    }();
    Q_UNUSED(isStarted)
    FuzzInput input(data, size);
    select(input);
    while (!input.isEmpty()) {
        const std::uint8_t form = input.byte();
        const auto header = input.bytes();
        const auto payload = form % 4 == 1 ? wholeRecord(input) : input.bytes();
        if (form % 4 == 2)
            dispatchReport(nullptr, static_cast<int>(header.size()), nullptr, input.word());
        else
            dispatch(header, payload);
    }
    // What one report leaves for the next is used up, so that each input starts from the same.
    dispatch({5, 8, 0, 0, 0, 0, 0, 0}, std::vector<std::uint8_t>(imageSize, 0));
    require(!isDispatching(), "every report has an end");
    return 0;
}
