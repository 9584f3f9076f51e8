#include "devicelink/StatusGate.h"

#include "app/hub/Wait.h"

void StatusGate::start()
{
    const QMutexLocker locker(&mutex);
    timer.start();
}

bool StatusGate::open()
{
    const QMutexLocker locker(&mutex);
    if (timer.isValid() && timer.elapsed() <= Wait::scaled(3000))
        return false;
    timer.start();
    return true;
}

StatusGate &statusGate()
{
    static auto *const gate = new StatusGate;
    return *gate;
}
