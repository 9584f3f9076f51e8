#include "app/ConnectWait.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceCache.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "ui/UpDataParam.h"

namespace {

/** Twelve looks at the pages, half a second apart. */
constexpr int pagesTime = 12 * 500;
/** A mouse that announced many changes gets time to finish them before the user goes on. */
constexpr int settleTime = 2000;

using ConnectWait::Notice;

/** The user left, or a second connect began and started the time anew: it is for that one to close the prompt. */
bool isOvertaken(const UpDataParam &prompt) { return !DeviceEntered || prompt.isTimeRunning(); }

bool waitForPages(const UpDataParam &prompt)
{
    Wait::servingUntil([&prompt] { return allPagesLoaded() || isOvertaken(prompt); }, pagesTime);
    return allPagesLoaded();
}

/** The user may have gone back, or the device may have been pulled, while this stood in a wait. */
std::optional<Notice> unlessLeft(Notice notice)
{
    if (!DeviceEntered || Wait::isEnding())
        return std::nullopt;
    return notice;
}

std::optional<Notice> afterReread(UpDataParam &prompt)
{
    const bool ready = waitForPages(prompt);
    Wait::servingUntil([&prompt] { return isOvertaken(prompt); }, settleTime);
    if (prompt.isTimeRunning())
        return std::nullopt;
    prompt.close();
    return ready ? std::nullopt : unlessLeft(Notice::Offline);
}

std::optional<Notice> afterConnect(UpDataParam &prompt)
{
    const bool ready = waitForPages(prompt);
    if (prompt.isTimeRunning())
        return std::nullopt;
    if (ready)
        clearPagesLoaded();
    prompt.close();
    FlashDataMap ignored{};
    // The first connect of a model makes its cache.
    if (DeviceOnline && !LoadDeviceCache(LoadFileName().get(), ignored))
        SaveDeviceCache(SaveFileName().get(), WorkingRecord::instance().copy());
    return ready ? std::nullopt : unlessLeft(Notice::Timeout);
}

std::optional<Notice> afterLoss(UpDataParam &prompt)
{
    FlashDataMap cached{};
    if (LoadDeviceCache(LoadFileName().get(), cached)) {
        postMsg()->post(&PostMsg::SigUpDataLightUIA, cached);
        postMsg()->post(&PostMsg::SigUpDataSensorUIB, cached);
        postMsg()->post(&PostMsg::SigUpDataButtonUIC, cached);
        postMsg()->post(&PostMsg::SigFormB);
    }
    prompt.close();
    return unlessLeft(Notice::Offline);
}

} // namespace

std::optional<Notice> ConnectWait::onTimeUp(UpDataParam &prompt)
{
    if (prompt.rereadMark())
        return afterReread(prompt);
    return LinkUp ? afterConnect(prompt) : afterLoss(prompt);
}
