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
    using Clock = std::chrono::steady_clock;
    const unsigned heardBefore = reception->heard();
    std::unique_lock lock(silenceMutex);
    const bool isSilent = Clock::now() < silentUntil && silentSince == heardBefore;
    lock.unlock();
    auto answer = isSilent ? reception->ask(request, probeTime) : ask(request);
    if (!answer) {
        lock.lock();
        silentUntil = Clock::now() + silenceTime;
        silentSince = heardBefore;
    }
    return answer;
}

bool Channel::isGone() const { return reception->isGone(); }

void Channel::setListener(std::shared_ptr<const ReportListener> listener)
{
    reception->setListener(std::move(listener));
}

} // namespace portwire
