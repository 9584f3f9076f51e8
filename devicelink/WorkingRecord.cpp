#include "devicelink/WorkingRecord.h"

#include "portwire/portwire.h"

#include <algorithm>
#include <cstring>

namespace {

/** Bytes that are compared at once: a setter changes a few of ten thousand, and drags call it a thousand times a
 * second. */
constexpr std::size_t stretch = 256;

/** Calls `found(i)` for each byte in which the two differ. */
template<typename Found>
void forEachDifference(const FlashDataMap &one, const FlashDataMap &other, Found found)
{
    const auto *const left = reinterpret_cast<const unsigned char *>(&one);
    const auto *const right = reinterpret_cast<const unsigned char *>(&other);
    for (std::size_t from = 0; from < flashDataMapSize; from += stretch) {
        const std::size_t to = std::min(from + stretch, flashDataMapSize);
        if (std::memcmp(left + from, right + from, to - from) == 0)
            continue;
        for (std::size_t i = from; i < to; ++i) {
            if (left[i] != right[i])
                found(i);
        }
    }
}

} // namespace

WorkingRecord &WorkingRecord::instance()
{
    static auto *const record = new WorkingRecord;
    return *record;
}

FlashDataMap WorkingRecord::copy() const
{
    const QMutexLocker locker(&mutex);
    return record;
}

void WorkingRecord::noteSetter(const FlashDataMap &before)
{
    handedOverAt = ++changes;
    forEachDifference(before, record, [this](std::size_t i) { changedAt[i] = handedOverAt; });
}

WorkingRecord::Met WorkingRecord::merge(const FlashDataMap &told, unsigned since)
{
    const QMutexLocker locker(&mutex);
    FlashDataMap merged = told;
    bool isKept = false;
    forEachDifference(told, record, [&](std::size_t i) {
        if (changedAt[i] <= since)
            return;
        std::memcpy(reinterpret_cast<char *>(&merged) + i, reinterpret_cast<const char *>(&record) + i, 1);
        isKept = true;
    });
    record = merged;
    ++changes;
    if (isKept)
        return Met::SameByte;
    return handedOverAt > since ? Met::AnotherByte : Met::Nobody;
}

void WorkingRecord::sendAgain()
{
    const QMutexLocker order(&handOver);
    send();
}

void WorkingRecord::send() const
{
    const FlashDataMap sent = copy();
    ProtocolDataUpdate(&sent);
}

void WorkingRecord::replaceAndSend(const FlashDataMap &meant)
{
    const QMutexLocker order(&handOver);
    {
        const QMutexLocker locker(&mutex);
        const FlashDataMap before = record;
        record = meant;
        noteSetter(before);
    }
    ProtocolDataReplace(&meant);
}
