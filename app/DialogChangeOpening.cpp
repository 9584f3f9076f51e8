#include "app/ChooserList.h"
#include "app/DialogChange.h"
#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceWatch.h"
#include "devicelink/Worker.h"
#include "maintenance/MismatchCheck.h"
#include "maintenance/UpDateRepair.h"
#include "ui_DialogChange.h"

#include <QCoreApplication>
#include <QDebug>
#include <QElapsedTimer>
#include <QEvent>

// What leads on from the chooser: a click on a device, and the repair.

namespace {

/** The thread gets this start over the page change, in ms. */
constexpr int workerStart = 150;

} // namespace

void DialogChange::slotButtonClicked()
{
    bool isNumber = false;
    const int index = sender() ? sender()->objectName().remove(QStringLiteral("btn")).toInt(&isNumber) : -1;
    if (isNumber)
        openEntry(index);
}

void DialogChange::openEntry(int index)
{
    // A second click may already lie in the queue when the first one has opened the device.
    if (index < 0 || index >= ChooserDevices().size() || DeviceEntered || Wait::isEnding())
        return;
    const DeviceAllInfo device = ChooserDevices().at(index);
    postMsg()->post(&PostMsg::SigSetver, 6);
    if (!isKnownModel(device)) {
        qWarning() << "a device of an unknown model was clicked:" << device.Path;
        if (!device.IsCorded)
            checkMismatch(device);
        return;
    }
    if (device.DeviceKind == 1 || device.DeviceKind == 2)
        postMsg()->post(&PostMsg::SigMouseIndex, device.DeviceKind - 1);
    if (isLeftByItsMouse(index)) {
        checkMismatch(device);
        return;
    }
    postMsg()->post(&PostMsg::SigSelectMouseInfo, device);
    ReceiverRate = receiverRateOf(device.ReceiverClass);
    offerReceiverUpdate(device.UsbVersion, device.ModelIndex, ReceiverRate);
    postMsg()->post(&PostMsg::SigChangeMainDialog, 1);
    if (isVisible())
        return; // the device watch looks at once: the device had just been pulled, and the watch has led back here
    // The page is painted within the time that stands still, not behind it: the user sees at once what the click did.
    QElapsedTimer painting;
    painting.start();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateLater); // what Qt has a widget that is shown ask for
    QCoreApplication::sendPostedEvents(window(), QEvent::UpdateRequest);
    Wait::standing(workerStart - static_cast<int>(painting.elapsed()));
    DeviceWindowOpen = true;
    requestConnect();
}

/** Two of one product, and the mouse answers behind the other one: the clicked receiver is without it. */
bool DialogChange::isLeftByItsMouse(int index) const
{
    const QList<DeviceAllInfo> &devices = ChooserDevices();
    if (devices.size() != 2)
        return false;
    const DeviceAllInfo &clicked = devices.at(index);
    const DeviceAllInfo &other = devices.at(1 - index);
    return clicked.Cid == other.Cid && clicked.DeviceKind == other.DeviceKind && !clicked.Online && other.Online;
}

void DialogChange::checkMismatch(const DeviceAllInfo &receiver)
{
    MismatchCheck::run(this, receiver);
    if (!DeviceEntered && !Wait::isEnding())
        startScanning();
}

void DialogChange::SlotEnterKey()
{
    if (ui->Repair->isVisible())
        on_Repair_clicked();
}

void DialogChange::on_Repair_clicked()
{
    if (Wait::isEnding())
        return;
    UpDateRepair repair;
    repair.centreOn(this);
    repair.exec();
    if (!DeviceEntered && !Wait::isEnding())
        startScanning();
}
