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

} // namespace

void Delivery::start()
{
    std::thread([self = shared_from_this()] { self->run(); }).detach();
}

void Delivery::post(Item item)
{
    const std::lock_guard lock(mutex);
    append(std::move(item));
}

void Delivery::append(Item item)
{
    if (isEnded)
        return;
    items.push_back(std::move(item));
    changed.notify_one();
}

void Delivery::postFlags(Item item)
{
    const std::lock_guard lock(mutex);
    const auto waiting = std::find_if(items.begin(), items.end(), [&item](const Item &each) {
        return each.header[1] == item.header[1] && each.payload.size() == item.payload.size();
    });
    if (waiting == items.end()) {
        append(std::move(item));
        return;
    }
    std::transform(item.payload.begin(), item.payload.end(), waiting->payload.begin(), waiting->payload.begin(),
                   [](std::uint8_t one, std::uint8_t other) { return static_cast<std::uint8_t>(one | other); });
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
    if (item.prepare)
        item.prepare(item.payload);
    const auto length = static_cast<std::uint32_t>(item.payload.size());
    item.payload.resize(item.payload.size() + readableBehindPayload, 0);

    std::unique_lock lock(mutex);
    const bool mayBegin = !isEnded;
    lock.unlock();
    if (mayBegin)
        callback(item.header.data(), static_cast<int>(item.header.size()), item.payload.data(), length);

    const std::lock_guard gateLock(callbacks.mutex);
    callbacks.running.erase(callback);
    callbacks.changed.notify_all();
}

} // namespace portwire
