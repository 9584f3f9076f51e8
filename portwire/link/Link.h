#pragma once

#include "portwire/link/Delivery.h"
#include "portwire/link/LinkedDevice.h"

namespace portwire {

/**
 * The report link: sends the reports of one device to a callback, makes the requests of the program in their order, and
 * delivers what is written. Work says what comes next, LinkedDevice is who gets it; here is the thread between them.
 */
class Link : public ReportListener, public std::enable_shared_from_this<Link>
{
public:
    /**
     * \param path the device; it may be absent, the link then waits for it
     * \param work what a link before it on the same device left to be done, or new
     */
    static std::shared_ptr<Link> start(std::shared_ptr<Channels> onChannels, const std::string &path,
                                       PortwireReportCallback callback, std::shared_ptr<Work> work);

    Link(std::shared_ptr<Channels> onChannels, const std::string &path, PortwireReportCallback callback,
         std::shared_ptr<Work> toDo);

    /** Ends the link without waiting for anything. No callback begins afterwards. */
    void end();

    /* As those of Work; they return without waiting. */
    void add(Job job);
    void update(const FlashDataMap &record, const FlashDataMap &previous);
    void replace(const FlashDataMap &record);

    const std::string &path() const { return device.path(); }
    const std::shared_ptr<Work> &work() const { return toDo; }

    void arrived(const Frame &frame) override;
    void wentAway() override;
    bool hasEnded() const override { return isEnded; }

private:
    using Clock = Work::Clock;

    void run();
    bool doNext(std::optional<Clock::time_point> &due);
    Outcome runJob(Work::Step step);
    Outcome runBatch(const Work::Step &step);
    bool wasLastTry(const Work::Step &step, Outcome outcome, ReportCode code);
    void pauseAfter(Outcome outcome, unsigned signsBefore);
    void wake();

    void deliver(const Work::Step &step, const Frame &frame);
    void deliverReset();

    const std::shared_ptr<Work> toDo;
    LinkedDevice device;
    const std::shared_ptr<Delivery> delivery;
    unsigned postedReset = 0; ///< number of the factory reset whose report was posted last
    unsigned attempts = 0;    ///< to find out whether the mouse answers anything

    std::atomic<bool> isEnded{false};
    std::mutex mutex;
    std::condition_variable changed;
    unsigned wakes = 0;       ///< times that there was something new
    unsigned signsOfLife = 0; ///< unprompted reports
    Clock::time_point pausedUntil{};
};

} // namespace portwire
