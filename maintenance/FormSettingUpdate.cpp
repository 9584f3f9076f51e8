#include "maintenance/FormSetting.h"
#include "maintenance/UpdateTexts.h"
#include "ui/FittedText.h"
#include "ui/PageFont.h"

#include <QLabel>
#include <QPushButton>
#include <QToolButton>

// What the page shows of a firmware update.

void FormSetting::connectRun()
{
    connect(&run, &FirmwareRun::messageChanged, this, &FormSetting::showMessage);
    connect(&run, &FirmwareRun::foundUpToDate, this, &FormSetting::showUpToDate);
    connect(&run, &FirmwareRun::offered, this,
            [this](FirmwareRun::Device device, bool isOffered) { showUpdateButton(updateButton(device), isOffered); });
    connect(&run, &FirmwareRun::buttonsEnabled, this, [this](bool areEnabled) {
        form.Receive->setEnabled(areEnabled);
        form.Mouse->setEnabled(areEnabled);
    });
}

QPushButton *FormSetting::updateButton(FirmwareRun::Device device) const
{
    return device == FirmwareRun::Mouse ? form.Mouse : form.Receive;
}

void FormSetting::showUsualUpdateTexts()
{
    FittedText::set(form.Receive, texts.value(QStringLiteral("Receive"), form.Receive->text()), PageFont::points);
    FittedText::set(form.Mouse, texts.value(QStringLiteral("Mouse"), form.Mouse->text()), PageFont::points);
}

void FormSetting::showUpToDate(FirmwareRun::Device device)
{
    QPushButton *const button = updateButton(device);
    FittedText::set(button, texts.value(QStringLiteral("VerNew"), button->text()), PageFont::points);
    showUpdateButton(button, false);
}

void FormSetting::showMessage(FirmwareRun::Device device)
{
    const FirmwareRun::Message message = run.message(device);
    const bool isShown = message != FirmwareRun::Message::None;
    QLabel *const label = device == FirmwareRun::Mouse ? form.label_13 : form.label_12;
    (device == FirmwareRun::Mouse ? form.toolButton_3 : form.toolButton_2)->setVisible(isShown);
    label->setVisible(isShown);
    if (isShown)
        FittedText::set(label, texts.value(QLatin1String(UpdateTexts::messageElement(device, message))),
                        PageFont::points, 0);
}
