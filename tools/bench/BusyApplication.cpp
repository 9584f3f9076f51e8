#include "bench/BusyApplication.h"

#include <QThread>

namespace {

/** A shorter pause, in ns, is the event loop's own work and no rest. */
constexpr qint64 shortestPause = 100000;

} // namespace

bool BusyApplication::notify(QObject *receiver, QEvent *event)
{
    if (QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    const qint64 now = clock.nsecsElapsed();
    if (depth == 0 && now - end > shortestPause) {
        begin = now;
        ++stretches;
    }
    ++depth;
    const bool result = QApplication::notify(receiver, event);
    --depth;
    if (depth == 0) {
        end = clock.nsecsElapsed();
        most = qMax(most, end - begin);
    }
    return result;
}

void BusyApplication::restart()
{
    begin = clock.nsecsElapsed();
    end = begin;
    most = 0;
    stretches = 0;
}
