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
    current->work()->abandon("the program has left the device");
    current.reset();
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
