#include "portwire/link/JobOrder.h"

#include <algorithm>

namespace portwire {

namespace {

JobOrder::Lane laneOf(const Job &job)
{
    if (job.isForReceiver)
        return JobOrder::Receiver;
    return job.isCheck() ? JobOrder::Checks : JobOrder::Mouse;
}

bool isSame(const Job &one, const Job &other)
{
    return one.kind == other.kind && one.request.code == other.request.code &&
           one.request.selector == other.request.selector && one.request.payload == other.request.payload;
}

/** Erases what fulfils a condition. \return how many there were */
template<typename Condition>
std::size_t erase(std::deque<Job> &lane, Condition condition)
{
    const auto from = std::remove_if(lane.begin(), lane.end(), condition);
    const auto count = static_cast<std::size_t>(lane.end() - from);
    lane.erase(from, lane.end());
    return count;
}

} // namespace

void JobOrder::add(Job job)
{
    std::deque<Job> &lane = lanes[laneOf(job)];
    if (isAsked(lane, job))
        return;
    if (job.request.code == ReportCode::ProgramStatus)
        erase(lane, [&](const Job &each) {
            return each.request.code == ReportCode::ProgramStatus && each.number != underWay;
        });
    job.number = ++numbers;
    lane.push_back(std::move(job));
}

/**
 * Reads behind which something else waits, a write or an order, must see that. And a sleeping mouse must not collect
 * the same reads without end.
 */
bool JobOrder::isAsked(const std::deque<Job> &lane, const Job &job) const
{
    if (!job.isRead() && !job.isCheck())
        return false;
    for (auto each = lane.rbegin(); each != lane.rend() && (each->isRead() || each->isCheck()); ++each) {
        if (each->number != underWay && isSame(*each, job))
            return true;
    }
    return false;
}

Job *JobOrder::find(std::uint64_t number)
{
    for (std::deque<Job> &lane : lanes) {
        for (Job &job : lane) {
            if (job.number == number)
                return &job;
        }
    }
    return nullptr;
}

std::optional<Job> JobOrder::remove(std::uint64_t number)
{
    underWay = 0;
    const Job *const job = find(number);
    if (!job)
        return std::nullopt;
    Job removed = *job;
    erase(lanes[laneOf(removed)], [number](const Job &each) { return each.number == number; });
    return removed;
}

const Job *JobOrder::lastOrder() const
{
    const auto &lane = lanes[Mouse];
    const auto last = std::find_if(lane.rbegin(), lane.rend(), [](const Job &job) { return job.isOrder(); });
    return last == lane.rend() ? nullptr : &*last;
}

bool JobOrder::has(Job::Kind kind) const
{
    return std::any_of(lanes[Mouse].begin(), lanes[Mouse].end(), [kind](const Job &job) { return job.kind == kind; });
}

std::size_t JobOrder::orders() const
{
    return static_cast<std::size_t>(
        std::count_if(lanes[Mouse].begin(), lanes[Mouse].end(), [](const Job &job) { return job.isOrder(); }));
}

void JobOrder::keepOrders()
{
    for (std::deque<Job> &lane : lanes)
        erase(lane, [](const Job &job) { return !job.isOrder(); });
}

std::size_t JobOrder::dropOrders(std::uint64_t upTo)
{
    return erase(lanes[Mouse], [upTo](const Job &job) { return job.isOrder() && job.number <= upTo; });
}

std::size_t JobOrder::dropResets()
{
    bool isOtherProfile = false;
    return erase(lanes[Mouse], [&](const Job &job) {
        isOtherProfile = isOtherProfile || job.kind == Job::Kind::SelectProfile;
        return job.kind == Job::Kind::FactoryReset && !isOtherProfile;
    });
}

} // namespace portwire
