#pragma once

#include "portwire/portwire.h"

#include <QObject>
#include <QTimer>

#include <set>

namespace portwire {

/**
 * Tells the program of changes on the bus, on the thread of the application's event loop and once they have settled.
 * All functions but busChanged() are called on that thread.
 */
class ChangeNotice : public QObject
{
public:
    ChangeNotice();

    /** Calls the callback before it returns, and again after each change. Replaces the callback before. */
    void start(PortwireChangeCallback newCallback, int quietMs);
    void stop();

    /** On any thread. */
    void busChanged();

private:
    void settled();
    void call();

    QTimer quiet;
    PortwireChangeCallback callback = nullptr;
    std::multiset<PortwireChangeCallback> running; ///< it may serve the event loop or start another
};

} // namespace portwire
