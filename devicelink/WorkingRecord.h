#pragma once

#include "devicelink/FlashDataMap.h"

#include <QMutex>

#include <array>
#include <atomic>

/**
 * The working record: what the connected mouse holds. Setters on the GUI thread and the report callback write it, so
 * one lock guards it, held for a copy or a change of fields and never across a signal or a library call.
 *
 * A second lock, taken first, orders what goes to and comes from the library: it is held round the change of a setter
 * and its hand-over, since without it the copy made first could reach the library last and put an old value back into
 * the mouse; and round what a report puts in, since a hand-over in the middle of that would carry half of it. The
 * library calls made under it return without waiting and never call back.
 *
 * The order of a report and a setter that meet
 * --------------------------------------------
 * The library compares each record that it is handed with what it knows of the mouse. What it knows it takes from each
 * settings reply right before it gives that reply to the program, and there it brings the two together: in a byte that
 * the program changed meanwhile the reply has the program's value. Call this moment M. Two things can go wrong between
 * M and the moment when the reply is in the record, which is microseconds on a quiet machine.
 *
 * First, a setter changes a byte that the reply tells. The reply has the value from before; put in the record it would
 * stand there and on the screen while the mouse gets the other, and the next setter would write it back.
 *
 * Second, a setter changes another byte. It hands over the whole record, in which the byte that the reply tells is
 * still the old one, and the library, which knows better since M, takes that for a change and writes it to the mouse.
 *
 * The program doesn't see M, but knows that it lies behind the end of the report before, since reports come one at a
 * time, and behind the start of the link. So changes are numbered; each byte keeps the number of its last change by a
 * setter; settle() notes the number at those two moments, and a report asks for the note when it comes in.
 *
 * Against the first, a byte that a setter changed later than the note stays as it is. Numbers and not values decide, so
 * a setter that changed there and back counts. If the reply tells another value for it, one of two things is so: M was
 * before the setter, and the value kept is on its way to the mouse; or the mouse came to the value later without a word
 * to the program, as when its announcement was lost. Nobody can tell which, so the mouse is asked for its record once
 * more. Nothing is written: if it is the latter, the value kept is not what the user has in mind any more.
 *
 * Against the second, if a setter handed over later than the note and there is no such byte, the record is handed over
 * once more. The library sends nothing unless the mouse was given an old value.
 *
 * A whole record tells every byte, so a setter in between always is of the first kind there. That a record which is
 * handed over before the whole record of another profile or another mouse was taken carries nothing of the old one into
 * the new is the library's part; see portwire.h.
 *
 * Both end: they happen only when a setter came in between, and what is read once more has a later note.
 */
class WorkingRecord
{
public:
    static WorkingRecord &instance();

    FlashDataMap copy() const;

    /** Counts the changes: a copy that was made at the same count is still true. */
    unsigned version() const { return changes; }

    /** Every change until now is older than what the next report tells. */
    void settle() { settledAt = version(); }
    /** The version at the last settle(). */
    unsigned settled() const { return settledAt; }

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
        {
            const QMutexLocker locker(&mutex);
            const FlashDataMap before = record;
            change(record);
            noteSetter(before);
        }
        send();
    }

    /** Changes every field and tells the library that each is meant, also those that the mouse isn't known to lack. */
    void replaceAndSend(const FlashDataMap &meant);

    /** What there is to do when a report is in the record; see above. */
    enum class Met {
        Nobody,      ///< nothing
        AnotherByte, ///< hand over once more
        SameByte,    ///< read once more
    };

    /**
     * Puts in what a report tells. `change` gets a copy of the record and puts all fields of the report in it; it may
     * call the library's decoders. `since` is what settled() gave when the report came in.
     */
    template<typename Change>
    Met takeReport(unsigned since, Change change)
    {
        const QMutexLocker order(&handOver);
        FlashDataMap told = copy();
        change(told);
        return merge(told, since);
    }

    /** Hands the record to the library as it is. */
    void sendAgain();

private:
    WorkingRecord() = default;
    void noteSetter(const FlashDataMap &before);
    Met merge(const FlashDataMap &told, unsigned since);
    void send() const;

    mutable QMutex mutex;
    QMutex handOver;
    FlashDataMap record{};
    std::atomic<unsigned> changes{0};
    std::atomic<unsigned> settledAt{0};
    unsigned handedOverAt = 0;                          ///< by a setter
    std::array<unsigned, flashDataMapSize> changedAt{}; ///< of each byte, by a setter
};
