#include "portwire/link/WriteQueue.h"

#include "portwire/link/Frame.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace portwire {

namespace {

/** An address that keeps changing is written every 8 ms at first, then more and more slowly down to this. */
constexpr std::chrono::milliseconds shortestHold{8};
constexpr std::chrono::milliseconds longestHold{64};
/** An address that has rested this long is written at once again. */
constexpr std::chrono::milliseconds rest{200};

/** Unchanged bytes between two changed ones are sent along when that saves a report. */
constexpr std::size_t longestBridge = 40;

/** Bytes that are compared at once. */
constexpr std::size_t stretch = 64;
static_assert(imageSize % stretch == 0);

/** The bytes that belong to a field of the record; the others are the firmware's own. */
const std::bitset<imageSize> &fieldBytes()
{
    static const std::bitset<imageSize> fields = [] {
        DeviceImage zeros{};
        DeviceImage ones;
        ones.fill(0xFF);
        encodeImage({}, zeros);
        encodeImage({}, ones);
        std::bitset<imageSize> equal;
        for (std::size_t at = 0; at < imageSize; ++at)
            equal.set(at, zeros[at] == ones[at]);
        return equal;
    }();
    return fields;
}

/** A row of parts of the image whose bytes mean something only together. */
struct Parts
{
    std::size_t first;
    std::size_t size;
    std::size_t count;
};

constexpr Parts allParts[] = {{ImageLayout::dpiLevels, 3, 16}, // of each level code and flags, and its colour
                              {ImageLayout::keyFunctions, 3, ImageLayout::slots},
                              {ImageLayout::keySequences, ImageLayout::keySequenceSize, ImageLayout::slots},
                              {ImageLayout::macros, ImageLayout::macroSize, ImageLayout::slots}};

/** Beginning and end of the part that a byte belongs to; of most the byte alone. */
std::pair<std::size_t, std::size_t> partOf(std::size_t at)
{
    for (const Parts &parts : allParts) {
        if (at < parts.first || at >= parts.first + parts.size * parts.count)
            continue;
        const std::size_t from = at - (at - parts.first) % parts.size;
        return {from, from + parts.size};
    }
    return {at, at + 1};
}

} // namespace

void WriteQueue::update(const FlashDataMap &record, const FlashDataMap &previous)
{
    // Both start from the image, so that only bytes that belong to a field can differ.
    DeviceImage wanted = image;
    encodeImage(record, wanted);
    const std::bitset<imageSize> comparable = known & given;
    DeviceImage before = image;
    if (!comparable.all())
        encodeImage(previous, before);
    ++lastSerial;
    // A slider calls this with each of its steps, and changes a few bytes of all.
    const bool isAllKnown = comparable.all();
    for (std::size_t from = 0; from < imageSize; from += stretch) {
        if (isAllKnown && std::memcmp(wanted.data() + from, image.data() + from, stretch) == 0)
            continue;
        for (std::size_t at = from; at < from + stretch; ++at) {
            if (isHeld(at, wanted[at]))
                continue;
            if (comparable[at])
                queue(at, wanted[at]);
            else if (wanted[at] != before[at])
                queuePart(at, wanted);
        }
    }
}

/** All of a macro, say: some of its bytes would mix with those of the one that it replaces and nobody knows. */
void WriteQueue::queuePart(std::size_t changed, const DeviceImage &wanted)
{
    const auto [from, to] = partOf(changed);
    for (std::size_t at = from; at < to; ++at) {
        if (fieldBytes()[at] && !isHeld(at, wanted[at]))
            queue(at, wanted[at]);
    }
}

void WriteQueue::replace(const FlashDataMap &record)
{
    DeviceImage wanted = image;
    encodeImage(record, wanted);
    ++lastSerial;
    for (std::size_t at = 0; at < imageSize; ++at) {
        if (fieldBytes()[at] && !isHeld(at, wanted[at]))
            queue(at, wanted[at]);
    }
    given.set();
}

void WriteQueue::queue(std::size_t at, std::uint8_t value)
{
    image[at] = value;
    known.set(at);
    queued.set(at);
    changedAt[at] = lastSerial;
}

void WriteQueue::merge(std::size_t address, std::uint8_t *bytes, std::size_t count, std::uint64_t sinceSerial)
{
    for (std::size_t i = 0; i < count && address + i < imageSize; ++i) {
        const std::size_t at = address + i;
        if (queued[at] || changedAt[at] > sinceSerial) {
            bytes[i] = image[at];
        } else {
            image[at] = bytes[i];
            known.set(at);
        }
        if (count < imageSize)
            given.set(at);
    }
}

std::optional<WriteQueue::Batch> WriteQueue::take(bool urgent, Clock::time_point now,
                                                  std::optional<Clock::time_point> &due)
{
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
    for (std::size_t at = write.address; at < write.address + write.bytes.size(); ++at) {
        if (changedAt[at] > serial)
            continue;
        queued.reset(at);
        known.reset(at);
    }
}

} // namespace portwire
