#include "maintenance/PairingRun.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceScan.h"
#include "devicelink/DeviceWatch.h"
#include "devicelink/Dispatcher.h"
#include "devicelink/ReportLink.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/Worker.h"
#include "maintenance/Match.h"
#include "portwire/portwire.h"

namespace {

/**
 * Selects the receiver as if it had been clicked on the chooser, and connects whatever mouse it has now.
 * \param model of the mouse for which the window was opened; what the pages offer depends on it
 */
void selectAnew(int model)
{
    DeviceAllInfo receiver = SelectInfo().get();
    if (identifyDevice(receiver) != Identity::Known || receiver.ModelIndex != model) {
        postMsg()->post(&PostMsg::SigChangeMainDialog, 0);
        return;
    }
    receiver.MouseVersion.clear();
    postMsg()->post(&PostMsg::SigSelectMouseInfo, receiver);
    requestConnect();
}

} // namespace

void PairingRun::onDevicePage(const QWidget *caller, QPoint offset)
{
    // The steps of a firmware update before the first byte leave the window free; a pairing would meet the next ones.
    if (!DeviceEntered || BulkUpdateActive || UpdateRunning || Wait::isEnding())
        return;
    bool isTaken = false;
    const DeviceAllInfo selected = SelectInfo().get();
    {
        Match match(selected);
        match.centreOn(caller, offset);
        match.exec();
        isTaken = match.wasStarted();
    }
    if (Wait::isEnding())
        return;
    if (!DeviceEntered) {
        // The receiver was pulled, and the watch has led back to the chooser under the dialog. The way back is gone
        // once more: the receiver may have been plugged and paired since, and a status that crossed the way back may
        // have let the connect logic go on.
        if (isTaken)
            postMsg()->post(&PostMsg::SigChangeMainDialog, 0);
        return;
    }
    if (isTaken) {
        DeviceWindowOpen = true;
        ReportLink::start(DevicePath().get(), dispatchReport);
    }
    StartUsbChanged(deviceWatch, Wait::scaled(usbQuietTime)); // looks at once, and may lead back to the chooser
    if (isTaken && DeviceEntered)
        selectAnew(selected.ModelIndex); // the watch has noted who is there now
}

void PairingRun::onChooser(const QWidget *caller, const DeviceAllInfo &receiver)
{
    if (DeviceEntered || Wait::isEnding())
        return;
    Match match(receiver);
    match.centreOn(caller);
    match.exec();
    // No device is shown here, so no report has a page to go to.
    if (match.wasStarted() && !DeviceEntered && !Wait::isEnding())
        ReportLink::end();
}
