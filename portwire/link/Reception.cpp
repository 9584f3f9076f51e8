#include "portwire/link/Reception.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace portwire {

std::size_t leastAnswer(const Request &request)
{
    if (request.code == ReportCode::ReadFlash || request.code == ReportCode::FirmwareInfo)
        return request.payload.empty() ? 0 : request.payload[0];
    const auto known = std::find_if(std::begin(answerLengths), std::end(answerLengths),
                                    [&](const AnswerLength &each) { return each.code == request.code; });
    return known == std::end(answerLengths) ? 0 : known->bytes;
}

namespace {

/** Reports that are taken in one go. Whoever waits for an answer must not take those of a device that floods for ever.
 */
constexpr int mostInOneGo = 32;

} // namespace

Reception::Reception(std::unique_ptr<Endpoint> opened, std::shared_ptr<Statistics> counts)
    : endpoint(std::move(opened)), counters(std::move(counts))
{
}

void Reception::run()
{
    while (endpoint->waitForReport()) {
        // In a flood this thread would have the lock again before another one that waits for it has woken up.
        while (turnsWanted > 0)
            std::this_thread::yield();
        const std::lock_guard turn(drainMutex);
        drain();
    }
    failAll();
}

std::optional<Frame> Reception::ask(const Request &request, std::chrono::milliseconds patience)
{
    Waiting waiting{request};
    const std::uint8_t sequence = enter(waiting);
    if (sequence == 0)
        return std::nullopt;

    ++counters->sent;
    if (request.code == ReportCode::WriteFlash)
        ++counters->written;
    const Report report = encodeFrame({request.code, sequence, request.selector, request.flags, request.payload});
    const bool isSent = endpoint->send(report);
    // What has arrived already is taken here: the answer of a fast device costs no change of threads. If another thread
    // is at it, it takes the answer as well.
    if (const std::unique_lock turn(drainMutex, std::try_to_lock); isSent && turn)
        drain();
    if (!isSent)
        failAll();

    std::unique_lock lock(mutex);
    const auto isOver = [&] { return waiting.answer || waiting.failed || gone; };
    if (isSent && !waiting.arrived.wait_for(lock, patience, isOver)) {
        // A busy computer, one with a game on it, may leave the reader thread without the processor for longer than a
        // device has for its answer. It is the device that has to be in time, so what has arrived by now counts.
        lock.unlock();
        takeArrived();
        lock.lock();
    }
    waitingBySequence[sequence] = nullptr;
    return std::move(waiting.answer);
}

/** Gives the request a sequence number under which its answer will be known. 0 if there is none left. */
std::uint8_t Reception::enter(Waiting &waiting)
{
    const std::lock_guard lock(mutex);
    if (gone)
        return 0;
    // Numbers are used in turn, so that an answer that comes late doesn't meet the number's next owner.
    for (unsigned tried = 0; tried < 255; ++tried) {
        lastSequence = lastSequence == 255 ? std::uint8_t{1} : static_cast<std::uint8_t>(lastSequence + 1);
        if (!waitingBySequence[lastSequence]) {
            waitingBySequence[lastSequence] = &waiting;
            return lastSequence;
        }
    }
    return 0;
}

void Reception::takeArrived()
{
    ++turnsWanted;
    const std::lock_guard turn(drainMutex);
    --turnsWanted;
    drain();
}

void Reception::drain()
{
    Report report;
    for (int taken = 0; taken < mostInOneGo && endpoint->takeReport(report); ++taken) {
        ++counters->received;
        auto frame = decodeFrame(report);
        if (!frame) {
            ++counters->dropped;
            continue;
        }
        ++heardReports;
        sort(std::move(*frame));
    }
}

void Reception::sort(Frame frame)
{
    if (frame.sequence != 0) {
        if (!complete(frame))
            ++counters->dropped;
        return;
    }
    if (!isUnprompted(frame.code)) {
        ++counters->dropped;
        return;
    }
    if (const auto current = currentListener())
        current->arrived(frame);
}

/** \return false if nobody waits for this answer. */
bool Reception::complete(Frame &frame)
{
    const std::lock_guard lock(mutex);
    Waiting *waiting = waitingBySequence[frame.sequence];
    if (!waiting || waiting->request.code != frame.code || waiting->request.selector != frame.selector)
        return false;
    const bool isDone = frame.flags == static_cast<std::uint8_t>(AnswerStatus::Done);
    if (isDone && frame.payload.size() < leastAnswer(waiting->request))
        waiting->failed = true; // cut short: asking again at once is better than waiting
    else
        waiting->answer = std::move(frame);
    waiting->arrived.notify_one();
    return true;
}

void Reception::close() { endpoint->close(); }

void Reception::failAll()
{
    std::shared_ptr<ReportListener> last;
    {
        const std::lock_guard lock(mutex);
        gone = true;
        last = std::exchange(listener, {}).lock();
        for (Waiting *waiting : waitingBySequence) {
            if (waiting)
                waiting->arrived.notify_one();
        }
    }
    if (last)
        last->wentAway();
}

bool Reception::isGone() const
{
    const std::lock_guard lock(mutex);
    return gone;
}

std::shared_ptr<ReportListener> Reception::currentListener() const
{
    const std::lock_guard lock(mutex);
    return listener.lock();
}

void Reception::setListener(const std::shared_ptr<ReportListener> &newListener)
{
    // An end comes before the start of whoever takes the place. So if the other one is here already, this one has
    // ended.
    const std::lock_guard lock(mutex);
    if (!newListener->hasEnded())
        listener = newListener;
}

} // namespace portwire
