#pragma once

#include <QMutex>

#include <utility>

/**
 * A value that several threads read and write as a whole. Readers get a copy; the lock is never held while anything
 * else runs but a change of the value itself.
 */
template<typename Value>
class Snapshot
{
public:
    Snapshot() = default;
    explicit Snapshot(Value initial) : value(std::move(initial)) {}

    Value get() const
    {
        const QMutexLocker locker(&mutex);
        return value;
    }
    void set(Value changed)
    {
        const QMutexLocker locker(&mutex);
        value = std::move(changed);
    }
    /** Changes the value in place. `change` must not call anything that reads this snapshot. */
    template<typename Change>
    void update(Change change)
    {
        const QMutexLocker locker(&mutex);
        change(value);
    }

private:
    mutable QMutex mutex;
    Value value{};
};
