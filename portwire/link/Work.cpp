#include "portwire/link/Work.h"

#include <QDebug>

#include <utility>

namespace portwire {

namespace {

/** Tries that a mouse may leave without an answer while it answers other requests, some 80 ms each. */
constexpr int maxTimesIgnored = 6;

/** A mouse that gives reason to ask whose it is all the time keeps only writes and orders waiting. */
constexpr int maxChecksInARow = 6;

/** A receiver looks for 30 s and then says that it has failed. If that gets lost, the mouse isn't left alone for ever.
 */
constexpr std::chrono::seconds longestPairing{35};

} // namespace

// The program's side -------------------------------------------------------------------------------------------------

void Work::add(Job job)
{
    const std::lock_guard lock(mutex);
    if (job.isOrder())
        job.writesBehind = std::make_shared<WriteQueue>();
    if (job.request.code == ReportCode::EnterPairing)
        pairingUntil = Clock::now() + longestPairing;
    jobs.add(std::move(job));
}

/** The queue of what is handed over now: behind the last order. */
WriteQueue &Work::last()
{
    const Job *const order = jobs.lastOrder();
    return order ? *order->writesBehind : *epoch;
}

/**
 * Whether a hand-over is meant for what this queue leads to. If not, the user gets to see what the mouse holds: a
 * change without effect must not stay on the screen.
 */
bool Work::mayTake(const WriteQueue &queue)
{
    if (!isOutdated || &queue != epoch.get())
        return true;
    if (!isRefusalLogged)
        qWarning("portwire: a change is dropped, it was meant for what %s held before", devicePath.c_str());
    isRefusalLogged = true;
    jobs.add(Job::wholeRecord());
    return false;
}

void Work::update(const FlashDataMap &record, const FlashDataMap &previous)
{
    const std::lock_guard lock(mutex);
    WriteQueue &queue = last();
    if (mayTake(queue))
        queue.update(record, previous);
}

void Work::replace(const FlashDataMap &record)
{
    const std::lock_guard lock(mutex);
    WriteQueue &queue = last();
    if (mayTake(queue))
        queue.replace(record);
}

void Work::recordTaken()
{
    const std::lock_guard lock(mutex);
    if (offered.lock() != epoch)
        return;
    epoch->setGiven(true);
    isOutdated = false;
}

bool Work::isPairing() const
{
    const std::lock_guard lock(mutex);
    return pairingUntil.has_value();
}

void Work::passOn()
{
    const std::lock_guard lock(mutex);
    jobs.keepOrders();
    // Whoever ordered the pairing has given it up, and the mouse that is there is in use again.
    pairingUntil.reset();
    isInherited = true;
    doubt(Job::Kind::AskAddress);
}

void Work::abandon(const char *reason)
{
    const std::lock_guard lock(mutex);
    logDropped(epoch->size(), jobs.orders(), reason);
}

// The side of the link -----------------------------------------------------------------------------------------------

std::optional<Work::Step> Work::next(bool onlyReceiver, Clock::time_point now, std::optional<Clock::time_point> &due)
{
    const std::lock_guard lock(mutex);
    due.reset();
    const auto stepOf = [this](const Job &job) {
        jobs.begin(job);
        checksInARow = job.isCheck() ? checksInARow + 1 : 0;
        return Step{epoch, epoch->serial(), job};
    };
    if (const Job *const job = jobs.front(JobOrder::Receiver)) {
        if (job->request.code == ReportCode::EnterPairing)
            pairingUntil = now + longestPairing;
        return stepOf(*job);
    }
    if (onlyReceiver)
        return std::nullopt;
    if (pairingUntil && now < *pairingUntil) {
        due = pairingUntil;
        return std::nullopt;
    }
    if (std::exchange(pairingUntil, std::nullopt))
        doubt(Job::Kind::AskAddress); // the word that was lost may have been that another mouse is paired
    const Job *const check = jobs.front(JobOrder::Checks);
    const Job *const job = jobs.front(JobOrder::Mouse);
    if (check && !(checksInARow >= maxChecksInARow && job && !job->isOrder()))
        return stepOf(*check);
    if (!check) {
        if (const auto batch = epoch->take(job != nullptr, now, due))
            return Step{epoch, batch->serial, std::nullopt, *batch};
    }
    return job ? std::optional(stepOf(*job)) : std::nullopt;
}

Work::Step Work::again(const Step &step) const
{
    const std::lock_guard lock(mutex);
    return {epoch, epoch->serial(), step.job, {}};
}

bool Work::isCurrent(const Step &step) const
{
    const std::lock_guard lock(mutex);
    return step.epoch == epoch;
}

bool Work::mayChange(const Step &step) const
{
    const std::lock_guard lock(mutex);
    return step.epoch == epoch && !jobs.front(JobOrder::Checks);
}

void Work::outdated(const Step &step)
{
    const std::lock_guard lock(mutex);
    if (Job *const job = jobs.find(step.job->number))
        ++job->timesOutdated;
}

void Work::finish(const Step &step, const Frame *answer)
{
    const std::lock_guard lock(mutex);
    const auto job = jobs.remove(step.job->number);
    if (!job)
        return;
    const auto told =
        answer && answer->code == ReportCode::CurrentConfig ? std::optional(answer->payload[0]) : std::nullopt;
    switch (job->kind) {
    case Job::Kind::AskAddress: {
        std::optional<Address> address;
        if (answer && (answer->payload[1] || answer->payload[2] || answer->payload[3]))
            address = Address{answer->payload[1], answer->payload[2], answer->payload[3]};
        addressIs(address);
        break;
    }
    case Job::Kind::AskProfile:
        profileIs(told);
        break;
    case Job::Kind::SelectProfile:
        begin(job->writesBehind);
        isOutdated = false;
        profile = answer ? std::optional(answer->payload[0]) : std::nullopt;
        // Also where the mouse didn't take it: whoever chose it has the choice on the screen, and the program asks for
        // the number behind each record.
        jobs.add(Job::wholeRecord());
        break;
    case Job::Kind::FactoryReset:
        begin(job->writesBehind);
        isOutdated = false;
        if (answer)
            ++resetsDone;
        break;
    case Job::Kind::Read:
        if (answer && answer->code == ReportCode::PairingStatus && pairingUntil)
            pairingIs(answer->payload[0]);
        if (told && step.epoch == epoch && !jobs.front(JobOrder::Checks))
            profile = told;
        break;
    case Job::Kind::Tell:
    case Job::Kind::WholeRecord:
        break;
    }
}

void Work::written(const Step &step)
{
    const std::lock_guard lock(mutex);
    batchesIgnored = 0;
    step.epoch->confirm(step.batch, Clock::now());
}

void Work::giveUp(const Step &step, const WriteQueue::Write &write)
{
    const std::lock_guard lock(mutex);
    batchesIgnored = 0;
    step.epoch->giveUp(write, step.batch.serial);
    jobs.add(Job::wholeRecord()); // as in mayTake()
}

bool Work::ignored(const Step &step)
{
    const std::lock_guard lock(mutex);
    if (!step.job)
        return ++batchesIgnored >= maxTimesIgnored;
    Job *const job = jobs.find(step.job->number);
    return job && ++job->timesIgnored >= maxTimesIgnored;
}

// Delivery -----------------------------------------------------------------------------------------------------------

bool Work::prepare(const Step &step, std::uint8_t *bytes, std::size_t count)
{
    const std::lock_guard lock(mutex);
    if (step.epoch != epoch)
        return false;
    epoch->merge(step.job->request.selector, bytes, count, step.serial);
    if (count == imageSize)
        offered = epoch;
    return true;
}

unsigned Work::changes() const
{
    const std::lock_guard lock(mutex);
    return changeCount;
}

unsigned Work::unreportedReset() const
{
    const std::lock_guard lock(mutex);
    return resetsReported == resetsDone ? 0 : resetsDone;
}

bool Work::takeResetReport()
{
    const std::lock_guard lock(mutex);
    return std::exchange(resetsReported, resetsDone) != resetsDone;
}

} // namespace portwire
