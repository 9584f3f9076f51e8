#pragma once

#include "portwire/bus.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace portwire {

/** What a device has sent to one opener. Shared by the device's side and the opener's. */
class Inbox
{
public:
    void push(Report report);
    /** The device has gone or the opener has closed: what is in it can still be taken. */
    void shut();
    bool isShut() const;
    bool wait();
    bool take(Report &report);

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Report> reports;
    bool shutDown = false;
};

class VirtualBus;

/** An open virtual device. It answers within send(). */
class VirtualEndpoint : public Endpoint
{
public:
    VirtualEndpoint(std::shared_ptr<VirtualBus> onBus, std::string devicePath, std::shared_ptr<Inbox> devicesInbox);
    ~VirtualEndpoint() override;

    bool send(const Report &report) override;
    bool waitForReport() override { return inbox->wait(); }
    bool takeReport(Report &report) override { return inbox->take(report); }
    void close() override { inbox->shut(); }

private:
    const std::shared_ptr<VirtualBus> bus;
    const std::string path;
    const std::shared_ptr<Inbox> inbox;
};

} // namespace portwire
