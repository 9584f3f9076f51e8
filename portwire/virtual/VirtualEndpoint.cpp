#include "portwire/virtual/VirtualEndpoint.h"

#include "portwire/virtual/VirtualBus.h"

namespace portwire {

void Inbox::push(Report report, std::chrono::microseconds latency)
{
    const std::lock_guard lock(mutex);
    if (shutDown)
        return;
    const Clock::time_point at = latency.count() > 0 ? Clock::now() + latency : Clock::time_point();
    reports.push_back({at, std::move(report)}); // behind the others, also when it would be here before them
    changed.notify_one();
}

void Inbox::shut()
{
    const std::lock_guard lock(mutex);
    shutDown = true;
    changed.notify_all();
}

bool Inbox::isShut() const
{
    const std::lock_guard lock(mutex);
    return shutDown;
}

bool Inbox::wait()
{
    std::unique_lock lock(mutex);
    while (!shutDown) {
        if (reports.empty())
            changed.wait(lock);
        else if (reports.front().isHere())
            return true;
        else
            changed.wait_until(lock, Clock::time_point(reports.front().at)); // a copy: others may take the report
    }
    return false;
}

bool Inbox::take(Report &report)
{
    const std::lock_guard lock(mutex);
    if (reports.empty() || !reports.front().isHere())
        return false;
    report = std::move(reports.front().report);
    reports.pop_front();
    return true;
}

VirtualEndpoint::VirtualEndpoint(std::shared_ptr<VirtualBus> onBus, std::string devicePath,
                                 std::shared_ptr<Inbox> devicesInbox)
    : bus(std::move(onBus)), path(std::move(devicePath)), inbox(std::move(devicesInbox))
{
}

VirtualEndpoint::~VirtualEndpoint() { inbox->shut(); }

std::chrono::milliseconds VirtualEndpoint::answerTime() const { return Endpoint::answerTime() + bus->latency(path); }

bool VirtualEndpoint::send(const Report &report)
{
    if (inbox->isShut())
        return false;
    bus->receive(path, report, *inbox);
    return true;
}

} // namespace portwire
