#include "support/Heartbeat.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#ifndef Q_OS_WIN
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

/** What a user doesn't notice, in ms. */
constexpr qint64 unnoticed = 100;
/** Longest turn of the program in a plain build, in ms: filling the three pages with a record. */
constexpr qint64 plainTurn = 50;
/** Of a build with sanitizers, or for counting lines. */
constexpr double leastSlowness = 2;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__OPTIMIZE__)
constexpr bool isSlowBuild = true;
#else
constexpr bool isSlowBuild = false;
#endif

double slowness = 1;

} // namespace

#ifdef Q_OS_WIN // tells a thread's time on a processor in steps longer than what is measured here
Heartbeat::Heartbeat() : statistics(-1)
#else
Heartbeat::Heartbeat() : statistics(open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC))
#endif
{
    clock.start();
    connect(&timer, &QTimer::timeout, this, &Heartbeat::tick);
    timer.start(2);
    bystander = std::thread([this] { watchMachine(); });
}

Heartbeat::~Heartbeat()
{
    ending = true;
    bystander.join();
#ifndef Q_OS_WIN
    if (statistics >= 0)
        close(statistics);
#endif
}

Heartbeat::Times Heartbeat::now() const
{
    unsigned long long work = 0;  // ns, as the next one
    unsigned long long queue = 0; // for a processor
#ifndef Q_OS_WIN
    char text[96]{};
    if (statistics >= 0 && pread(statistics, text, sizeof text - 1, 0) > 0)
        std::sscanf(text, "%llu %llu", &work, &queue);
#endif
    const auto milliseconds = [](unsigned long long time) { return static_cast<qint64>(time / 1000000); };
    return {milliseconds(work), clock.elapsed() - milliseconds(work) - milliseconds(queue)};
}

qint64 Heartbeat::felt(const Times &from, const Times &to)
{
    return static_cast<qint64>(static_cast<double>(to.work - from.work) / slowness) + to.waiting - from.waiting;
}

void Heartbeat::restart()
{
    last = now();
    longestGap = 0;
    longestOversleep = 0;
}

void Heartbeat::aside(const std::function<void()> &work)
{
    tick();
    work();
    last = now();
}

void Heartbeat::tick()
{
    const Times present = now();
    longestGap = std::max(longestGap, felt(last, present));
    last = present;
}

void Heartbeat::watchMachine()
{
    constexpr std::chrono::milliseconds nap{2};
    while (!ending) {
        const auto before = std::chrono::steady_clock::now();
        std::this_thread::sleep_for(nap);
        const auto over = std::chrono::steady_clock::now() - before - nap;
        const qint64 milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(over).count();
        longestOversleep = std::max(longestOversleep.load(), milliseconds);
    }
}

qint64 Heartbeat::longest() const { return std::max(longestGap, felt(last, now())); }

qint64 Heartbeat::allowed() const { return unnoticed + longestOversleep; }

QString Heartbeat::complaint() const
{
    const qint64 measured = longest();
    const qint64 bound = allowed();
    if (measured <= bound)
        return {};
    return QStringLiteral("the GUI thread didn't answer for %1 ms, %2 are allowed").arg(measured).arg(bound);
}

void Heartbeat::setHealthyTurn(qint64 milliseconds)
{
    if (isSlowBuild)
        slowness = std::max(leastSlowness, static_cast<double>(milliseconds) / plainTurn);
}
