#pragma once

#include "portwire/link/Reception.h"

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
     * Sends a request and waits for the answer, some 30 ms at most; repeats it while no good answer comes.
     * \return nothing if none came.
     */
    std::optional<Frame> ask(const Request &request);

    /** The device has left the bus; this channel never answers again. */
    bool isGone() const;

    /** Replaces the listener. A call of the one before that is running isn't waited for. */
    void setListener(std::shared_ptr<const ReportListener> listener);

private:
    const std::shared_ptr<Reception> reception;
};

} // namespace portwire
