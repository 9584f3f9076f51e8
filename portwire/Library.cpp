#include "portwire/Library.h"

#include "portwire/BusChoice.h"

#include <cstring>
#include <utility>

namespace portwire {

Library &Library::instance()
{
    static Library *const only = new Library;
    return *only;
}

Library::Library() : channels(openChannelsOfChosenBus()), upgradesOfBus(channels) {}

void Library::startLink(const char *path, PortwireReportCallback callback)
{
    if (!path || !callback)
        return endLink();
    const std::lock_guard lock(mutex);
    std::shared_ptr<Work> work;
    if (current) {
        current->end();
        leavePairing(*current);
        // The same device again: what hasn't reached the mouse yet is the business of the new link.
        if (current->path() == path) {
            work = current->work();
            work->passOn();
        } else {
            current->work()->abandon("the program has turned to another device");
        }
    }
    if (!work)
        work = std::make_shared<Work>(path);
    current = Link::start(channels, path, callback, std::move(work));
    if (!batteryCurve.empty())
        current->add({Job::Kind::Tell, {ReportCode::BatteryCurve, 0, 0, std::exchange(batteryCurve, {})}});
}

void Library::endLink()
{
    const std::lock_guard lock(mutex);
    if (!current)
        return;
    current->end();
    leavePairing(*current);
    current->work()->abandon("the program has left the device");
    current.reset();
}

/**
 * Tells the receiver that nobody waits for the end of its pairing any more. Before anything else is asked of it, so the
 * caller waits, some 30 ms at most and mostly some 2 ms: it could stop the next pairing otherwise.
 */
void Library::leavePairing(const Link &ended)
{
    if (!ended.work()->isPairing())
        return;
    // The order may be on its way still. An ended link comes to the end of a request and begins no other.
    const std::lock_guard turn(ended.work()->turn());
    channels->ask(ended.path(), {ReportCode::LeavePairing});
}

std::shared_ptr<Link> Library::link()
{
    const std::lock_guard lock(mutex);
    return current;
}

void Library::update(const FlashDataMap &record)
{
    const std::lock_guard lock(mutex);
    if (!current)
        return;
    current->update(record, lastRecord);
    std::memcpy(&lastRecord, &record, sizeof lastRecord);
}

void Library::replace(const FlashDataMap &record)
{
    const std::lock_guard lock(mutex);
    if (current)
        current->replace(record);
    std::memcpy(&lastRecord, &record, sizeof lastRecord);
}

void Library::noteRecord(const FlashDataMap &record)
{
    const std::lock_guard lock(mutex);
    std::memcpy(&lastRecord, &record, sizeof lastRecord);
    if (current)
        current->work()->recordTaken();
}

void Library::setBatteryCurve(std::vector<std::uint8_t> curve)
{
    const std::lock_guard lock(mutex);
    batteryCurve = std::move(curve);
}

} // namespace portwire
