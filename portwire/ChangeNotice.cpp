#include "portwire/ChangeNotice.h"

#include <algorithm>

namespace portwire {

ChangeNotice::ChangeNotice()
{
    quiet.setSingleShot(true);
    quiet.setTimerType(Qt::PreciseTimer);
    quiet.setParent(this);
    connect(&quiet, &QTimer::timeout, this, &ChangeNotice::settled);
}

void ChangeNotice::start(PortwireChangeCallback newCallback, int quietMs)
{
    quiet.stop();
    quiet.setInterval(std::max(quietMs, 0));
    callback = newCallback;
    call();
}

void ChangeNotice::stop()
{
    quiet.stop();
    callback = nullptr;
}

void ChangeNotice::busChanged()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (callback)
                quiet.start();
        },
        Qt::QueuedConnection);
}

void ChangeNotice::settled()
{
    // A callback that shows a prompt serves the event loop. It isn't entered again inside itself, but gets the change
    // when it has come back.
    if (running.count(callback))
        quiet.start();
    else
        call();
}

void ChangeNotice::call()
{
    const PortwireChangeCallback called = callback;
    if (!called)
        return;
    running.insert(called);
    called();
    running.erase(running.find(called));
}

} // namespace portwire
