#pragma once

#include "devicelink/FlashDataMap.h"

#include <QMutex>

#include <atomic>

/**
 * The working record: what the connected mouse holds. Setters on the GUI thread and the report callback write it, so
 * one lock guards it, held for a copy or a change of fields and never across a signal or a library call that can call
 * back.
 *
 * A hand-over to the library takes a second lock round the copy and the call: without it the copy made first could
 * reach the library last and put an old value back into the mouse. That call returns without waiting and never calls
 * back.
 */
class WorkingRecord
{
public:
    static WorkingRecord &instance();

    FlashDataMap copy() const;

    /** Counts the changes: a copy that was made at the same count is still true. */
    unsigned version() const { return changes; }

    /** Changes fields in place, without telling the mouse. */
    template<typename Change>
    void update(Change change)
    {
        const QMutexLocker locker(&mutex);
        change(record);
        ++changes;
    }

    /** Changes fields and hands the whole record to the library, which sends what differs. */
    template<typename Change>
    void updateAndSend(Change change)
    {
        const QMutexLocker order(&handOver);
        update(change);
        send();
    }

    /** Hands the record to the library as it is. */
    void sendAgain();

private:
    WorkingRecord() = default;
    void send() const;

    mutable QMutex mutex;
    QMutex handOver;
    FlashDataMap record{};
    std::atomic<unsigned> changes{0};
};
