#include "maintenance/UpDateRepair.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceScan.h"
#include "maintenance/TransferBar.h"
#include "productdata/FirmwareImages.h"
#include "productdata/ModelData.h"
#include "ui/NumberBox.h"

#include <QDebug>
#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr PromptDescription description{
    "AutoRepairA", "AutoRepair", "请只插入需要修复的设备，然后点击“确定”", {{"NewHong", "确定", PromptPlace::single}}};

/** Between the text and the number. */
constexpr QRect barPlace{30, 98, 240, 6};

/** The device is on the bus as one that runs its firmware. A mouse shows that by its receiver, too. */
bool isWorking(const FirmwareTransfer::Subject &subject)
{
    QList<DeviceAllInfo> entries = findEntries(findDefaultPaths);
    return std::any_of(entries.begin(), entries.end(), [&subject](DeviceAllInfo &entry) {
        if (identifyDevice(entry) != Identity::Known || entry.Cid != subject.cid || entry.DeviceKind != subject.mid)
            return false;
        if (subject.target == FirmwareImages::ReceiverTarget)
            return !entry.IsCorded && receiverRateOf(entry.ReceiverClass) == subject.updateClass;
        return entry.IsCorded || entry.Online;
    });
}

} // namespace

UpDateRepair::UpDateRepair()
    : ConfirmPrompt(description, "ToolText"), subject(FirmwareTransfer::Subject::fromText(ModelData::updateFailInfo())),
      isAutomatic(false)
{
    build();
}

UpDateRepair::UpDateRepair(const FirmwareTransfer::Subject &what, const QByteArray &image)
    : ConfirmPrompt(description, "ToolText"), subject(what), SelectedImages{image}, isAutomatic(true)
{
    build();
}

void UpDateRepair::build()
{
    spinBox = new QSpinBox(frame());
    spinBox->setObjectName(QStringLiteral("spinBox"));
    spinBox->setGeometry(PromptPlace::single); // of the button, which is away meanwhile
    spinBox->setFont(label()->font());
    spinBox->setRange(0, 100);
    spinBox->setSuffix(QStringLiteral("%"));
    styleNumberDisplay(spinBox);
    spinBox->hide();
    bar = addTransferBar(frame(), barPlace);
    bar->hide();
    connect(postMsg(), &PostMsg::SigAutoRepair, this, &UpDateRepair::SlotAutoRepair);
    connect(postMsg(), &PostMsg::SigAutoRepairProgress, this, &UpDateRepair::SlotAutoRepairProgress);
}

void UpDateRepair::on_NewHong_clicked()
{
    if (isBusy)
        return; // Return presses a hidden button, too
    if (isOver) {
        accept();
        return;
    }
    if (!subject) {
        qWarning() << "what firmware update broke off can't be told from" << ModelData::updateFailInfo();
        dropEntry();
        accept();
        return;
    }
    if (!isAutomatic && !findImage())
        return;
    const int broken = FirmwareTransfer::bootDevices(SelectedImages.first());
    // With none in boot mode an automatic repair goes to the receiver as it is: the user was asked for just that.
    if (broken > 1)
        showElement("SameDevice");
    else if (broken == 0 && !isAutomatic)
        tellMissing();
    else
        start();
}

bool UpDateRepair::findImage()
{
    FirmwareImages::Request request = subject->target == FirmwareImages::ReceiverTarget
                                          ? FirmwareImages::receiverRequest(subject->modelIndex(), subject->updateClass)
                                          : FirmwareImages::mouseRequest(subject->modelIndex());
    request.cid = subject->cid;
    if (FirmwareImages::FindImage(request, {}, SelectedImages))
        return true;
    qWarning() << "there is no firmware image to repair" << subject->text();
    return false;
}

/**
 * No device is in boot mode. If it works it was repaired elsewhere, or the update had not begun to change it: nothing
 * is broken then, and the offer would stand for ever.
 */
void UpDateRepair::tellMissing()
{
    if (!isWorking(*subject)) {
        showElement("NoDevice");
        return;
    }
    dropEntry();
    isOver = true;
    showElement("DeviceWorks");
}

void UpDateRepair::start()
{
    isBusy = true;
    isOver = true;
    showElement("UpdateNotMove");
    SlotAutoRepairProgress(0);
    spinBox->show();
    bar->show();
    offerClosing(false);
    button("NewHong")->hide();
    FirmwareTransfer::startRepair(SelectedImages.first(), *subject);
}

void UpDateRepair::dropEntry()
{
    ModelData::storeUpdateFailInfo({});
    postMsg()->post(&PostMsg::SigUpDateButton, true);
}

void UpDateRepair::SlotAutoRepairProgress(int index)
{
    spinBox->setValue(index);
    bar->setValue(index);
}

void UpDateRepair::SlotAutoRepair(int index)
{
    isBusy = false;
    showElement(index == 0 ? "UpdateSuccess" : "UpdateFail");
    spinBox->hide();
    bar->hide();
    offerClosing(true);
    button("NewHong")->show();
    button("NewHong")->setFocus(); // Enter and Return press it
}

void UpDateRepair::on_CloseButton_clicked()
{
    if (!isBusy)
        done(Rejected);
}
