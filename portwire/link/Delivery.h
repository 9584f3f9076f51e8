#pragma once

#include "portwire/link/Frame.h"
#include "portwire/portwire.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace portwire {

/**
 * Hands reports to a callback on a thread of its own, one at a time.
 *
 * A thread of its own, since a callback may stand still until the GUI thread is free while the GUI thread waits for the
 * answer to a request. Ending a delivery never waits for a running callback, for the same reason. A function that is
 * the callback of two links in turn isn't entered again before it has come back.
 */
class Delivery : public std::enable_shared_from_this<Delivery>
{
public:
    struct Item
    {
        std::array<std::uint8_t, headerSize> header{};
        std::vector<std::uint8_t> payload{};
        /** Called right before the callback, to bring the payload up to date; false if it isn't to be delivered. */
        std::function<bool(std::uint8_t *, std::size_t)> prepare{};
    };

    explicit Delivery(PortwireReportCallback reportCallback) : callback(reportCallback) {}

    /** Starts the thread, which keeps this object alive until end(). */
    void start();
    /**
     * Adds a report to those that wait. A mouse that says more than the pages can show must not leave a growing backlog
     * behind: changed flags are added to those that wait, and of anything else only the newest one is kept.
     */
    void post(Item item);
    /** From now on no callback begins. */
    void end();

private:
    void run();
    void call(Item &item);

    const PortwireReportCallback callback;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Item> items;
    std::atomic<bool> isEnded{false}; ///< written with `mutex` held; the gate of the callbacks reads it too
};

} // namespace portwire
