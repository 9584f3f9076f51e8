#include "portwire/link/Channels.h"

namespace portwire {

Channels::Channels(std::shared_ptr<Bus> onBus) : devices(std::move(onBus)), counters(std::make_shared<Statistics>()) {}

std::shared_ptr<Channel> Channels::find(const std::string &path)
{
    const std::lock_guard lock(mutex);
    const auto known = open.find(path);
    if (known != open.end()) {
        if (!known->second->isGone())
            return known->second;
        open.erase(known);
    }
    auto endpoint = devices->open(path);
    if (!endpoint)
        return nullptr;
    auto channel = std::make_shared<Channel>(std::move(endpoint), counters);
    open.emplace(path, channel);
    return channel;
}

std::optional<Frame> Channels::ask(const std::string &path, const Request &request)
{
    // The two questions of a scan. A device that is dead would keep whoever scans waiting for each of them.
    const bool isProbe = request.code == ReportCode::DeviceInfo || request.code == ReportCode::Online;
    auto channel = find(path);
    std::optional<Frame> answer;
    if (channel)
        answer = isProbe ? channel->probe(request) : channel->ask(request);
    // A channel learns only from its reader thread or a request that the device has gone, maybe to come back since.
    if (channel && !answer && channel->isGone() && (channel = find(path)))
        answer = channel->ask(request);
    if (answer && answer->flags != static_cast<std::uint8_t>(AnswerStatus::Done))
        return std::nullopt;
    return answer;
}

} // namespace portwire
