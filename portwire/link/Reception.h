#pragma once

#include "portwire/link/Frame.h"
#include "portwire/link/Statistics.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace portwire {

/** What is asked of a device. */
struct Request
{
    ReportCode code{};
    std::uint16_t selector = 0;
    std::uint8_t flags = 0;
    std::vector<std::uint8_t> payload{};
};

/** Payload bytes that the answer must have if its status is Done. */
std::size_t leastAnswer(const Request &request);

/** Gets what a device sends unprompted. Called on whatever thread took the report: it must not wait. */
class ReportListener
{
public:
    virtual ~ReportListener() = default;
    /** A report of one of the codes that may come unprompted. */
    virtual void arrived(const Frame &frame) = 0;
    /** The device left the bus; called once. */
    virtual void wentAway() = 0;
    /** From then on it takes the place of no other listener. */
    virtual bool hasEnded() const = 0;
};

/** Brings the answers of one endpoint to those who wait for them. */
class Reception
{
public:
    Reception(std::unique_ptr<Endpoint> opened, std::shared_ptr<Statistics> counts);

    /** Body of the reader thread: takes what arrives until the device has gone or the endpoint is closed. */
    void run();

    /**
     * Sends a request once and waits for its answer. \param patience how long the device may take; the caller waits a
     * moment longer while another thread is taking reports. \return nothing if no good answer came in time
     */
    std::optional<Frame> ask(const Request &request, std::chrono::milliseconds patience);

    /** Ends run() and all waiting. */
    void close();
    bool isGone() const;
    /** Number of whole reports that the device has sent. */
    unsigned heard() const { return heardReports; }
    /** Takes what has arrived: who asked for it, or listens, knows it afterwards. */
    void takeArrived();
    /** Replaces the listener, unless the new one has ended. */
    void setListener(const std::shared_ptr<ReportListener> &newListener);

    std::chrono::milliseconds answerTime() const { return endpoint->answerTime(); }
    Statistics &statistics() { return *counters; }

private:
    struct Waiting
    {
        const Request &request;
        std::optional<Frame> answer{};
        bool failed = false;
        std::condition_variable arrived{};
    };

    std::uint8_t enter(Waiting &waiting);
    void drain();
    std::shared_ptr<ReportListener> currentListener() const;
    void sort(Frame frame);
    bool complete(Frame &frame);
    void failAll();

    const std::unique_ptr<Endpoint> endpoint;
    const std::shared_ptr<Statistics> counters;

    std::atomic<unsigned> heardReports{0};
    std::mutex drainMutex; ///< reports are taken and sorted by one thread at a time, so that their order stays
    std::atomic<int> turnsWanted{0}; ///< threads that wait for it; the reader lets them go first
    mutable std::mutex mutex;
    std::array<Waiting *, 256> waitingBySequence{};
    std::uint8_t lastSequence = 0;
    bool gone = false;
    std::weak_ptr<ReportListener> listener;
};

} // namespace portwire
