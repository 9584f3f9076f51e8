#include "portwire/link/LinkedDevice.h"

#include <utility>

namespace portwire {

LinkedDevice::LinkedDevice(std::shared_ptr<Channels> onChannels, std::string path, std::shared_ptr<Work> ofDevice)
    : channels(std::move(onChannels)), devicePath(std::move(path)), work(std::move(ofDevice))
{
}

void LinkedDevice::open(const std::shared_ptr<ReportListener> &newListener)
{
    listener = newListener;
    reopen();
}

bool LinkedDevice::reopen()
{
    if (channel && !channel->isGone())
        return true;
    const auto listening = listener.lock();
    auto opened = listening ? channels->find(devicePath) : nullptr;
    if (!opened)
        return false;
    channel = std::move(opened);
    channel->setListener(listening);
    if (!listening->hasEnded())
        work->opened(channel);
    return true;
}

Answer LinkedDevice::ask(const Request &request, const std::function<bool()> &isStillMeant)
{
    const auto listening = listener.lock();
    if (!listening || listening->hasEnded())
        return {Outcome::Outdated};
    if (!channel || channel->isGone())
        return {Outcome::MouseOffline};
    auto answer = channel->ask(request, isStillMeant);
    if (!answer)
        return {isStillMeant && !isStillMeant() ? Outcome::Outdated : Outcome::NoAnswer};
    switch (static_cast<AnswerStatus>(answer->flags)) {
    case AnswerStatus::Done:
        return {Outcome::Done, std::move(*answer)};
    case AnswerStatus::MouseOffline:
        return {Outcome::MouseOffline};
    case AnswerStatus::BatchLost:
        return {Outcome::BatchLost};
    case AnswerStatus::Refused:
        break;
    }
    return {Outcome::Refused};
}

void LinkedDevice::takeArrived()
{
    if (channel)
        channel->takeArrived();
}

} // namespace portwire
