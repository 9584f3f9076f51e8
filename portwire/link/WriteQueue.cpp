#include "portwire/link/WriteQueue.h"

#include "portwire/link/Frame.h"

#include <algorithm>

namespace portwire {

namespace {

/** An address that keeps changing is written every 8 ms at first, then more and more slowly down to this. */
constexpr std::chrono::milliseconds shortestHold{8};
constexpr std::chrono::milliseconds longestHold{64};
/** An address that has rested this long is written at once again. */
constexpr std::chrono::milliseconds rest{200};

/** Unchanged bytes between two changed ones are sent along when that saves a report. */
constexpr std::size_t longestBridge = 40;

} // namespace

bool WriteQueue::update(const FlashDataMap &record, const FlashDataMap &previous)
{
    const std::lock_guard lock(mutex);
    // Both start from the image, so that only bytes that belong to a field can differ.
    DeviceImage wanted = image;
    encodeImage(record, wanted);
    DeviceImage before = image;
    if (!known.all())
        encodeImage(previous, before);
    bool isChanged = false;
    for (std::size_t i = 0; i < imageSize; ++i) {
        const std::uint8_t held = known[i] ? image[i] : before[i];
        if (wanted[i] == held)
            continue;
        if (!isChanged)
            ++lastSerial;
        isChanged = true;
        image[i] = wanted[i];
        known.set(i);
        queued.set(i);
        changedAt[i] = lastSerial;
    }
    return queued.any();
}

std::uint64_t WriteQueue::serial() const
{
    const std::lock_guard lock(mutex);
    return lastSerial;
}

void WriteQueue::merge(std::size_t address, std::vector<std::uint8_t> &bytes, std::uint64_t sinceSerial)
{
    const std::lock_guard lock(mutex);
    for (std::size_t i = 0; i < bytes.size() && address + i < imageSize; ++i) {
        const std::size_t at = address + i;
        if (queued[at] || changedAt[at] > sinceSerial) {
            bytes[i] = image[at];
        } else {
            image[at] = bytes[i];
            known.set(at);
        }
    }
}

void WriteQueue::forget()
{
    const std::lock_guard lock(mutex);
    known &= queued;
}

bool WriteQueue::isEmpty() const
{
    const std::lock_guard lock(mutex);
    return queued.none();
}

std::optional<WriteQueue::Batch> WriteQueue::take(bool urgent, Clock::time_point now,
                                                  std::optional<Clock::time_point> &due)
{
    const std::lock_guard lock(mutex);
    due.reset();
    if (queued.none())
        return std::nullopt;
    if (!urgent && (queued & lastBatch).any() && now < lastConfirmed + hold) {
        due = lastConfirmed + hold;
        return std::nullopt;
    }
    Batch batch{{}, lastSerial};
    cut(ImageLayout::settingsSize, imageSize, batch.writes);
    cut(0, ImageLayout::settingsSize, batch.writes);
    return batch;
}

/** Whether the unchanged bytes of a range may be sent along: only what the mouse is known to hold. */
bool WriteQueue::mayBridge(std::size_t from, std::size_t to) const
{
    if (to - from > longestBridge)
        return false;
    for (std::size_t i = from; i < to; ++i) {
        if (!known[i])
            return false;
    }
    return true;
}

/** Cuts what is queued in a range of the image into writes. */
void WriteQueue::cut(std::size_t from, std::size_t to, std::vector<Write> &writes) const
{
    std::size_t at = from;
    while (true) {
        while (at < to && !queued[at])
            ++at;
        if (at == to)
            return;
        const std::size_t limit = std::min(to, at + maxPayload);
        std::size_t end = at + 1; // behind the last queued byte of this write
        for (std::size_t i = end; i < limit; ++i) {
            if (!queued[i])
                continue;
            if (!mayBridge(end, i))
                break;
            end = i + 1;
        }
        writes.push_back({static_cast<std::uint16_t>(at), {image.begin() + at, image.begin() + end}});
        at = end;
    }
}

void WriteQueue::confirm(const Batch &batch, Clock::time_point now)
{
    const std::lock_guard lock(mutex);
    std::bitset<imageSize> written;
    for (const Write &write : batch.writes) {
        for (std::size_t at = write.address; at < write.address + write.bytes.size(); ++at) {
            written.set(at);
            if (changedAt[at] <= batch.serial)
                queued.reset(at);
        }
    }
    const bool isRepeated = (written & lastBatch).any() && now < lastConfirmed + rest;
    hold = isRepeated ? std::min(hold * 2, longestHold) : shortestHold;
    lastBatch = written;
    lastConfirmed = now;
}

void WriteQueue::giveUp(const Write &write, std::uint64_t serial)
{
    const std::lock_guard lock(mutex);
    for (std::size_t at = write.address; at < write.address + write.bytes.size(); ++at) {
        if (changedAt[at] > serial)
            continue;
        queued.reset(at);
        known.reset(at);
    }
}

} // namespace portwire
