#pragma once

#include "portwire/bus.h"
#include "portwire/virtual/FirmwarePacket.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

/** The man in the middle: a bus whose endpoints tell of each request before they send it, and may answer it themselves.
 */
class TappedBus : public portwire::Bus
{
public:
    using Packet = portwire::FirmwarePacket;
    /** Reports that arrive instead of the device's answer; nothing to let the device answer. */
    using Replacement = std::optional<std::vector<Packet>>;

    explicit TappedBus(std::shared_ptr<portwire::Bus> behind) : bus(std::move(behind)) {}
    ~TappedBus() override { reader->isLate = reader->isFlooded = false; }

    std::vector<portwire::DeviceNode> enumerate() override { return bus->enumerate(); }
    void setChangeNotice(std::function<void()> notice) override { bus->setChangeNotice(std::move(notice)); }
    std::unique_ptr<portwire::Endpoint> open(const std::string &path) override
    {
        auto endpoint = bus->open(path);
        return endpoint ? std::make_unique<Tap>(*this, std::move(endpoint)) : nullptr;
    }

    /** Calls `what` before the request that is the `number`th one with this code from now on; 1 is the next. */
    void before(int code, int number, std::function<void()> what)
    {
        const std::lock_guard lock(mutex);
        awaitedCode = code;
        remaining = number;
        action = std::move(what);
    }

    /** Forgets both, and waits for the call that is under way: what was given may go with the test's frame. */
    void letGo()
    {
        std::unique_lock lock(mutex);
        action = {};
        replacement = {};
        returned.wait(lock, [this] { return calls == 0; });
    }

    /** From now on each request is shown to `answer`; empty to end that. */
    void replaceAnswers(std::function<Replacement(const Packet &)> answer)
    {
        const std::lock_guard lock(mutex);
        replacement = std::move(answer);
    }

    /** Set before the bus is used: instead of the device's own. What waits longer for a while then does it sooner. */
    std::optional<std::chrono::milliseconds> answerTime{};

    /** What happens to the reader threads, which may outlast the bus. */
    struct Reader
    {
        std::atomic<bool> isLate{false}; ///< comes to take nothing, as on a computer that is busy with something else
        std::atomic<bool> isFlooded{false};  ///< by a device that talks all the time, of two changes in turn
        std::atomic<bool> takesFlood{false}; ///< not only who asks does
        std::atomic<unsigned> told{0};       ///< reports of the flood
    };
    const std::shared_ptr<Reader> reader = std::make_shared<Reader>();

private:
    class Tap : public portwire::Endpoint
    {
    public:
        Tap(TappedBus &ofBus, std::unique_ptr<portwire::Endpoint> behind) : bus(ofBus), endpoint(std::move(behind)) {}
        bool send(const portwire::Report &report) override
        {
            const auto reports = bus.sending(*Packet::parse(report));
            if (!reports)
                return endpoint->send(report);
            const std::lock_guard lock(mutex);
            for (const Packet &each : *reports)
                arriving.push_back(each.build());
            return true;
        }
        bool waitForReport() override
        {
            const bool isOpen = (reader->isFlooded && reader->takesFlood) || endpoint->waitForReport();
            while (reader->isLate)
                std::this_thread::yield();
            return isOpen;
        }
        bool takeReport(portwire::Report &report) override
        {
            const std::lock_guard lock(mutex);
            if (reader->isFlooded) {
                report = Packet{10, 0, 0, 0, {static_cast<std::uint8_t>(1 + ++reader->told % 2)}}.build();
                return true;
            }
            if (arriving.empty())
                return endpoint->takeReport(report);
            report = std::move(arriving.front());
            arriving.pop_front();
            return true;
        }
        std::chrono::milliseconds answerTime() const override
        {
            return bus.answerTime.value_or(endpoint->answerTime());
        }
        void close() override { endpoint->close(); }

    private:
        TappedBus &bus;
        const std::shared_ptr<Reader> reader = bus.reader;
        const std::unique_ptr<portwire::Endpoint> endpoint;
        std::mutex mutex;
        std::deque<portwire::Report> arriving; ///< taken by whoever asked; the reader thread isn't told of it
    };

    Replacement sending(const Packet &request)
    {
        std::function<void()> now;
        std::function<Replacement(const Packet &)> answer;
        {
            const std::lock_guard lock(mutex);
            if (action && request.code == awaitedCode && --remaining == 0)
                now = std::exchange(action, {});
            answer = replacement;
            ++calls;
        }
        if (now)
            now();
        Replacement given = answer ? answer(request) : std::nullopt;
        const std::lock_guard lock(mutex);
        --calls;
        returned.notify_all();
        return given;
    }

    const std::shared_ptr<portwire::Bus> bus;
    std::mutex mutex;
    std::condition_variable returned;
    int calls = 0; ///< that are under way
    int awaitedCode = 0;
    int remaining = 0;
    std::function<void()> action;
    std::function<Replacement(const Packet &)> replacement;
};
