#pragma once

#include "portwire/bus.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace portwire {

/**
 * What a device has sent to one opener. Shared by the device's side and the opener's. What is on its way lies in it
 * until it is there; nobody but the opener waits for that.
 */
class Inbox
{
public:
    using Clock = std::chrono::steady_clock;

    /** Reports stay in their order. \param latency until this one is there */
    void push(Report report, std::chrono::microseconds latency = {});
    /** The device has gone or the opener has closed: what is there can still be taken, what is on its way is lost. */
    void shut();
    bool isShut() const;
    bool wait();
    bool take(Report &report);

private:
    struct Coming
    {
        Clock::time_point at; ///< the clock's beginning for what was there at once
        Report report;

        bool isHere() const { return at == Clock::time_point() || at <= Clock::now(); }
    };

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Coming> reports;
    bool shutDown = false;
};

class VirtualBus;

/** An open virtual device. It makes its answer within send(), which arrives at once or later. */
class VirtualEndpoint : public Endpoint
{
public:
    VirtualEndpoint(std::shared_ptr<VirtualBus> onBus, std::string devicePath, std::shared_ptr<Inbox> devicesInbox);
    ~VirtualEndpoint() override;

    bool send(const Report &report) override;
    bool waitForReport() override { return inbox->wait(); }
    bool takeReport(Report &report) override { return inbox->take(report); }
    std::chrono::milliseconds answerTime() const override;
    void close() override { inbox->shut(); }

private:
    const std::shared_ptr<VirtualBus> bus;
    const std::string path;
    const std::shared_ptr<Inbox> inbox;
};

} // namespace portwire
