#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

struct ReceivedReport
{
    int code;
    int selector;
    std::vector<std::uint8_t> payload;
};

/** Collects what a report callback gets. Callbacks are plain functions, so there is one collector each. */
template<int Number>
class ReportCollector
{
public:
    static void callback(const std::uint8_t *header, int, const std::uint8_t *payload, std::uint32_t length)
    {
        State &state = the();
        std::unique_lock lock(state.mutex);
        state.mostInside = std::max(state.mostInside, ++state.inside);
        state.reports.push_back({header[1], header[3] * 256 + header[4], {payload, payload + length}});
        state.changed.notify_all();
        state.changed.wait(lock, [&] { return !state.isBlocked; });
        const auto inCallback = std::exchange(state.action, {});
        lock.unlock();
        if (inCallback)
            inCallback();
        lock.lock();
        --state.inside;
        state.changed.notify_all();
    }

    static void reset()
    {
        const std::lock_guard lock(the().mutex);
        the().reports.clear();
        the().isBlocked = false;
        the().mostInside = 0;
        the().action = {};
        the().changed.notify_all();
    }

    static void block(bool now)
    {
        const std::lock_guard lock(the().mutex);
        the().isBlocked = now;
        the().changed.notify_all();
    }

    static void doInCallback(std::function<void()> what)
    {
        const std::lock_guard lock(the().mutex);
        the().action = std::move(what);
    }

    /** Waits for a report with this code and selector; empty if it doesn't come. */
    static std::optional<ReceivedReport> await(int code, int selector = 0, std::size_t length = 0)
    {
        std::unique_lock lock(the().mutex);
        std::optional<ReceivedReport> found;
        the().changed.wait_for(lock, patience, [&] {
            for (const ReceivedReport &report : the().reports) {
                if (report.code == code && report.selector == selector && report.payload.size() >= length)
                    found = report;
            }
            return found.has_value();
        });
        return found;
    }

    static std::size_t count(int code = -1)
    {
        const std::lock_guard lock(the().mutex);
        return static_cast<std::size_t>(
            std::count_if(the().reports.begin(), the().reports.end(),
                          [code](const ReceivedReport &report) { return code < 0 || report.code == code; }));
    }

    static bool awaitIdle()
    {
        std::unique_lock lock(the().mutex);
        return the().changed.wait_for(lock, patience, [] { return the().inside == 0; });
    }

    static int mostInside()
    {
        const std::lock_guard lock(the().mutex);
        return the().mostInside;
    }

private:
    /** Long enough for a machine that is busy with something else; nothing here takes a tenth of it. */
    static constexpr std::chrono::seconds patience{10};

    struct State
    {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<ReceivedReport> reports;
        bool isBlocked = false;
        int inside = 0;
        int mostInside = 0;
        std::function<void()> action;
    };

    /** Never destroyed: a blocked callback stands in it while the process ends. */
    static State &the()
    {
        static State *const state = new State;
        return *state;
    }
};
