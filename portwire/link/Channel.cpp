#include "portwire/link/Channel.h"

#include <thread>

namespace portwire {

namespace {

/** A lost report costs one try, a dead device all three: 30 ms where an answer takes 10 at most. */
constexpr int maxTries = 3;

/** The part of that time which a probe gets. A device that is late by that is heard all the same. */
constexpr int probeFraction = 5;
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

std::optional<Frame> Channel::ask(const Request &request, const std::function<bool()> &mayRepeat)
{
    for (int tried = 0; tried < maxTries && !reception->isGone(); ++tried) {
        if (tried > 0) {
            reception->takeArrived();
            if (mayRepeat && !mayRepeat())
                break;
            ++reception->statistics().repeated;
        }
        if (auto answer = reception->ask(request, reception->answerTime()))
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
        return unanswered > patientProbes ? std::chrono::milliseconds::zero() : reception->answerTime() / probeFraction;
    hasShownItself = true;
    return reception->answerTime();
}

bool Channel::isGone() const { return reception->isGone(); }

void Channel::takeArrived() { reception->takeArrived(); }

void Channel::setListener(const std::shared_ptr<ReportListener> &listener) { reception->setListener(listener); }

} // namespace portwire
