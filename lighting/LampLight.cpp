#include "lighting/LampLight.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "lighting/LightStage.h"
#include "lighting/LightTables.h"
#include "lighting/ScreenColour.h"
#include "productdata/LanguageFile.h"
#include "productdata/Theme.h"
#include "productdata/UserSettings.h"
#include "sensor/StopCloseTime.h"
#include "ui/FittedText.h"
#include "ui/MyConmboBox.h"
#include "ui/RgbText.h"

#include <QDebug>
#include <QLabel>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

namespace {

struct LabelKey
{
    const char *key; ///< element of the language file
    QLabel *LightForm::*label;
};

constexpr LabelKey labelKeys[] = {
    {"label", &LightForm::label},       {"label_2", &LightForm::label_2},   {"label_3", &LightForm::label_3},
    {"label_4", &LightForm::label_4},   {"label_5", &LightForm::label_5},   {"label_6", &LightForm::label_6},
    {"label_8", &LightForm::label_8},   {"label_10", &LightForm::label_10}, {"label_11", &LightForm::label_11},
    {"label_12", &LightForm::label_12}, {"label_13", &LightForm::label_13},
};

/** Points of the labels; a text too long for its place gets smaller. */
constexpr qreal textSize = 10;
constexpr qreal headingSize = 12;

/** A change made while a page is filled must not be written back. */
bool isUserChange() { return DeviceWritesEnabled && !LightUiUpdating; }

} // namespace

LampLight::LampLight(QWidget *parent) : QWidget(parent), pictures(Theme::pictureFolder("Light"))
{
    setObjectName(QStringLiteral("LampLight"));
    setFixedSize(883, 630);
    setFont(QFont(QStringLiteral("微软雅黑"), 9));
    form.build(this);
    setStyles();
    form.showEffect(form.LightMod->currentIndex());
    SlotChangeLanguage(UserSettings::instance()->language());
    updateStage();
    QMetaObject::connectSlotsByName(this);

    connect(postMsg(), &PostMsg::SigChangeLanguage, this, &LampLight::SlotChangeLanguage);
    connect(postMsg(), &PostMsg::SigUpDataLightLight, this, &LampLight::SlotUpDataLightUILight,
            Qt::BlockingQueuedConnection);
    connect(postMsg(), &PostMsg::SigUpDataLightUIA, this, &LampLight::SlotUpDataLightUIA);
    connect(postMsg(), &PostMsg::SigFormReset, this, &LampLight::SlotFormResetLight, Qt::BlockingQueuedConnection);
}

void LampLight::SlotChangeLanguage(int index)
{
    LanguageFile::readSection(index, QStringLiteral("Light"), [this](const QString &element, const QString &text) {
        for (const LabelKey &entry : labelKeys) {
            if (element == QLatin1String(entry.key))
                FittedText::set(form.*entry.label, text, entry.label == &LightForm::label ? headingSize : textSize, 0);
        }
        for (int item = 0; item < int(LightTables::effects.size()); ++item) {
            if (element == QLatin1String(LightTables::effects[std::size_t(item)].key))
                form.LightMod->setItemText(item, text);
        }
        for (int item = 0; item < int(LightTables::idleTimeKeys.size()); ++item) {
            if (element == QLatin1String(LightTables::idleTimeKeys[std::size_t(item)]))
                form.frameClose->setItemText(item, text);
        }
    });
}

void LampLight::SlotUpDataLightUILight(FlashDataMap DataMap)
{
    form.brightness.slider->setEnabled(true);
    form.speed.slider->setEnabled(true);
    LightUiLoaded = false;
    applyRecord(DataMap);
    LightUiLoaded = true;
}

void LampLight::SlotUpDataLightUIA(FlashDataMap DataMap)
{
    form.brightness.slider->setEnabled(false);
    form.speed.slider->setEnabled(false);
    applyRecord(DataMap);
}

void LampLight::applyRecord(const FlashDataMap &record)
{
    const FlagScope updating(LightUiUpdating);
    {
        const QSignalBlocker quietRed(form.RSpinBox);
        const QSignalBlocker quietGreen(form.GSpinBox);
        const QSignalBlocker quietBlue(form.BSpinBox);
        // Levels beyond the range are clipped by the widgets.
        form.brightness.setValueSilently(record.LightBrightness + LightTables::lowestLevel);
        form.speed.setValueSilently(record.LightSpeed + LightTables::lowestLevel);
        form.RSpinBox->setValue(record.LightRed);
        form.GSpinBox->setValue(record.LightGreen);
        form.BSpinBox->setValue(record.LightBlue);
        updatePreview();
    }
    // An effect that the list doesn't have leaves the choice as it was, like an unknown idle time. "Off" would be
    // untrue of a light that is on, and choosing it would then change nothing, so that it couldn't be switched off.
    const int effect = record.LightOn != 0 ? record.LightMode : 0;
    if (effect < form.LightMod->count())
        form.LightMod->setCurrentIndex(effect);
    else
        qWarning() << "The mouse has an unknown light effect:" << effect;
    form.RippeControl->setChecked(record.LightRippeControl != 0);
    form.frameClose->setTimeSilently(record.StopCloseTime);
    updateStage();
}

void LampLight::SlotFormResetLight()
{
    const FlagScope updating(LightUiUpdating);
    form.LightMod->setCurrentIndex(LightTables::resetEffect);
    form.brightness.setValueSilently(LightTables::resetBrightness);
    form.speed.setValueSilently(LightTables::resetSpeed);
    form.RippeControl->setChecked(true);
    form.frameClose->setIndexSilently(LightTables::resetIdleTime);
    updateStage();
}

void LampLight::on_LightMod_currentIndexChanged(int index)
{
    // Shown before it is sent: the offline prompt serves events, and by the time it closes the page may show a record
    // with another effect.
    form.showEffect(index);
    updateStage();
    if (isUserChange())
        SetLightMode(index);
}

void LampLight::on_horizontalLight_valueChanged(int value)
{
    form.brightness.number->setValue(value);
    if (isUserChange())
        SetLightBrightness(static_cast<std::uint8_t>(value - LightTables::lowestLevel));
    updateStage();
}

void LampLight::on_horizontalLight_sliderMoved(int value) { form.brightness.number->setValue(value); }

void LampLight::on_horizontalSpeed_valueChanged(int value)
{
    form.speed.number->setValue(value);
    if (isUserChange())
        SetLightSpeed(static_cast<std::uint8_t>(value - LightTables::lowestLevel));
    updateStage();
}

void LampLight::on_horizontalSpeed_sliderMoved(int value) { form.speed.number->setValue(value); }

void LampLight::on_RippeControl_clicked(bool checked)
{
    if (isUserChange())
        SetLightRippeControl(checked ? 1 : 0);
}

void LampLight::on_RSpinBox_valueChanged(int red)
{
    colourChanged(red, form.GSpinBox->value(), form.BSpinBox->value());
}

void LampLight::on_GSpinBox_valueChanged(int green)
{
    colourChanged(form.RSpinBox->value(), green, form.BSpinBox->value());
}

void LampLight::on_BSpinBox_valueChanged(int blue)
{
    colourChanged(form.RSpinBox->value(), form.GSpinBox->value(), blue);
}

void LampLight::colourChanged(int red, int green, int blue)
{
    updatePreview();
    updateStage();
    if (DeviceWritesEnabled)
        SetLightColor(static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                      static_cast<std::uint8_t>(blue));
}

void LampLight::updatePreview()
{
    form.labelPreView->setStyleSheet(
        QStringLiteral("QLabel{background-color: rgb(%1);border: 2px solid  rgb(220,220,220);}")
            .arg(rgbText(chosenColour())));
}

QColor LampLight::chosenColour() const
{
    return {form.RSpinBox->value(), form.GSpinBox->value(), form.BSpinBox->value()};
}

void LampLight::updateStage()
{
    LightLook look;
    look.effect = form.LightMod->currentIndex();
    look.colour = chosenColour();
    look.brightness = form.brightness.slider->value();
    look.speed = form.speed.slider->value();
    form.stage->setLook(look);
}

bool LampLight::mayChange() const { return !DeviceWritesEnabled || TestDeviceOnline(); }

void LampLight::step(QSpinBox *value, int by)
{
    if (mayChange())
        value->setValue(value->value() + by);
}

void LampLight::choosePreset(std::size_t number)
{
    if (!mayChange())
        return;
    const LightTables::Colour &colour = LightTables::presets[number];
    form.RSpinBox->setValue(colour.red);
    form.GSpinBox->setValue(colour.green);
    form.BSpinBox->setValue(colour.blue);
}

void LampLight::mousePressEvent(QMouseEvent *event)
{
    leaveNumbers(event->pos());
    // The strip isn't there for an effect without a colour of its own.
    if (form.label_7->isVisible() && form.label_7->geometry().contains(event->pos()))
        pickFromStrip(event->pos());
    else
        event->ignore(); // the window is dragged by what is empty
}

void LampLight::pickFromStrip(const QPoint &position)
{
    if (!mayChange())
        return;
    const QColor colour = screenColourUnderCursor(this, position);
    form.RSpinBox->setValue(colour.red());
    form.GSpinBox->setValue(colour.green());
    form.BSpinBox->setValue(colour.blue());
    updatePreview();
}

void LampLight::leaveNumbers(const QPoint &position)
{
    for (QSpinBox *number : {form.RSpinBox, form.GSpinBox, form.BSpinBox, form.brightness.number, form.speed.number}) {
        if (number->hasFocus() && !number->geometry().contains(position)) {
            number->clearFocus();
            setFocus();
        }
    }
}
