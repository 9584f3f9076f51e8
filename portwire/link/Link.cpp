#include "portwire/link/Link.h"

#include "portwire/link/StatusPayload.h"

#include <QDebug>

#include <algorithm>
#include <thread>

namespace portwire {

namespace {

/** A mouse that wakes up announces itself; this is for an announcement that got lost. */
constexpr std::chrono::milliseconds offlinePause{250};
/** After requests that nobody answered: they took some 30 ms already. */
constexpr std::chrono::milliseconds silencePause{50};

/** A mouse that answers other requests but never this one doesn't know it. */
constexpr int maxTimesIgnored = 20;

/** A whole record is read anew while the mouse keeps changing it, but not for ever. */
constexpr int maxReadings = 4;

/**
 * Whether the same read waits already, with nothing but reads behind it, so that its answer serves both: a sleeping
 * mouse must not collect them without end. The first one may be under way, too early for what has changed since.
 */
bool isAsked(const std::deque<Job> &jobs, const Job &job)
{
    if (job.kind != Job::Kind::Read)
        return false;
    for (std::size_t i = jobs.size(); i > 1 && jobs[i - 1].kind == Job::Kind::Read; --i) {
        const Request &other = jobs[i - 1].request;
        if (other.code == job.request.code && other.selector == job.request.selector &&
            other.payload == job.request.payload)
            return true;
    }
    return false;
}

} // namespace

std::shared_ptr<Link> Link::start(std::shared_ptr<Channels> onChannels, const std::string &path,
                                  PortwireReportCallback callback, std::shared_ptr<WriteQueue> writeQueue)
{
    auto link = std::make_shared<Link>(std::move(onChannels), path, callback, std::move(writeQueue));
    const std::weak_ptr<Link> weak = link;
    link->listener = std::make_shared<const ReportListener>([weak](const Frame &frame) {
        if (const auto strong = weak.lock())
            strong->arrived(frame);
    });
    link->goneNotice = [weak] {
        if (const auto strong = weak.lock())
            strong->wentAway();
    };
    link->delivery->start();
    link->openChannel();
    std::thread([link] { link->run(); }).detach();
    return link;
}

Link::Link(std::shared_ptr<Channels> onChannels, std::string path, PortwireReportCallback callback,
           std::shared_ptr<WriteQueue> writeQueue)
    : channels(std::move(onChannels)), devicePath(std::move(path)), writes(std::move(writeQueue)),
      delivery(std::make_shared<Delivery>(callback))
{
}

void Link::end()
{
    delivery->end();
    const std::lock_guard lock(mutex);
    isEnded = true;
    changed.notify_one();
}

void Link::add(Job job)
{
    const std::lock_guard lock(mutex);
    std::deque<Job> &jobs = job.isForReceiver ? receiverJobs : mouseJobs;
    if (isAsked(jobs, job))
        return;
    jobs.push_back(std::move(job));
    changed.notify_one();
}

void Link::update(const FlashDataMap &record, const FlashDataMap &previous)
{
    if (!writes->update(record, previous))
        return;
    const std::lock_guard lock(mutex);
    changed.notify_one();
}

/** Takes what the device sends unprompted. */
void Link::arrived(const Frame &frame)
{
    if (frame.code == ReportCode::StatusChanged)
        ++changes;
    // A write may carry bytes along that it doesn't change. From here on they would be those of the profile before.
    if (frame.code == ReportCode::StatusChanged && !frame.payload.empty() && frame.payload[0] & anotherProfile)
        writes->forget();
    {
        const std::lock_guard lock(mutex);
        ++wakes;
        pausedUntil = {};
        changed.notify_one();
    }
    if (frame.code == ReportCode::StatusChanged)
        delivery->postFlags({frame.header(), frame.payload});
    else
        delivery->post({frame.header(), frame.payload});
}

/** What it changes on itself from now on is not announced. */
void Link::wentAway()
{
    const std::lock_guard lock(mutex);
    changed.notify_one();
}

void Link::run()
{
    std::unique_lock lock(mutex);
    while (!isEnded) {
        if (!receiverJobs.empty()) {
            runJob(receiverJobs, lock);
            continue;
        }
        const auto now = Clock::now();
        if (now < pausedUntil) {
            changed.wait_until(lock, pausedUntil);
            continue;
        }
        // A request sees what was written before it, so it lets queued writes go first, and without holding them back.
        std::optional<Clock::time_point> due;
        if (const auto batch = writes->take(!mouseJobs.empty(), now, due))
            runBatch(*batch, lock);
        else if (!mouseJobs.empty())
            runJob(mouseJobs, lock);
        else if (due)
            changed.wait_until(lock, *due);
        else if (isAway())
            lookForDevice(lock);
        else
            changed.wait(lock);
    }
}

/** Nothing is to be asked, but the reports of the device need an open channel. */
void Link::lookForDevice(std::unique_lock<std::mutex> &lock)
{
    lock.unlock();
    const bool isBack = openChannel() != nullptr;
    lock.lock();
    if (!isBack && !isEnded)
        changed.wait_for(lock, offlinePause);
}

void Link::runJob(std::deque<Job> &jobs, std::unique_lock<std::mutex> &lock)
{
    const Job job = jobs.front();
    const unsigned wakesBefore = wakes;
    lock.unlock();
    const Outcome outcome = perform(job);
    lock.lock();
    const bool isOver = outcome == Outcome::Done || outcome == Outcome::Refused;
    const bool isIgnored =
        job.kind == Job::Kind::Read && outcome == Outcome::NoAnswer && ++jobs.front().timesIgnored >= maxTimesIgnored;
    // A mouse that doesn't tell its profile, or tells it without saying anything, is shown as one that has none.
    if ((isIgnored || outcome == Outcome::Refused) && job.request.code == ReportCode::CurrentConfig)
        delivery->post({Frame{ReportCode::CurrentConfig, 0, 0, 0, {}}.header(), {}});
    if (isOver || isIgnored || job.isForReceiver)
        jobs.pop_front();
    else
        pauseAfter(outcome, wakesBefore);
}

void Link::runBatch(const WriteQueue::Batch &batch, std::unique_lock<std::mutex> &lock)
{
    const unsigned wakesBefore = wakes;
    lock.unlock();
    const auto [outcome, last] = write(batch);
    if (outcome == Outcome::Refused) {
        qWarning("portwire: %s refuses a write at address %d", devicePath.c_str(), last->address);
        writes->giveUp(*last, batch.serial);
    }
    if (outcome == Outcome::Done)
        writes->confirm(batch, Clock::now());
    lock.lock();
    pauseAfter(outcome, wakesBefore);
}

/** Keeps quiet for a while after a request that came to nothing, unless the mouse has shown itself meanwhile. */
void Link::pauseAfter(Outcome outcome, unsigned wakesBefore)
{
    if (wakes != wakesBefore || outcome == Outcome::Done || outcome == Outcome::Refused)
        return;
    pausedUntil = Clock::now() + (outcome == Outcome::NoAnswer ? silencePause : offlinePause);
}

/**
 * The channel of the device, opened again if the device was away. What was changed on it meanwhile was announced to
 * nobody, so the record is read anew.
 */
std::shared_ptr<Channel> Link::openChannel()
{
    if (channel && !channel->isGone())
        return channel;
    const bool wasAway = channel != nullptr;
    auto opened = channels->find(devicePath);
    if (!opened)
        return nullptr;
    channel = std::move(opened);
    channel->setListener(listener, goneNotice);
    if (wasAway) {
        ++changes; // a record that is being read now starts over
        const std::lock_guard lock(mutex);
        const bool isAskedFor = std::any_of(mouseJobs.begin(), mouseJobs.end(),
                                            [](const Job &job) { return job.kind == Job::Kind::WholeRecord; });
        if (!isAskedFor)
            mouseJobs.push_back({Job::Kind::WholeRecord, {ReportCode::ReadFlash}});
    }
    return channel;
}

std::pair<Link::Outcome, std::optional<Frame>> Link::ask(const Request &request)
{
    const auto device = openChannel();
    if (!device)
        return {Outcome::MouseOffline, std::nullopt};
    auto answer = device->ask(request);
    if (!answer)
        return {Outcome::NoAnswer, std::nullopt};
    switch (static_cast<AnswerStatus>(answer->flags)) {
    case AnswerStatus::Done:
        return {Outcome::Done, std::move(answer)};
    case AnswerStatus::MouseOffline:
        return {Outcome::MouseOffline, std::nullopt};
    case AnswerStatus::BatchLost:
        return {Outcome::NoAnswer, std::nullopt};
    case AnswerStatus::Refused:
        break;
    }
    return {Outcome::Refused, std::nullopt};
}

Link::Outcome Link::perform(const Job &job)
{
    if (job.kind == Job::Kind::WholeRecord)
        return readImage();
    const std::uint64_t serial = writes->serial();
    const auto [outcome, answer] = ask(job.request);
    if (answer && job.kind != Job::Kind::Tell)
        deliver(*answer, answer->payload, serial);
    return outcome;
}

Link::Outcome Link::readImage()
{
    for (int reading = 1;; ++reading) {
        const std::uint64_t serial = writes->serial();
        const unsigned changesBefore = changes;
        std::vector<std::uint8_t> image;
        const Outcome outcome = readImage(image);
        if (outcome != Outcome::Done)
            return outcome;
        // A change in the middle could leave halves of two profiles in the image.
        if (changes != changesBefore && reading < maxReadings)
            continue;
        deliver({ReportCode::ReadFlash, 0, 0, 0, {}}, std::move(image), serial);
        return outcome;
    }
}

Link::Outcome Link::readImage(std::vector<std::uint8_t> &image)
{
    image.reserve(imageSize);
    while (image.size() < imageSize) {
        if (isEnded)
            return Outcome::NoAnswer;
        const std::size_t length = std::min(maxPayload, imageSize - image.size());
        const auto [outcome, answer] = ask(
            {ReportCode::ReadFlash, static_cast<std::uint16_t>(image.size()), 0, {static_cast<std::uint8_t>(length)}});
        if (!answer)
            return outcome;
        image.insert(image.end(), answer->payload.begin(), answer->payload.begin() + static_cast<long>(length));
    }
    return Outcome::Done;
}

/** \return what became of the batch, and the write that decided it. */
std::pair<Link::Outcome, const WriteQueue::Write *> Link::write(const WriteQueue::Batch &batch)
{
    for (const WriteQueue::Write &next : batch.writes) {
        if (isEnded)
            return {Outcome::NoAnswer, &next};
        std::uint8_t flags = 0;
        if (&next == &batch.writes.front())
            flags |= firstOfBatch;
        if (&next == &batch.writes.back())
            flags |= lastOfBatch;
        const auto [outcome, answer] = ask({ReportCode::WriteFlash, next.address, flags, next.bytes});
        if (!answer)
            return {outcome, &next};
    }
    return {Outcome::Done, nullptr};
}

/** Gives an answer to the callback; settings are brought together with what the program changed meanwhile. */
void Link::deliver(const Frame &frame, std::vector<std::uint8_t> payload, std::uint64_t sinceSerial)
{
    Delivery::Item item{frame.header(), std::move(payload)};
    if (frame.code == ReportCode::ReadFlash) {
        item.prepare = [queue = writes, address = frame.selector, sinceSerial](std::vector<std::uint8_t> &bytes) {
            queue->merge(address, bytes, sinceSerial);
        };
    }
    delivery->post(std::move(item));
}

} // namespace portwire
