#pragma once

#include "portwire/link/Reception.h"

#include <functional>

namespace portwire {

/** An open device with a thread that takes what it sends. Any number of threads may make requests at the same time. */
class Channel
{
public:
    Channel(std::unique_ptr<Endpoint> endpoint, std::shared_ptr<Statistics> statistics);
    /** Closes the endpoint. The reader thread ends by itself. */
    ~Channel();
    Channel(const Channel &) = delete;
    Channel &operator=(const Channel &) = delete;

    /**
     * Sends a request and waits for the answer, three times the answer time at most; repeats it while no good answer
     * comes.
     * \param mayRepeat if it is given: whether to repeat it, asked when all is taken that has arrived by then
     * \return nothing if none came.
     */
    std::optional<Frame> ask(const Request &request, const std::function<bool()> &mayRepeat = {});

    /**
     * As ask(), for questions that are put again and again, as a scan does: after one that stayed without an answer,
     * the next ones are sent once and wait for a fifth of the answer time, later not at all, until 100 ms have passed
     * since the last of them.
     */
    std::optional<Frame> probe(const Request &request);

    std::chrono::milliseconds answerTime() const { return reception->answerTime(); }

    /** The device has left the bus; this channel never answers again. */
    bool isGone() const;

    /** Takes what has arrived, on this thread. */
    void takeArrived();

    /** Replaces the listener unless the new one has ended. A call of the one before that is running isn't waited for.
     */
    void setListener(const std::shared_ptr<ReportListener> &listener);

private:
    const std::shared_ptr<Reception> reception;

    using Clock = std::chrono::steady_clock;

    std::optional<std::chrono::milliseconds> timeOfProbe();

    std::mutex silenceMutex;
    Clock::time_point silentUntil{}; ///< a probe came to nothing a moment ago
    unsigned silentSince = 0;        ///< what the device had sent when that began
    bool hasShownItself = false;     ///< it has sent something since
    int unanswered = 0;              ///< probes since then
};

} // namespace portwire
