#include "portwire/link/Delivery.h"

#include <algorithm>
#include <set>
#include <thread>

namespace portwire {

namespace {

/** The callbacks that are running now. Lives as long as the process: a callback may outlast everything else. */
struct Gate
{
    std::mutex mutex;
    std::condition_variable changed;
    std::set<PortwireReportCallback> running;
};

Gate &gate()
{
    static Gate *const only = new Gate;
    return *only;
}

/** Callers read groups of fixed size from a payload; behind a short one there are zeros and not foreign memory. */
constexpr std::size_t readableBehindPayload = 64;

/** The code and the address are those of the same thing; of changed flags there is only one. */
bool isSameReport(const Delivery::Item &one, const Delivery::Item &other)
{
    return one.header[1] == other.header[1] && one.header[3] == other.header[3] && one.header[4] == other.header[4];
}

} // namespace

void Delivery::start()
{
    std::thread([self = shared_from_this()] { self->run(); }).detach();
}

void Delivery::post(Item item)
{
    const std::lock_guard lock(mutex);
    if (isEnded)
        return;
    const bool isFlags = item.header[1] == static_cast<std::uint8_t>(ReportCode::StatusChanged);
    const auto same = std::find_if(items.begin(), items.end(), [&](const Item &each) {
        // The whole record and the report rate have the same address.
        return isSameReport(each, item) && (isFlags || each.payload.size() == item.payload.size());
    });
    if (same != items.end() && isFlags) {
        same->payload.resize(std::max(same->payload.size(), item.payload.size()));
        std::transform(item.payload.begin(), item.payload.end(), same->payload.begin(), same->payload.begin(),
                       [](std::uint8_t one, std::uint8_t other) { return static_cast<std::uint8_t>(one | other); });
        return;
    }
    if (same != items.end())
        items.erase(same);
    items.push_back(std::move(item));
    changed.notify_one();
}

void Delivery::end()
{
    {
        const std::lock_guard lock(mutex);
        isEnded = true;
        items.clear();
        changed.notify_one();
    }
    const std::lock_guard lock(gate().mutex);
    gate().changed.notify_all();
}

void Delivery::run()
{
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return isEnded || !items.empty(); });
        if (isEnded)
            return;
        Item item = std::move(items.front());
        items.pop_front();
        lock.unlock();
        call(item);
        lock.lock();
    }
}

void Delivery::call(Item &item)
{
    Gate &callbacks = gate();
    {
        std::unique_lock lock(callbacks.mutex);
        callbacks.changed.wait(lock, [&] { return isEnded || callbacks.running.count(callback) == 0; });
        if (isEnded)
            return;
        callbacks.running.insert(callback);
    }
    const std::size_t length = item.payload.size();
    item.payload.resize(length + readableBehindPayload, 0);
    const bool isWanted = !item.prepare || item.prepare(item.payload.data(), length);

    std::unique_lock lock(mutex);
    const bool mayBegin = isWanted && !isEnded;
    lock.unlock();
    if (mayBegin)
        callback(item.header.data(), static_cast<int>(item.header.size()), item.payload.data(),
                 static_cast<std::uint32_t>(length));

    const std::lock_guard gateLock(callbacks.mutex);
    callbacks.running.erase(callback);
    callbacks.changed.notify_all();
}

} // namespace portwire
