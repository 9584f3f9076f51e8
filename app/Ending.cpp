#include "app/Ending.h"

#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/ReportLink.h"
#include "devicelink/Worker.h"
#include "portwire/portwire.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QWidget>

namespace {

bool begun = false; // GUI thread only

/** Time for reports under way to reach the pages, in ms. */
constexpr int graceTime = 200;

template<typename Busy>
void serveWhile(Busy busy)
{
    while (busy())
        Wait::turn(1);
}

} // namespace

void Ending::begin(QWidget *window)
{
    if (begun)
        return;
    begun = true;
    // First of all: what the event loop brings during the grace time must not open a prompt, whose own event loop would
    // keep this from going on until the user answers it.
    Wait::setEnding(true);
    DeviceEntered = false;
    DeviceWindowOpen = false;
    StopUsbChanged();
    const QDeadlineTimer grace(Wait::scaled(graceTime));
    serveWhile([&grace] { return !grace.hasExpired(); });
    ReportLink::end();
    if (window)
        window->close();
    QCoreApplication::quit();
}

void Ending::finish(QWidget *window)
{
    Wait::setEnding(true);
    StopUsbChanged();
    serveWhile(isConnecting);
    ReportLink::end();
    serveWhile(isDispatching);
    delete window;
    begun = false;
}
