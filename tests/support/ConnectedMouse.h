#pragma once

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceScan.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "support/VirtualMice.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <functional>
#include <memory>

/** A page before a virtual mouse, without the chooser: the mouse is selected, linked and read as the program does it.
 */
namespace ConnectedMouse {

/**
 * Selects the device whose identification gives this model and kind of connection; ends the test without one. A machine
 * that runs others meanwhile may take longer than a device has for its answer, so it is asked more than once.
 */
inline void select(int modelIndex, bool corded = false)
{
    SelectInfo().set({});
    const bool isFound = QTest::qWaitFor([=] {
        QList<DeviceAllInfo> entries = findEntries(findDefaultPaths);
        for (DeviceAllInfo &entry : entries) {
            if (identifyDevice(entry) != Identity::Known || entry.ModelIndex != modelIndex || entry.IsCorded != corded)
                continue;
            refreshOnline(entry);
            SelectInfo().set(entry);
            DevicePath().set(entry.Path.toUtf8());
            return true;
        }
        return false;
    });
    if (!isFound)
        qFatal("no device of model %d", modelIndex);
}

/** Links the selected mouse and waits until the record is read and the sensor page, if there is one, shows it. */
inline bool read(bool withSensorPage, PortwireReportCallback callback = dispatchReport)
{
    LinkUp = false;
    SensorUiLoaded = false;
    DeviceWritesEnabled = true;
    ReportLink::start(DevicePath().get(), callback);
    UsbServer_ReadAllFlashData();
    return QTest::qWaitFor([=] { return LinkUp && (SensorUiLoaded || !withSensorPage); });
}

/** Runs something on a thread of its own, as the library does with a report, while this one serves events. */
inline void runOnThread(const std::function<void()> &work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->start();
    while (!thread->wait(1))
        QCoreApplication::processEvents();
}

/**
 * Does something that asks the mouse first. On a machine that is busy with others it may miss the time for its answer.
 * The program then says so and leaves everything alone, and it is done again, as a user would.
 */
inline void untilAnswered(const std::function<void()> &work)
{
    QSignalSpy offline(postMsg(), &PostMsg::SigMouseOffLineo);
    do {
        offline.clear();
        work();
    } while (!offline.isEmpty());
}

/** State of the process as before any mouse. */
inline void forget()
{
    ReportLink::end();
    while (isDispatching())
        QCoreApplication::processEvents();
    DeviceWritesEnabled = false;
    BulkUpdateActive = false;
    SelectInfo().set({});
    DevicePath().set("a");
}

/** True once the mouse holds exactly what the program believes that it holds. */
inline bool isWritten(const QString &mouse)
{
    return QTest::qWaitFor([&] { return VirtualMice::record(mouse) == WorkingRecord::instance().copy(); });
}

/** What the mouse holds once that is what the program believes; ends the test when it doesn't come to that. */
inline FlashDataMap settled(const QString &mouse)
{
    if (!isWritten(mouse))
        qFatal("%s doesn't hold what the program believes", qPrintable(mouse));
    return VirtualMice::record(mouse);
}

} // namespace ConnectedMouse
