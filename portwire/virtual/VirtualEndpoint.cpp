#include "portwire/virtual/VirtualEndpoint.h"

#include "portwire/virtual/VirtualBus.h"

namespace portwire {

void Inbox::push(Report report)
{
    const std::lock_guard lock(mutex);
    if (shutDown)
        return;
    reports.push_back(std::move(report));
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
    changed.wait(lock, [this] { return shutDown || !reports.empty(); });
    return !shutDown;
}

bool Inbox::take(Report &report)
{
    const std::lock_guard lock(mutex);
    if (reports.empty())
        return false;
    report = std::move(reports.front());
    reports.pop_front();
    return true;
}

VirtualEndpoint::VirtualEndpoint(std::shared_ptr<VirtualBus> onBus, std::string devicePath,
                                 std::shared_ptr<Inbox> devicesInbox)
    : bus(std::move(onBus)), path(std::move(devicePath)), inbox(std::move(devicesInbox))
{
}

VirtualEndpoint::~VirtualEndpoint() { inbox->shut(); }

bool VirtualEndpoint::send(const Report &report)
{
    if (inbox->isShut())
        return false;
    bus->receive(path, report, *inbox);
    return true;
}

} // namespace portwire
