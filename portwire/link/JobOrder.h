#pragma once

#include "portwire/link/Job.h"

#include <deque>

namespace portwire {

/** Jobs in the order in which they are done, in three lanes. Not safe for use by several threads at a time. */
class JobOrder
{
public:
    enum Lane {
        Receiver, ///< may go at any time
        Checks,   ///< whose the writes would be; they go before all that is for the mouse
        Mouse,
    };

    /**
     * Adds a job, unless one that waits already serves both: the same read with nothing but reads behind it, or the
     * same check. A program status takes the place of one that waits.
     */
    void add(Job job);

    /** The next job of a lane; nothing if there is none. */
    const Job *front(Lane lane) const { return lanes[lane].empty() ? nullptr : &lanes[lane].front(); }
    /** Notes that a job is being done: what comes now may be too late for it. */
    void begin(const Job &job) { underWay = job.number; }
    /** \return nothing if the job was dropped meanwhile. */
    Job *find(std::uint64_t number);
    std::optional<Job> remove(std::uint64_t number);

    /** The last order that waits; what is handed over now goes behind it. */
    const Job *lastOrder() const;
    bool has(Job::Kind kind) const;
    std::size_t orders() const;

    /** Drops all but the orders. */
    void keepOrders();
    /** \param upTo number of the last one \return how many there were */
    std::size_t dropOrders(std::uint64_t upTo);
    /** Drops the factory resets that would meet the present profile. \return how many there were */
    std::size_t dropResets();

    std::uint64_t lastNumber() const { return numbers; }

private:
    bool isAsked(const std::deque<Job> &lane, const Job &job) const;

    std::deque<Job> lanes[3];
    std::uint64_t numbers = 0;
    std::uint64_t underWay = 0;
};

} // namespace portwire
