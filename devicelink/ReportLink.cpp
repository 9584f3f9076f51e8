#include "devicelink/ReportLink.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/WorkingRecord.h"

#include <QMutex>

#include <atomic>

namespace {

std::atomic<unsigned> present{0};
std::atomic<unsigned> lastEnd{0}; ///< generation that the last end() began

/**
 * Orders the starts and ends. Taken before the locks of the working record; the library calls nobody back in what is
 * called under it, and waits for no callback. Never destroyed: the connect thread may outlast the static objects.
 */
QMutex &linkMutex()
{
    static auto *const mutex = new QMutex;
    return *mutex;
}

} // namespace

void ReportLink::start(const QByteArray &path, PortwireReportCallback callback)
{
    startIf([] { return true; }, path, callback);
}

bool ReportLink::startIf(const std::function<bool()> &wanted, const QByteArray &path, PortwireReportCallback callback)
{
    const QMutexLocker locker(&linkMutex());
    if (!wanted())
        return false;
    ++present;
    WorkingRecord::instance().settle();
    UsbServerC_Start(path.constData(), path.constData(), callback);
    return true;
}

void ReportLink::end()
{
    const QMutexLocker locker(&linkMutex());
    lastEnd = ++present;
    UsbServer_Exit();
}

unsigned ReportLink::generation() { return present; }

bool ReportLink::isCurrent(unsigned generation) { return generation == present; }

bool ReportLink::hasEndedSince(unsigned generation) { return lastEnd > generation; }

bool ReportLink::whileCurrent(unsigned generation, const std::function<void()> &work)
{
    const QMutexLocker locker(&linkMutex());
    if (!isCurrent(generation))
        return false;
    work();
    return true;
}

void ReportLink::tellProgramStatus()
{
    const QMutexLocker locker(&linkMutex());
    UsbServer_SetPCDriverStatus(DeviceEntered && !WindowAway ? 1 : 0);
}
