#include "portwire/link/Link.h"

#include "portwire/link/ProtocolSteps.h"

#include <QDebug>

#include <thread>
#include <utility>

namespace portwire {

namespace {

/** Payload of a report on pairing. */
constexpr std::uint8_t pairingFailed = 2;

/** A mouse that wakes up announces itself; this pause is for an announcement that got lost. In answer times. */
constexpr int offlinePause = 25;
/** After requests that nobody answered: they took three answer times already. */
constexpr int silencePause = 5;

/** Settings of a profile that the mouse has left are asked for again, unless it leaves each one before they arrive. */
constexpr int maxTimesOutdated = 4;

bool isOver(Outcome outcome) { return outcome == Outcome::Done || outcome == Outcome::Refused; }

} // namespace

std::shared_ptr<Link> Link::start(std::shared_ptr<Channels> onChannels, const std::string &path,
                                  PortwireReportCallback callback, std::shared_ptr<Work> work)
{
    auto link = std::make_shared<Link>(std::move(onChannels), path, callback, std::move(work));
    link->delivery->start();
    link->device.open(link);
    std::thread([link] { link->run(); }).detach();
    return link;
}

Link::Link(std::shared_ptr<Channels> onChannels, const std::string &path, PortwireReportCallback callback,
           std::shared_ptr<Work> work)
    : toDo(std::move(work)), device(std::move(onChannels), path, toDo), delivery(std::make_shared<Delivery>(callback))
{
}

void Link::end()
{
    delivery->end();
    isEnded = true;
    wake();
}

void Link::add(Job job)
{
    toDo->add(std::move(job));
    wake();
}

void Link::update(const FlashDataMap &record, const FlashDataMap &previous)
{
    toDo->update(record, previous);
    wake();
}

void Link::replace(const FlashDataMap &record)
{
    toDo->replace(record);
    wake();
}

void Link::arrived(const Frame &frame)
{
    toDo->reported(frame);
    {
        const std::lock_guard lock(mutex);
        ++signsOfLife;
        pausedUntil = {};
    }
    wake();
    delivery->post({frame.header(), frame.payload});
}

/** What it changes on itself from now on is not announced. */
void Link::wentAway() { wake(); }

void Link::wake()
{
    const std::lock_guard lock(mutex);
    ++wakes;
    changed.notify_one();
}

void Link::run()
{
    while (!isEnded) {
        std::unique_lock lock(mutex);
        const unsigned wakesBefore = wakes;
        lock.unlock();
        std::optional<Clock::time_point> due;
        if (doNext(due))
            continue;
        lock.lock();
        const auto isNew = [&] { return isEnded || wakes != wakesBefore; };
        if (due)
            changed.wait_until(lock, *due, isNew);
        else
            changed.wait(lock, isNew);
    }
}

/** \return false if there is nothing to do now, or before `due`. */
bool Link::doNext(std::optional<Clock::time_point> &due)
{
    // A link that has ended may be in the middle of a request, and what it does counts.
    const std::lock_guard turn(toDo->turn());
    if (isEnded)
        return false;
    const auto now = Clock::now();
    // Also if nothing is to be asked: the reports of the device need an open channel.
    const bool isOpen = device.reopen();
    std::unique_lock lock(mutex);
    const auto pause = pausedUntil;
    const unsigned signsBefore = signsOfLife;
    lock.unlock();
    const bool isPaused = now < pause;
    const auto step = toDo->next(isPaused, now, due);
    if (isPaused)
        due = pause;
    else if (!isOpen)
        due = now + offlinePause * device.answerTime();
    if (!step)
        return false;
    const Outcome outcome = step->job ? runJob(*step) : runBatch(*step);
    deliverReset();
    if (!step->job || !step->job->isForReceiver)
        pauseAfter(outcome, signsBefore);
    return true;
}

/** \return what the request came to; Refused also for one that is given up. */
Outcome Link::runJob(Work::Step step)
{
    const Job job = *step.job;
    const bool isWhole = job.kind == Job::Kind::WholeRecord;
    // What a mouse didn't hear must not be said to the one that takes its place.
    const auto isStillMeant = [&] { return !job.isOrder() || toDo->mayChange(step); };
    const Answer answer =
        isWhole ? ProtocolSteps::readImage(device, *toDo, step) : device.ask(job.request, isStillMeant);
    const bool isGivenUp =
        !isOver(answer.outcome) && !job.isForReceiver && wasLastTry(step, answer.outcome, job.request.code);
    if (answer.outcome == Outcome::Outdated)
        toDo->outdated(step);
    if (isGivenUp)
        qWarning("portwire: %s never answers request %d, which is given up", path().c_str(),
                 static_cast<int>(job.request.code));
    else if (!isOver(answer.outcome) && !job.isForReceiver)
        return answer.outcome;
    const bool isDone = answer.outcome == Outcome::Done;
    toDo->finish(step, isDone ? &answer.frame : nullptr);
    if (isDone && job.isRead())
        deliver(step, answer.frame);
    // Whoever pairs waits for a status, and there will be none from a receiver that didn't take the order.
    if (!isDone && job.request.code == ReportCode::EnterPairing) {
        const Frame failed{ReportCode::PairingStatus, 0, 0, 0, {pairingFailed}};
        if (answer.outcome == Outcome::Refused) // one that was silent may have heard the order, and look for a mouse
            toDo->reported(failed);
        deliver(step, failed);
    }
    // A mouse that doesn't tell its profile is shown as one that has none.
    if (!isDone && job.kind == Job::Kind::Read && job.request.code == ReportCode::CurrentConfig)
        deliver(step, {ReportCode::CurrentConfig, 0, 0, 0, {}});
    return isGivenUp ? Outcome::Refused : answer.outcome;
}

Outcome Link::runBatch(const Work::Step &step)
{
    const auto [outcome, last] = ProtocolSteps::write(device, *toDo, step);
    if (outcome == Outcome::Done) {
        toDo->written(step);
        return outcome;
    }
    const bool isRefused = outcome == Outcome::Refused;
    if (!isRefused && !wasLastTry(step, outcome, ReportCode::WriteFlash))
        return outcome;
    if (outcome == Outcome::BatchLost) {
        qWarning("portwire: %s keeps losing what is written at address %d, which is given up", path().c_str(),
                 step.batch.writes.front().address);
        for (const WriteQueue::Write &write : step.batch.writes)
            toDo->giveUp(step, write);
    } else {
        qWarning("portwire: %s %s a write at address %d, which is given up", path().c_str(),
                 isRefused ? "refuses" : "never answers", last->address);
        toDo->giveUp(step, *last);
    }
    return Outcome::Refused;
}

/**
 * Everything has an end: what a mouse ignores again and again, while it answers something else, would keep all behind
 * it waiting. A mouse that is silent altogether sleeps, and keeps what is to be done for it.
 */
bool Link::wasLastTry(const Work::Step &step, Outcome outcome, ReportCode code)
{
    if (outcome == Outcome::Outdated)
        return false;
    const bool isAlive = outcome == Outcome::BatchLost || ProtocolSteps::answersAnother(device, code, attempts++);
    return isAlive && toDo->ignored(step);
}

/** Keeps quiet for a while after a request that came to nothing, unless the mouse has shown itself meanwhile. */
void Link::pauseAfter(Outcome outcome, unsigned signsBefore)
{
    if (isOver(outcome) || outcome == Outcome::Outdated)
        return;
    const std::lock_guard lock(mutex);
    if (signsOfLife == signsBefore)
        pausedUntil =
            Clock::now() + (outcome == Outcome::MouseOffline ? offlinePause : silencePause) * device.answerTime();
}

/** Gives an answer to the callback; settings are brought together with what the program changed meanwhile. */
void Link::deliver(const Work::Step &step, const Frame &frame)
{
    Delivery::Item item{frame.header(), frame.payload};
    if (frame.code == ReportCode::ReadFlash) {
        item.prepare = [weak = weak_from_this(), step, work = toDo](std::uint8_t *bytes, std::size_t count) {
            if (work->prepare(step, bytes, count))
                return true;
            Job job = *step.job;
            const auto link = weak.lock();
            if (!link || ++job.timesOutdated > maxTimesOutdated)
                return true;
            link->add(std::move(job));
            return false;
        };
    }
    delivery->post(std::move(item));
}

/** The report of a reset goes to the link that is there when it is delivered. */
void Link::deliverReset()
{
    const unsigned reset = toDo->unreportedReset();
    if (reset == 0 || std::exchange(postedReset, reset) == reset)
        return;
    Delivery::Item item{Frame{ReportCode::FactoryReset, 0, 0, 0, {}}.header()};
    item.prepare = [work = toDo](std::uint8_t *, std::size_t) { return work->takeResetReport(); };
    delivery->post(std::move(item));
}

} // namespace portwire
