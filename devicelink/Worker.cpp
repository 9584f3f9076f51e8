#include "devicelink/Worker.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceCache.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceWatch.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/StatusGate.h"
#include "portwire/portwire.h"
#include "productdata/ConfigStore.h"
#include "productdata/ModelData.h"

#include <QDebug>

namespace {

/** How often a sleeping mouse is asked, in ms. */
constexpr int checkInterval = 1300;
constexpr int batteryTableSize = 21;

Worker *theWorker = nullptr; // GUI thread only

bool isOnline(const QByteArray &path) { return UsbFinderC_GetDeviceOnLine(path.constData()) != 0; }

/** Gives the library the battery curve of a model, if it has one. */
void sendBatteryTable(const DeviceAllInfo &selected)
{
    if (selected.DeviceKind != 1 && selected.DeviceKind != 2)
        return;
    const QList<int> table =
        ConfigStore::instance()->numberList(ModelData::section(selected.ModelIndex), QStringLiteral("BatteryParam"));
    if (table.size() == batteryTableSize)
        UsbServer_SetBatteryOptimizeSection(table.toVector().constData());
    else if (!table.isEmpty())
        qWarning() << "BatteryParam is ignored, it has" << table.size() << "elements";
}

} // namespace

Worker::Worker(QObject *parent) : QThread(parent)
{
    theWorker = this;
    ConnectPending = true;
    statusGate().start();
    ShowBatteryValue = ConfigStore::instance()->number(QStringLiteral("Option"), QStringLiteral("ShowBatteryValue"));

    checkTimer.setInterval(Wait::scaled(checkInterval));
    connect(&checkTimer, &QTimer::timeout, this, &Worker::SlotCheckOnline);
    checkTimer.start();
    connect(this, &QThread::finished, this, &Worker::startAgainIfRequested);
    connect(postMsg(), &PostMsg::SigSelectMouseInfo, this, &Worker::SlotSelectMouseInfo);
    connect(postMsg(), &PostMsg::SigMainPageChange, this, &Worker::SlotMainPageChange);
}

Worker::~Worker()
{
    ConnectPending = false;
    checkTimer.stop();
    disconnect(this, &QThread::finished, this, nullptr);
    // The pass may stand in a blocking signal to a page, and then only this thread can let it go.
    while (!wait(1))
        Wait::turn(1);
    theWorker = nullptr;
}

void Worker::request()
{
    ++requests;
    ConnectPending = true;
    start();
}

void Worker::setPolling(bool isRunning)
{
    if (isRunning)
        checkTimer.start();
    else
        checkTimer.stop();
}

void Worker::startAgainIfRequested()
{
    if (requests == served || isRunning() || Wait::isEnding())
        return;
    ConnectPending = true;
    start();
}

void Worker::SlotSelectMouseInfo(DeviceAllInfo selected)
{
    LoadFileName().set(deviceCacheName(selected.Cid, selected.DeviceKind));
    // What was told of the device before is not told of this one: its record must not be saved under this name, its
    // pages are not this one's, and what it asked for is not to be done to this one.
    SaveFileName().set({});
    clearPagesLoaded();
    RereadPending = false;
    ReconnectRequested = false;
    OfflineWaiting = false;
    SelectInfo().set(selected);
    DevicePath().set(selected.Path.toUtf8());
    isNewSelection = true;
}

void Worker::SlotMainPageChange() { PreviousOnline = false; }

void Worker::SlotCheckOnline()
{
    if (Wait::isEnding())
        return;
    if (OfflineWaiting) {
        if (!DeviceWindowOpen) {
            if (SelectInfo().get().ReceiverClass != 0)
                OfflineWaiting = false;
        } else if (HotplugWatchEnabled) {
            DeviceOnline = isOnline(DevicePath().get());
            PreviousOnline = false;
            if (!DeviceOnline && lookForCable())
                DeviceOnline = isOnline(DevicePath().get());
            if (!DeviceOnline)
                return;
            postMsg()->post(&PostMsg::SigCloseOffOnline);
            OfflineWaiting = false;
        }
    }
    if (DeviceOnline && ReconnectRequested) {
        ReconnectRequested = false;
        request();
    }
}

void Worker::run()
{
    if (!ConnectPending)
        return;
    served = requests.load();
    // Before the selection itself: one that is made in between is noted for the pass that its request brings.
    const bool isNew = DeviceWindowOpen && isNewSelection.exchange(false);
    const DeviceAllInfo selected = SelectInfo().get();
    // Not `DevicePath`, which the GUI thread sets a moment later: the link would be that of the device before.
    const QByteArray path = selected.Path.toUtf8();
    if (!DeviceOnline)
        DeviceOnline = isOnline(path);

    if (DeviceWindowOpen) {
        const bool isSame = lastConnection == Connection{selected.Path, selected.ReceiverClass};
        const bool nothingChanged = !isNew && isSame && PreviousOnline == DeviceOnline && !RereadPending;
        if (!nothingChanged && connectDevice(selected, path))
            PreviousOnline = DeviceOnline.load();
    }
    LinkUp = DeviceOnline.load();
    ConnectPending = false;
}

/** \return false if the user left meanwhile; then no link was started. */
bool Worker::connectDevice(const DeviceAllInfo &selected, const QByteArray &path)
{
    DeviceOnline = isOnline(path);
    SelectInfo().update([&selected](DeviceAllInfo &info) {
        if (info.Path == selected.Path)
            info.Online = DeviceOnline;
    });
    if (DeviceOnline)
        announceOnline();
    else
        showCache();
    // The curve goes to the link that starts next, so it is given to the library only together with this one's start.
    const auto prepare = [&selected] {
        if (!DeviceWindowOpen || SelectInfo().get().Path != selected.Path)
            return false;
        sendBatteryTable(selected);
        return true;
    };
    if (!ReportLink::startIf(prepare, path, dispatchReport))
        return false;
    lastConnection = Connection{selected.Path, selected.ReceiverClass};
    ReportLink::tellProgramStatus();
    // Also when the mouse sleeps: the reply comes as soon as it can answer.
    UsbServer_ReadAllFlashData();
    return true;
}

void Worker::announceOnline()
{
    // Whatever the pages hold, it isn't yet the record that the wait is for.
    clearPagesLoaded();
    if (RereadPending.exchange(false))
        postMsg()->post(&PostMsg::SigUpDataParam, 1);
    else if (!BulkUpdateActive)
        postMsg()->post(&PostMsg::SigUpDataParam, 0);
}

void Worker::showCache()
{
    OfflineWaiting = true;
    FlashDataMap cached{};
    if (!LoadDeviceCache(LoadFileName().get(), cached)) {
        postMsg()->postBlocking(&PostMsg::SigFormReset);
        return;
    }
    postMsg()->postBlocking(&PostMsg::SigUpDataLightUIButton, cached);
    postMsg()->postBlocking(&PostMsg::SigUpDataLightLight, cached);
    postMsg()->postBlocking(&PostMsg::SigUpDataLightSensor, cached);
    postMsg()->postBlocking(&PostMsg::SigForm);
}

void requestConnect()
{
    if (theWorker)
        theWorker->request();
}

void setOnlinePolling(bool isRunning)
{
    if (theWorker)
        theWorker->setPolling(isRunning);
}

bool isConnecting() { return theWorker && theWorker->isRunning(); }
