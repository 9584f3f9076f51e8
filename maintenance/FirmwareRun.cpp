#include "maintenance/FirmwareRun.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceScan.h"
#include "devicelink/DeviceWatch.h"
#include "devicelink/SelectedDevice.h"
#include "maintenance/Progress.h"
#include "maintenance/UpdateTexts.h"
#include "portwire/portwire.h"
#include "productdata/ModelData.h"
#include "ui/UpDateWarning.h"

#include <QDebug>
#include <QWidget>

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

constexpr int stepInterval = 1000; // ms
/** From the middle of the window to that of a prompt of the run, in pixels. */
constexpr QPoint promptOffset(-75, -65);

/** `UpdateClass` of the receivers whose boot mode is counted. */
constexpr std::array<int, 3> receiverClasses{1, 2, 4};

/** Labels of the debug lines: the class was entered, an image was found, so many devices in boot mode. */
struct StepLabels
{
    int updateClass;
    const char *entered;
    const char *found;
    const char *count;
};
constexpr StepLabels stepLabels[] = {
    {1, "InDongle1", "InDongle2  ", "InDongle3 "},
    {2, nullptr, nullptr, "D2kN"},
    {4, "InDongle4", "InDongle42  ", "InDongle43 "},
};

bool isSelectedGone()
{
    const QString path = SelectInfo().get().Path;
    const QList<DeviceAllInfo> &all = watchedDevices();
    return std::none_of(all.begin(), all.end(), [&path](const DeviceAllInfo &entry) { return entry.Path == path; });
}

enum Step { SelectImage = 0, CountDevices = 1, Started = 2, Waiting = 3, Last = 4 };

} // namespace

FirmwareRun::FirmwareRun(QWidget *parent, std::function<QString(Device)> version)
    : QObject(parent), page(parent),
      shownVersion(std::move(version)), sides{{{FirmwareTransfer::DongleUpdate, DongleUpdateAvailable},
                                               {FirmwareTransfer::MouseUpdate, MouseUpdateAvailable}}}
{
    connect(&sides[Receiver].CheckTimer, &QTimer::timeout, this, &FirmwareRun::onDongleCheckTimer);
    connect(&sides[Mouse].CheckTimer, &QTimer::timeout, this, &FirmwareRun::onMouseCheckTimer);
    connect(postMsg(), &PostMsg::SigContinue, this, &FirmwareRun::SlotContinue);
    connect(postMsg(), &PostMsg::SigMainPageChange, this, &FirmwareRun::abandon);
}

/** A run dies with its page only when the program ends. */
FirmwareRun::~FirmwareRun()
{
    UpdateRunning = false;
    HotplugWatchEnabled = true;
}

void FirmwareRun::check()
{
    if (UpdateRunning)
        return; // it would change what stood before the run
    const int model = SelectInfo().get().ModelIndex;
    MouseUpdateAvailable = FirmwareImages::CheckUpdate(FirmwareImages::mouseRequest(model), shownVersion(Mouse));
    DongleUpdateAvailable =
        FirmwareImages::CheckUpdate(FirmwareImages::receiverRequest(model, updateClass()), shownVersion(Receiver));
    for (const Device device : {Receiver, Mouse})
        Q_EMIT offered(device, sides[device].isAvailable);
}

void FirmwareRun::reset()
{
    for (Side &side : sides) {
        side.LatestVersion = false;
        side.CheckTimerEnable = false;
    }
}

void FirmwareRun::setMessage(Device device, Message message)
{
    sides[device].message = message;
    Q_EMIT messageChanged(device);
}

void FirmwareRun::press(Device device)
{
    Side &side = sides[device];
    UpdateClass = updateClass();
    if (side.LatestVersion)
        Q_EMIT foundUpToDate(device);
    const bool isWriting = FirmwareUnderWay || FirmwareTransfer::MouseUpdate == FirmwareTransfer::Running ||
                           FirmwareTransfer::DongleUpdate == FirmwareTransfer::Running;
    // The timer flags are taken back at each change of the bus; that a run goes on is told by UpdateRunning as well.
    if (isWriting || side.LatestVersion || sides[1 - device].CheckTimerEnable || UpdateRunning || Wait::isEnding())
        return;
    Q_EMIT buttonsEnabled(false);
    UpdateRunning = true;
    UpdateStep = SelectImage;
    hasStarted = false;
    modelIndex = SelectInfo().get().ModelIndex;
    setMessage(Receiver, Message::None);
    setMessage(Mouse, Message::None);
    HotplugWatchEnabled = false;
    side.CheckTimer.start(Wait::scaled(stepInterval));
    side.CheckTimerEnable = true;
}

void FirmwareRun::step(Device device)
{
    if (Wait::isEnding())
        return;
    switch (UpdateStep) {
    case SelectImage:
        selectImage(device);
        break;
    case CountDevices:
        countDevices(device);
        break;
    case Started:
        UpdateStep = Waiting;
        break;
    case Waiting:
        if (sides[device].state != FirmwareTransfer::Running)
            UpdateStep = Last;
        break;
    default:
        end(device);
    }
}

bool FirmwareRun::findMouseImage()
{
    return FirmwareImages::FindImage(FirmwareImages::mouseRequest(modelIndex), shownVersion(Mouse), SelectedImages);
}

bool FirmwareRun::findReceiverImage(int ofClass, const QString &version)
{
    return FirmwareImages::FindImage(FirmwareImages::receiverRequest(modelIndex, ofClass), version, SelectedImages);
}

void FirmwareRun::selectImage(Device device)
{
    if (device == Mouse)
        findMouseImage();
    else
        lookForReceivers();
    if (SelectedImages.isEmpty() && UpdateClass != 0)
        endUpToDate(device);
    else
        UpdateStep = CountDevices;
}

void FirmwareRun::lookForReceivers()
{
    receiverPaths.clear();
    bootCounts.fill(0);
    SelectedImages.clear();
    for (const StepLabels &labels : stepLabels) {
        if (labels.updateClass != UpdateClass)
            continue;
        if (labels.entered)
            qDebug() << labels.entered;
        // Whatever version it has: one in boot mode can't say.
        if (!findReceiverImage(UpdateClass, {}))
            continue;
        if (labels.found)
            qDebug() << labels.found;
        int &count = bootCounts[std::size_t(&labels - stepLabels)];
        count = FirmwareTransfer::bootDevices(SelectedImages.first());
        qDebug() << labels.count << count;
    }
    const DeviceAllInfo selected = SelectInfo().get();
    qDebug() << "TotalDevice" << watchedDevices().size();
    for (const DeviceAllInfo &entry : watchedDevices()) {
        if (!entry.IsCorded && (selected.IsCorded || entry.Path == selected.Path))
            receiverPaths << entry.Path.toUtf8();
    }
}

void FirmwareRun::countDevices(Device device)
{
    const auto isCorded = [](const DeviceAllInfo &entry) { return entry.IsCorded; };
    const QList<DeviceAllInfo> &all = watchedDevices();
    const int count = device == Mouse ? int(std::count_if(all.begin(), all.end(), isCorded))
                                      : std::accumulate(bootCounts.begin(), bootCounts.end(), receiverPaths.size());
    if (count != 1)
        refuse(device, count == 0 ? Message::NoDevice : Message::SeveralDevices);
    else if (findFinalImage(device))
        start(device);
    else
        endUpToDate(device);
}

bool FirmwareRun::findFinalImage(Device device)
{
    if (device == Mouse)
        return findMouseImage();
    for (std::size_t index = 0; index < bootCounts.size(); ++index) {
        if (bootCounts[index] == 1)
            return findReceiverImage(receiverClasses[index], {});
    }
    if (UpdateClass == 1)
        return findReceiverImage(UpdateClass, shownVersion(Receiver));
    std::uint16_t version = 0;
    const bool isKnown = UsbFinderC_GetSlaveVersion(receiverPaths.first().constData(), &version) != 0;
    return findReceiverImage(UpdateClass, isKnown ? FirmwareImages::versionText(version) : QString());
}

void FirmwareRun::start(Device device)
{
    if (!progress)
        progress = std::make_unique<Progress>();
    progress->centreOn(page->window(), promptOffset);
    progress->setModal(true);
    postMsg()->post(&PostMsg::SigProgress, 0, 3);
    progress->show();
    hasStarted = true;
    UpdateStep = Started;
    FirmwareTransfer::startRun(SelectedImages.first(),
                               {device == Mouse ? FirmwareImages::MouseTarget : FirmwareImages::ReceiverTarget,
                                UpdateClass, ModelData::companyId().value_or(-1), ModelData::modelId(modelIndex)});
}

void FirmwareRun::endUpToDate(Device device)
{
    sides[device].state = FirmwareTransfer::UpToDate;
    finish(device);
    sides[device].LatestVersion = true;
}

void FirmwareRun::refuse(Device device, Message message)
{
    sides[device].state = FirmwareTransfer::Nothing;
    finish(device);
    if (!std::exchange(ContinuedRun, false)) {
        setMessage(device, message);
        return;
    }
    // Apart from the step: the steps go on while the prompt stands.
    QTimer::singleShot(0, this, [this, device, message] {
        if (Wait::isEnding())
            return;
        UpDateWarning warning;
        warning.setLabelText(UpdateTexts::message(device, message));
        warning.centreOn(page->window(), promptOffset);
        warning.exec();
    });
}

void FirmwareRun::finish(Device device)
{
    Side &side = sides[device];
    if (side.state == FirmwareTransfer::UpToDate) {
        setMessage(device, Message::None);
        Q_EMIT foundUpToDate(device);
    } else if (side.state == FirmwareTransfer::Success) {
        setMessage(device, Message::None);
        ModelData::storeUpdateFailInfo({});
        side.isAvailable = false;
        Q_EMIT offered(device, false);
    }
    HotplugWatchEnabled = true;
    Q_EMIT buttonsEnabled(true);
    UpdateStep = Last;
}

void FirmwareRun::end(Device device)
{
    sides[device].CheckTimerEnable = false;
    finish(device);
    ContinuedRun = false;
    for (Side &side : sides)
        side.CheckTimer.stop();
    UpdateRunning = false;
    const bool isContinued = std::exchange(isContinuing, false);
    // Nobody has looked at the bus while a device was written, and nobody has left the window of one that was pulled
    // out.
    if (DeviceEntered && (hasStarted || isSelectedGone()))
        StartUsbChanged(deviceWatch, Wait::scaled(usbQuietTime));
    if (isContinued && DeviceEntered)
        SlotContinue(0);
}

/** The user has gone back to the chooser. What is being written goes on; what isn't yet is not begun. */
void FirmwareRun::abandon()
{
    if (!UpdateRunning || hasStarted)
        return;
    for (const Device device : {Receiver, Mouse}) {
        if (sides[device].CheckTimer.isActive())
            end(device);
    }
}

void FirmwareRun::SlotContinue(int)
{
    if (UpdateRunning) {
        isContinuing = true; // the user was quicker than the last step
        return;
    }
    for (const Device device : {Mouse, Receiver}) {
        const int other = sides[1 - device].state;
        if (sides[device].isAvailable && (other == FirmwareTransfer::Success || other == FirmwareTransfer::UpToDate)) {
            press(device);
            ContinuedRun = UpdateRunning;
        }
    }
}
