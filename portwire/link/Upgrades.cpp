#include "portwire/link/Upgrades.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace portwire {

namespace {

/* Messages of PortwireUpgradeCallback. */
constexpr std::uint8_t ofUpgrade = 7;
constexpr std::uint8_t isProgress = 1;
constexpr std::uint8_t isEnd = 2;

} // namespace

Upgrades::Upgrades(std::shared_ptr<Channels> onChannels) : channels(std::move(onChannels)) {}

Upgrades::~Upgrades()
{
    end();
    if (thread.joinable())
        thread.join();
}

void Upgrades::start(const FirmwareImage &image, PortwireUpgradeCallback callback, std::chrono::milliseconds patience)
{
    // A length beyond all images comes from no file that was meant; one byte more than the longest is judged the same.
    const std::size_t length = image.data ? std::min<std::size_t>(image.length, mostFirmware + 1) : 0;
    Order order{{image.data, image.data + length}, callback, patience};
    const std::lock_guard lock(mutex);
    if (hasEnded)
        return;
    if (isBusy) {
        qWarning("portwire: an upgrade is refused while another one is going on");
        refused.push_back(callback);
    } else {
        next = std::move(order);
        isBusy = true;
    }
    if (!thread.joinable())
        thread = std::thread([this] { run(); });
    changed.notify_all();
}

void Upgrades::end()
{
    std::unique_lock lock(mutex);
    if (!thread.joinable())
        return;
    hasEnded = true;
    changed.notify_all();
    changed.wait(lock, [this] { return isThreadOver || isInCallback; });
    if (!isThreadOver)
        return;
    thread.join(); // it has let go of the lock for good
    next.reset();
    refused.clear();
    isBusy = hasEnded = isThreadOver = false;
}

void Upgrades::run()
{
    std::unique_lock lock(mutex);
    while (!hasEnded) {
        callRefused(lock);
        if (!next) {
            changed.wait(lock, [this] { return hasEnded || next || !refused.empty(); });
            continue;
        }
        const Order order = *std::exchange(next, {});
        current = order.callback;
        lock.unlock();
        const bool isDone = UpgradeRun(channels, order.image, order.patience, *this).run();
        lock.lock();
        isBusy = false;
        call(lock, order.callback, isEnd, isDone ? 1 : 0);
    }
    isThreadOver = true;
    changed.notify_all();
}

/** Between the steps of the upgrade that is going on: whoever was refused shouldn't wait for its end. */
void Upgrades::callRefused(std::unique_lock<std::mutex> &lock)
{
    while (!refused.empty() && !hasEnded) {
        const PortwireUpgradeCallback callback = refused.front();
        refused.erase(refused.begin());
        call(lock, callback, isEnd, 0);
    }
}

void Upgrades::call(std::unique_lock<std::mutex> &lock, PortwireUpgradeCallback callback, std::uint8_t kind,
                    std::uint8_t value)
{
    if (hasEnded || !callback)
        return;
    isInCallback = true;
    lock.unlock();
    const std::uint8_t message[] = {ofUpgrade, kind, value};
    callback(message, sizeof message);
    lock.lock();
    isInCallback = false;
    changed.notify_all();
}

void Upgrades::progressed(int percent)
{
    std::unique_lock lock(mutex);
    call(lock, current, isProgress, static_cast<std::uint8_t>(percent));
}

bool Upgrades::isEnding()
{
    std::unique_lock lock(mutex);
    callRefused(lock);
    return hasEnded;
}

void Upgrades::pause(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex);
    changed.wait_for(lock, time, [this] { return hasEnded; });
}

} // namespace portwire
