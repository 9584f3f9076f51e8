#pragma once

#include "portwire/link/Channels.h"
#include "portwire/link/Delivery.h"
#include "portwire/link/WriteQueue.h"

namespace portwire {

/** Something to ask of the device of a link, and what becomes of the answer. */
struct Job
{
    enum class Kind {
        Tell,        ///< the answer is for the link only; waits for a mouse that sleeps
        Read,        ///< the answer goes to the callback; waits for the mouse, but not for one that ignores it
        Order,       ///< both: waits for the mouse, the answer goes to the callback
        WholeRecord, ///< reads the device image; waits for the mouse
    };
    Kind kind = Kind::Tell;
    Request request{};
    bool isForReceiver = false; ///< the receiver answers it alone: neither a sleeping mouse nor writes are in the way
    int timesIgnored = 0;
};

/**
 * The report link: sends the reports of one device to a callback, makes the requests of the program in their order, and
 * delivers what is written.
 */
class Link : public std::enable_shared_from_this<Link>
{
public:
    /**
     * \param path the device; it may be absent, the link then waits for it
     * \param writeQueue shared with the link before it on the same device, so that nothing undelivered is lost
     */
    static std::shared_ptr<Link> start(std::shared_ptr<Channels> onChannels, const std::string &path,
                                       PortwireReportCallback callback, std::shared_ptr<WriteQueue> writeQueue);

    Link(std::shared_ptr<Channels> onChannels, std::string path, PortwireReportCallback callback,
         std::shared_ptr<WriteQueue> writeQueue);

    /** Ends the link without waiting for anything. No callback begins afterwards. */
    void end();

    void add(Job job);

    /** Takes the record for writing; returns without waiting. See WriteQueue::update(). */
    void update(const FlashDataMap &record, const FlashDataMap &previous);

    const std::string &path() const { return devicePath; }
    const std::shared_ptr<WriteQueue> &writeQueue() const { return writes; }

private:
    using Clock = WriteQueue::Clock;

    enum class Outcome { Done, MouseOffline, NoAnswer, Refused };

    void run();
    void lookForDevice(std::unique_lock<std::mutex> &lock);
    void runJob(std::deque<Job> &jobs, std::unique_lock<std::mutex> &lock);
    void runBatch(const WriteQueue::Batch &batch, std::unique_lock<std::mutex> &lock);
    void pauseAfter(Outcome outcome, unsigned wakesBefore);

    bool isAway() const { return channel && channel->isGone(); }
    std::shared_ptr<Channel> openChannel();
    std::pair<Outcome, std::optional<Frame>> ask(const Request &request);
    Outcome perform(const Job &job);
    Outcome readImage();
    Outcome readImage(std::vector<std::uint8_t> &image);
    std::pair<Outcome, const WriteQueue::Write *> write(const WriteQueue::Batch &batch);
    void deliver(const Frame &frame, std::vector<std::uint8_t> payload, std::uint64_t sinceSerial);
    void arrived(const Frame &frame);
    void wentAway();

    const std::shared_ptr<Channels> channels;
    const std::string devicePath;
    const std::shared_ptr<WriteQueue> writes;
    const std::shared_ptr<Delivery> delivery;
    std::shared_ptr<const ReportListener> listener;
    std::function<void()> goneNotice;

    std::shared_ptr<Channel> channel; ///< used by the thread of this link, and before it starts

    std::atomic<bool> isEnded{false};
    std::atomic<unsigned> changes{0}; ///< the mouse said that something of its image is another
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Job> receiverJobs;
    std::deque<Job> mouseJobs;
    Clock::time_point pausedUntil{};
    unsigned wakes = 0; ///< unprompted reports, each a sign of life
};

} // namespace portwire
