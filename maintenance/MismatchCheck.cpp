#include "maintenance/MismatchCheck.h"

#include "app/hub/Wait.h"
#include "devicelink/DeviceIdentity.h"
#include "maintenance/FirmwareTransfer.h"
#include "maintenance/PairingRun.h"
#include "maintenance/UpDateRepair.h"
#include "maintenance/UpdateTexts.h"
#include "productdata/FirmwareImages.h"
#include "productdata/ModelData.h"
#include "ui/ContainReset.h"
#include "ui/RePair.h"
#include "ui/UpDateWarning.h"

namespace {

/** From the middle of the page to that of a prompt on firmware, in pixels. */
constexpr QPoint firmwareOffset(-20, 0);

void warn(const QWidget *page)
{
    UpDateWarning warning;
    warning.setLabelText(UpdateTexts::message(FirmwareRun::Mouse, FirmwareRun::Message::NoDevice));
    warning.centreOn(page, firmwareOffset);
    warning.exec();
}

void updateReceiver(const QWidget *page, const DeviceAllInfo &receiver, const QByteArray &image)
{
    ContainReset question;
    question.setLabelText(UpdateTexts::mouseIsNewer());
    question.centreOn(page, firmwareOffset);
    question.exec();
    if (!question.confirmed() || Wait::isEnding())
        return;
    UpDateRepair repair({FirmwareImages::ReceiverTarget, receiverRateOf(receiver.ReceiverClass),
                         ModelData::companyId().value_or(-1), ModelData::modelId(receiver.ModelIndex)},
                        image);
    repair.centreOn(page);
    repair.exec();
}

bool wantsPairing(const QWidget *page)
{
    RePair question;
    question.centreOn(page);
    question.exec();
    return question.confirmed();
}

} // namespace

void MismatchCheck::run(const QWidget *page, const DeviceAllInfo &receiver)
{
    if (Wait::isEnding())
        return;
    const QString mouseVersion = ModelData::mouseVersion(receiver.ModelIndex);
    if (!mouseVersion.isEmpty()) {
        QList<QByteArray> image;
        const bool isMouseOld =
            FirmwareImages::CheckUpdate(FirmwareImages::mouseRequest(receiver.ModelIndex), mouseVersion);
        const bool isReceiverOld = FirmwareImages::FindImage(
            FirmwareImages::receiverRequest(receiver.ModelIndex, receiverRateOf(receiver.ReceiverClass)),
            receiver.UsbVersion, image);
        if (isMouseOld && !isReceiverOld) {
            warn(page);
            return;
        }
        if (isReceiverOld && !isMouseOld) {
            updateReceiver(page, receiver, image.first());
            return;
        }
        if (!wantsPairing(page) || Wait::isEnding())
            return;
    }
    PairingRun::onChooser(page, receiver);
}
