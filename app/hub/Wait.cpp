#include "app/hub/Wait.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <atomic>
#include <cmath>

namespace {
std::atomic<double> scale{1.0};
std::atomic<bool> ending{false};
} // namespace

int Wait::scaled(int milliseconds) { return std::max(1, static_cast<int>(std::lround(milliseconds * scale.load()))); }

void Wait::turn(int milliseconds)
{
    // WaitForMoreEvents would sleep past the deadline when nothing happens; a short sleep keeps the processor idle and
    // costs at most its own length in reaction time.
    QCoreApplication::processEvents(QEventLoop::AllEvents, milliseconds);
    QThread::msleep(1);
}

void Wait::serving(int milliseconds)
{
    const QDeadlineTimer deadline(scaled(milliseconds));
    while (!deadline.hasExpired() && !isEnding())
        turn(5);
}

void Wait::standing(int milliseconds) { QThread::msleep(static_cast<unsigned long>(scaled(milliseconds))); }

void Wait::setScale(double factor) { scale = factor; }

void Wait::setEnding(bool now) { ending = now; }

bool Wait::isEnding() { return ending; }
