#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <functional>
#include <thread>

/**
 * Measures how long the GUI thread leaves the user waiting: the longest time between two ticks of a timer that is
 * always due. What the test itself does on that thread is not the program's doing and goes through aside().
 *
 * Time in which this thread was ready and the machine ran others instead is not the program's doing either; the kernel
 * counts it. Threads that the GUI thread waits for are stopped as well now and then, so a thread that only sleeps is
 * watched beside it, and its longest oversleep is granted to the GUI thread too.
 */
class Heartbeat : public QObject
{
public:
    Heartbeat();
    ~Heartbeat() override;

    /** Forgets what was measured. */
    void restart();
    /** Does the test's own work, which isn't counted. */
    void aside(const std::function<void()> &work);

    /** Longest time between two ticks since restart(), in ms as a plain build would have taken. */
    qint64 longest() const;
    /** What longest() may be: 100 ms, and what the machine took from everybody. */
    qint64 allowed() const;
    /** Empty when the GUI thread has always answered in time, else what was measured. */
    QString complaint() const;

    /**
     * Tells how long the longest turn of a program takes here that nothing is wrong with; it is below 50 ms in a plain
     * build. Sanitizers and line counts slow work down by that factor, at least by two; waiting takes as long as ever.
     */
    static void setHealthyTurn(qint64 milliseconds);

private:
    /** By the clock of this thread, in ms. */
    struct Times
    {
        qint64 work = 0;    ///< on a processor
        qint64 waiting = 0; ///< for an answer, a lock, the time; not for a processor
    };

    void tick();
    void watchMachine();
    Times now() const;
    static qint64 felt(const Times &from, const Times &to);

    QTimer timer;
    QElapsedTimer clock;
    const int statistics; ///< of this thread, by the kernel; -1 where it keeps none
    Times last;
    qint64 longestGap = 0;
    std::atomic<bool> ending{false};
    std::atomic<qint64> longestOversleep{0};
    std::thread bystander;
};
