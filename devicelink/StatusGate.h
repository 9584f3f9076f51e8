#pragma once

#include <QElapsedTimer>
#include <QMutex>

/** Lets one re-read through in 3000 ms: a mouse announces a change of many settings as many changes. */
class StatusGate
{
public:
    void start();
    /** True, and the time starts anew, if the last opening is more than 3000 ms ago. */
    bool open();

private:
    QMutex mutex;
    QElapsedTimer timer;
};
StatusGate &statusGate();
