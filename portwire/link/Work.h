#pragma once

#include "portwire/link/JobOrder.h"
#include "portwire/link/WriteQueue.h"

#include <string>

namespace portwire {

class Channel;

/**
 * What is to be done at a device, in its order, and for which mouse and profile it is meant.
 *
 * Writes go before the request that was made after them, so that a request sees what was written before it. An order
 * that changes all that the mouse holds, another profile or a factory reset, ends an epoch: what is handed over after
 * it waits behind it in a queue of its own. An epoch also ends when the mouse says that another profile is active, and
 * when the device comes back to the bus: then the writes stay where they are until the device has been asked whose they
 * would be. An answer that was asked for in an earlier epoch fills nothing in a later one.
 *
 * Writes and orders outlive the link that took them, for the link that replaces it at the same device; everything else
 * is asked again by the program. All functions may be called from any thread.
 */
class Work
{
public:
    using Clock = WriteQueue::Clock;
    using Address = std::array<std::uint8_t, 3>;

    /** The next thing to do: a job, or else a batch of writes. */
    struct Step
    {
        std::shared_ptr<WriteQueue> epoch;
        std::uint64_t serial; ///< of the epoch's last change before the step
        std::optional<Job> job{};
        WriteQueue::Batch batch{};
    };

    /** \param path of the device, for the log */
    explicit Work(std::string path) : devicePath(std::move(path)) {}

    /* The program's side. */

    void add(Job job);
    /** Takes a record for writing; see WriteQueue::update(). */
    void update(const FlashDataMap &record, const FlashDataMap &previous);
    /** Takes a record of which every field is meant; see WriteQueue::replace(). */
    void replace(const FlashDataMap &record);
    /** The program has taken the whole record that was delivered last. */
    void recordTaken();
    /** The receiver was ordered to pair and has told no end of it. */
    bool isPairing() const;
    /** Another link takes the place of the one before: what the program asked of that is forgotten. */
    void passOn();
    /** Nothing of it will be done any more. \param reason for the log */
    void abandon(const char *reason);

    /* What the device does by itself. */

    /** It was opened; with another channel than before, it was off the bus meanwhile. */
    void opened(const std::shared_ptr<Channel> &channel);
    /** It sent an unprompted report. */
    void reported(const Frame &frame);

    /* The side of the link that serves it. */

    /** Held during a step: an ended link may still be in the middle of its last one. */
    std::mutex &turn() { return turnMutex; }
    /**
     * \param onlyReceiver nothing for the mouse now
     * \param due when to ask again, if writes are held back
     */
    std::optional<Step> next(bool onlyReceiver, Clock::time_point now, std::optional<Clock::time_point> &due);
    /** The same job with what is known now. */
    Step again(const Step &step) const;
    bool isCurrent(const Step &step) const;
    /** Whether the mouse and the profile that the step would change are still known to be those that it is meant for.
     */
    bool mayChange(const Step &step) const;
    /** The job ended with its epoch, and is to be done again in the next one. */
    void outdated(const Step &step);
    /** A job has come to its end. \param answer the good one, or nothing */
    void finish(const Step &step, const Frame *answer);
    /** The mouse has acknowledged the batch. */
    void written(const Step &step);
    /** These bytes of the batch are not to be sent again; the program is told what the mouse holds instead. */
    void giveUp(const Step &step, const WriteQueue::Write &write);
    /**
     * Counts a try that came to nothing while the mouse answered something else.
     * \return whether it was the last one: everything has an end
     */
    bool ignored(const Step &step);

    /* Delivery of what was read. */

    /**
     * Brings settings up to date right before they are delivered.
     * \return false if they are of an epoch that has ended
     */
    bool prepare(const Step &step, std::uint8_t *bytes, std::size_t count);
    /** Counts the changes that the mouse told of: a whole record must not be put together of two halves. */
    unsigned changes() const;
    /** Number of the factory reset that was done and whose report has yet to be delivered; 0 if there is none. */
    unsigned unreportedReset() const;
    /** \return whether that report is the caller's to deliver */
    bool takeResetReport();

private:
    WriteQueue &last();
    bool mayTake(const WriteQueue &queue);
    void doubt(Job::Kind check);
    void pairingIs(std::uint8_t status);
    void addressIs(const std::optional<Address> &told);
    void profileIs(std::optional<std::uint8_t> told);
    void begin(std::shared_ptr<WriteQueue> next);
    void logDropped(std::size_t bytes, std::size_t orders, const char *reason) const;

    const std::string devicePath;
    std::mutex turnMutex;

    mutable std::mutex mutex;
    JobOrder jobs;
    std::shared_ptr<WriteQueue> epoch = std::make_shared<WriteQueue>();
    int batchesIgnored = 0;
    int checksInARow = 0;

    bool hasOpened = false;
    std::weak_ptr<Channel> lastChannel;
    std::optional<Address> owner;        ///< mouse that the writes are meant for
    std::optional<std::uint8_t> profile; ///< of the mouse, that they are meant for
    /** Until then the receiver may look for another mouse, and nothing is said to this one. */
    std::optional<Clock::time_point> pairingUntil;
    bool isInherited = false;      ///< from another link, and not yet known to be for this mouse
    bool hasChangedItself = false; ///< the mouse said that another profile is active
    std::uint64_t doubtedUpTo = 0; ///< number of the last job that may be meant for another mouse
    bool isOutdated =
        false; ///< the program's record is of a profile or mouse that went by itself: it is meant for that
    bool isRefusalLogged = false;

    std::weak_ptr<WriteQueue> offered; ///< epoch of the whole record that was delivered last
    unsigned changeCount = 0;
    unsigned resetsDone = 0;
    unsigned resetsReported = 0; ///< number of the last one that was reported
};

} // namespace portwire
