#include "portwire/ChangeNotice.h"
#include "portwire/Library.h"

#include <QCoreApplication>
#include <QThread>

#include <mutex>

using namespace portwire;

namespace {

std::mutex noticeMutex;
ChangeNotice *notice = nullptr; // guarded by noticeMutex; belongs to the application and ends with it

/** Ends with the application: a timer and queued calls have no place after it. */
void endNotice()
{
    ChangeNotice *ended = nullptr;
    {
        const std::lock_guard lock(noticeMutex);
        std::swap(ended, notice);
    }
    delete ended;
}

ChangeNotice *openNotice()
{
    {
        const std::lock_guard lock(noticeMutex);
        if (notice)
            return notice;
        notice = new ChangeNotice;
        notice->moveToThread(QCoreApplication::instance()->thread());
    }
    qAddPostRoutine(endNotice);
    Library::instance().devices().bus().setChangeNotice([] {
        const std::lock_guard lock(noticeMutex);
        if (notice)
            notice->busChanged();
    });
    return notice;
}

} // namespace

void StartUsbChanged(PortwireChangeCallback callback, int quietMs)
{
    if (!QCoreApplication::instance()) {
        // Without an event loop there is nobody to be called later.
        if (callback)
            callback();
        return;
    }
    ChangeNotice *const opened = openNotice();
    if (QThread::currentThread() == opened->thread())
        opened->start(callback, quietMs);
    else
        QMetaObject::invokeMethod(
            opened, [=] { opened->start(callback, quietMs); }, Qt::QueuedConnection);
}

void StopUsbChanged(void)
{
    const std::lock_guard lock(noticeMutex);
    if (!notice)
        return;
    if (QThread::currentThread() == notice->thread())
        notice->stop();
    else
        QMetaObject::invokeMethod(
            notice, [stopped = notice] { stopped->stop(); }, Qt::QueuedConnection);
}
