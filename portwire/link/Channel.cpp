#include "portwire/link/Channel.h"

#include <thread>

namespace portwire {

namespace {

/** Three tries of 10 ms: a lost report costs one of them, a dead device 30 ms. */
constexpr int maxTries = 3;
constexpr std::chrono::milliseconds tryTime{10};

/** A device that is back answers within two frames of the bus; one that is late by that is heard all the same. */
constexpr std::chrono::milliseconds probeTime{2};
constexpr std::chrono::milliseconds silenceTime{100};
/**
 * A scan puts some twenty questions to each device, and the user waits for the sum. After these, nobody waits for the
 * answer; one that comes all the same is heard by the next question.
 */
constexpr int patientProbes = 4;

} // namespace

Channel::Channel(std::unique_ptr<Endpoint> endpoint, std::shared_ptr<Statistics> statistics)
    : reception(std::make_shared<Reception>(std::move(endpoint), std::move(statistics)))
{
    // The thread keeps alive what it works on and nobody waits for it: the last owner of a channel may be the reader
    // thread itself, through a listener.
    std::thread([kept = reception] { kept->run(); }).detach();
}

Channel::~Channel() { reception->close(); }

std::optional<Frame> Channel::ask(const Request &request)
{
    for (int tried = 0; tried < maxTries && !reception->isGone(); ++tried) {
        if (tried > 0)
            ++reception->statistics().repeated;
        if (auto answer = reception->ask(request, tryTime))
            return answer;
    }
    return std::nullopt;
}

std::optional<Frame> Channel::probe(const Request &request)
{
    const std::optional<std::chrono::milliseconds> onlyTry = timeOfProbe();
    auto answer = onlyTry ? reception->ask(request, *onlyTry) : ask(request);
    const std::lock_guard lock(silenceMutex);
    silentUntil = answer ? Clock::time_point() : Clock::now() + silenceTime;
    unanswered = answer ? 0 : unanswered + 1;
    return answer;
}

/** How long to wait for a device that didn't answer a moment ago; nothing for one that deserves all tries. */
std::optional<std::chrono::milliseconds> Channel::timeOfProbe()
{
    const unsigned heard = reception->heard();
    const std::lock_guard lock(silenceMutex);
    if (Clock::now() >= silentUntil) {
        silentSince = heard;
        hasShownItself = false;
        unanswered = 0;
        return std::nullopt;
    }
    // An answer that came too late may mean that it is back, so it gets time once more; but not each time it is late.
    if (hasShownItself || heard == silentSince)
        return unanswered > patientProbes ? std::chrono::milliseconds::zero() : probeTime;
    hasShownItself = true;
    return tryTime;
}

bool Channel::isGone() const { return reception->isGone(); }

void Channel::setListener(std::shared_ptr<const ReportListener> listener, std::function<void()> goneNotice)
{
    reception->setListener(std::move(listener), std::move(goneNotice));
}

} // namespace portwire
