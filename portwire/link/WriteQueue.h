#pragma once

#include "portwire/link/ImageCodec.h"

#include <bitset>
#include <chrono>
#include <optional>
#include <vector>

namespace portwire {

/**
 * The device image as it should be, and which of its bytes have yet to reach the mouse.
 *
 * It keeps one value an address, the newest. So a slider that is dragged faster than reports can travel costs a handful
 * of them, and where it was let go is what the mouse ends up with.
 *
 * One queue is one epoch of a mouse: as long as what the mouse holds goes on from what was known. With another profile,
 * a factory reset or an absence begins another queue (see Work), and what was asked before that speaks to the old one.
 * Not safe for use by several threads at a time.
 */
class WriteQueue
{
public:
    using Clock = std::chrono::steady_clock;

    /** Bytes for one write report. */
    struct Write
    {
        std::uint16_t address;
        std::vector<std::uint8_t> bytes;
    };

    /** Writes that take effect together. */
    struct Batch
    {
        std::vector<Write> writes;
        std::uint64_t serial; ///< changes up to this one are in the batch
    };

    /**
     * Queues what differs between the record and what the mouse holds. Where that is unknown, or the program has never
     * been given it, only what also differs from `previous`, the record as the program had it before: a record that is
     * of another mouse or profile must not flood this one. A function, a DPI level's code or colour, a key sequence, a
     * macro then is queued as a whole.
     */
    void update(const FlashDataMap &record, const FlashDataMap &previous);

    /** Queues every field that the mouse isn't known to hold. */
    void replace(const FlashDataMap &record);

    /** The program has all that the mouse holds in its record now, or nothing of it. */
    void setGiven(bool isGiven) { isGiven ? given.set() : given.reset(); }

    /** Number of the last change; give it to merge() for a read that started now. */
    std::uint64_t serial() const { return lastSerial; }

    /**
     * Brings together what was read at an address and what changed since the read began: the read value counts unless
     * the program changed the byte later, or its write is still under way. Both sides have the result afterwards; of a
     * whole image the program has it only when it says so, by setGiven().
     */
    void merge(std::size_t address, std::uint8_t *bytes, std::size_t count, std::uint64_t sinceSerial);

    /** What is not queued is no longer known to be what the mouse holds. */
    void forget() { known &= queued; }

    /** Number of bytes that are queued. */
    std::size_t size() const { return queued.count(); }

    /**
     * All that is queued, in write reports: key sequences and macros first, so that a button gets its function after
     * the data that it needs.
     * \param urgent don't hold back addresses that were written a moment ago
     * \return nothing if nothing is due; `due` is then the time at which to ask again, if there is one.
     */
    std::optional<Batch> take(bool urgent, Clock::time_point now, std::optional<Clock::time_point> &due);

    /** The mouse has acknowledged the whole batch. Without this call its bytes stay queued. */
    void confirm(const Batch &batch, Clock::time_point now);

    /** The mouse won't have these bytes: what it holds there isn't known. \param serial of the batch that had them */
    void giveUp(const Write &write, std::uint64_t serial);

private:
    bool isHeld(std::size_t at, std::uint8_t value) const { return known[at] && image[at] == value; }
    void queue(std::size_t at, std::uint8_t value);
    void queuePart(std::size_t changed, const DeviceImage &wanted);
    bool mayBridge(std::size_t from, std::size_t to) const;
    void cut(std::size_t from, std::size_t to, std::vector<Write> &writes) const;

    DeviceImage image{};
    std::bitset<imageSize> known;     ///< the byte is what the mouse holds, or is queued
    std::bitset<imageSize> given;     ///< the program has the byte from this mouse and profile
    std::bitset<imageSize> queued;    ///< not yet acknowledged
    std::bitset<imageSize> lastBatch; ///< was written last
    std::array<std::uint64_t, imageSize> changedAt{};
    std::uint64_t lastSerial = 0;
    Clock::time_point lastConfirmed{};
    std::chrono::milliseconds hold{};
};

} // namespace portwire
