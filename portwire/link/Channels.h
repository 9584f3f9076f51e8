#pragma once

#include "portwire/link/Channel.h"

#include <map>
#include <string>

namespace portwire {

/** The open devices of a bus by their paths. A device is opened by the first request to it and stays open. */
class Channels
{
public:
    explicit Channels(std::shared_ptr<Bus> onBus);

    /** \return nothing if there is no device with this path now. */
    std::shared_ptr<Channel> find(const std::string &path);

    /**
     * Asks the device with this path; see Channel::ask(). A device that was away and is back answers at once.
     * \return nothing if it isn't on the bus, nobody answers or the answer's status isn't Done.
     */
    std::optional<Frame> ask(const std::string &path, const Request &request);

    Bus &bus() { return *devices; }
    Statistics &statistics() { return *counters; }

private:
    const std::shared_ptr<Bus> devices;
    const std::shared_ptr<Statistics> counters;
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<Channel>> open;
};

} // namespace portwire
