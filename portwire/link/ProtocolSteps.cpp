#include "portwire/link/ProtocolSteps.h"

#include <algorithm>

namespace portwire {

namespace {

/** A whole record is read anew while the mouse keeps changing it, but not for ever. */
constexpr int maxReadings = 4;

Request readOf(std::size_t address, std::size_t length)
{
    return {ReportCode::ReadFlash, static_cast<std::uint16_t>(address), 0, {static_cast<std::uint8_t>(length)}};
}

Answer readOnce(LinkedDevice &device)
{
    Answer image{Outcome::Done, {ReportCode::ReadFlash, 0, 0, 0, {}}};
    std::vector<std::uint8_t> &bytes = image.frame.payload;
    bytes.reserve(imageSize);
    while (bytes.size() < imageSize) {
        const std::size_t length = std::min(maxPayload, imageSize - bytes.size());
        const Answer answer = device.ask(readOf(bytes.size(), length));
        if (answer.outcome != Outcome::Done)
            return answer;
        const auto from = answer.frame.payload.begin();
        bytes.insert(bytes.end(), from, from + static_cast<std::ptrdiff_t>(length));
    }
    return image;
}

} // namespace

Answer ProtocolSteps::readImage(LinkedDevice &device, const Work &work, Work::Step &step)
{
    for (int reading = 1;; ++reading) {
        const unsigned changesBefore = work.changes();
        step = work.again(step);
        Answer answer = readOnce(device);
        if (answer.outcome != Outcome::Done || work.changes() == changesBefore)
            return answer;
        if (!work.isCurrent(step) && step.job->timesOutdated < maxReadings)
            return {Outcome::Outdated};
        if (reading == maxReadings)
            return answer;
    }
}

ProtocolSteps::Written ProtocolSteps::write(LinkedDevice &device, const Work &work, const Work::Step &step)
{
    const auto &writes = step.batch.writes;
    for (const WriteQueue::Write &next : writes) {
        // What has been said by now counts: it may be the wrong profile already, or another mouse.
        device.takeArrived();
        const auto isStillMeant = [&] { return work.mayChange(step); };
        if (!isStillMeant())
            return {Outcome::Outdated, &next};
        std::uint8_t flags = 0;
        if (&next == &writes.front())
            flags |= firstOfBatch;
        if (&next == &writes.back())
            flags |= lastOfBatch;
        const Answer answer = device.ask({ReportCode::WriteFlash, next.address, flags, next.bytes}, isStillMeant);
        if (answer.outcome != Outcome::Done)
            return {answer.outcome, &next};
    }
    return {Outcome::Done};
}

bool ProtocolSteps::answersAnother(LinkedDevice &device, ReportCode than, unsigned attempt)
{
    static const std::array<Request, 3> others{{readOf(0, 1), {ReportCode::Battery}, {ReportCode::MouseVersion}}};
    const Request &first = others[attempt % others.size()];
    const Request &other = first.code == than ? others[(attempt + 1) % others.size()] : first;
    const Outcome outcome = device.ask(other).outcome;
    return outcome == Outcome::Done || outcome == Outcome::Refused;
}

} // namespace portwire
