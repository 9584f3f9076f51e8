#include "sensor/SensorEffect.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "productdata/Theme.h"
#include "ui/ComboStyle.h"
#include "ui/FittedText.h"
#include "ui/MyConmboBox.h"
#include "ui/PageFont.h"

#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include <algorithm>
#include <array>

namespace {

constexpr QRect titlePlace(0, 0, 130, 21);
constexpr QRect comboPlace(0, 45, 130, 30);
constexpr int gaugeLeft = 160;
constexpr int speedTop = 20;
constexpr int brightnessTop = 58;
constexpr int modeCount = 3;
constexpr int maximumSpeed = 5;

/** What the record holds for brightness 1 to 10. */
constexpr std::array<std::uint8_t, 10> brightnessValues = {16, 30, 60, 90, 128, 150, 180, 210, 230, 255};

/** Position of a brightness of the record; a value that isn't in the table stands for itself. */
int brightnessPosition(int value)
{
    const auto found = std::find(brightnessValues.begin(), brightnessValues.end(), value);
    return found == brightnessValues.end() ? value : int(found - brightnessValues.begin()) + 1;
}

} // namespace

SensorEffect::SensorEffect(QWidget *parent)
    : QFrame(parent), label(new QLabel(this)), combo(new MyConmboBox(this)),
      speed(makeGauge("SpeedH", "SpeedSpinBox", "line", maximumSpeed, speedTop)),
      brightness(makeGauge("LightH", "LightSpinBox", "line_2", int(brightnessValues.size()), brightnessTop))
{
    resize(439, 96);
    for (QLabel *each : {label, speed.title, brightness.title})
        each->setStyleSheet(Theme::label());
    label->setObjectName(QStringLiteral("label_4"));
    label->setGeometry(titlePlace);
    combo->setObjectName(QStringLiteral("Model"));
    combo->setGeometry(comboPlace);
    styleCombo(combo, "Sensor");
    combo->addItems({QStringLiteral("关闭"), QStringLiteral("常亮"), QStringLiteral("呼吸")});
    setTitle(QStringLiteral("DPI指示灯"));
    setSpeedTitle(QStringLiteral("速度"));
    setBrightnessTitle(QStringLiteral("亮度"));
    showMode(combo->currentIndex());
    QMetaObject::connectSlotsByName(this);
}

SensorEffect::Gauge SensorEffect::makeGauge(const char *sliderName, const char *numberName, const char *lineName,
                                            int maximum, int top)
{
    Gauge gauge{new QLabel(this), {this, "Sensor", sliderName, numberName, lineName}};
    gauge.title->setGeometry(gaugeLeft, top, 80, 20);
    gauge.setting.place({gaugeLeft + 88, top, 140, 20}, {gaugeLeft + 236, top, 36, 20}, 184);
    gauge.setting.setMaximum(maximum);
    gauge.setting.number->setMaximum(int(brightnessValues.size())); // alike, whatever their sliders end at
    gauge.setting.number->setFont(PageFont::small());
    return gauge;
}

void SensorEffect::showMode(int mode)
{
    brightness.setting.setOffered(mode == 1);
    speed.setting.setOffered(mode == 2);
}

void SensorEffect::setMode(int mode)
{
    if (mode < 0 || mode >= modeCount)
        return;
    const QSignalBlocker blocker(combo);
    combo->setCurrentIndex(mode);
    showMode(mode);
}

int SensorEffect::mode() const { return combo->currentIndex(); }

void SensorEffect::setSpeed(int value) { speed.setting.setValueSilently(value); }

void SensorEffect::setBrightness(int value) { brightness.setting.setValueSilently(brightnessPosition(value)); }

void SensorEffect::enableSliders()
{
    speed.setting.slider->setEnabled(true);
    brightness.setting.slider->setEnabled(true);
}

void SensorEffect::setItemText(int index, const QString &text) { combo->setItemText(index, text); }
void SensorEffect::setTitle(const QString &text) { FittedText::set(label, text, PageFont::points, 0); }
void SensorEffect::setSpeedTitle(const QString &text) { FittedText::set(speed.title, text, PageFont::points, 0); }
void SensorEffect::setBrightnessTitle(const QString &text)
{
    FittedText::set(brightness.title, text, PageFont::points, 0);
}

void SensorEffect::on_Model_currentIndexChanged(int index)
{
    showMode(index);
    if (DeviceWritesEnabled && !SensorUiUpdating && index >= 0)
        SetDpiLedMode(index);
}

void SensorEffect::on_SpeedH_valueChanged(int value)
{
    speed.setting.number->setValue(value);
    if (DeviceWritesEnabled && !SensorUiUpdating)
        SetDpiLedSpeed(static_cast<std::uint8_t>(value));
}

void SensorEffect::on_SpeedH_sliderMoved(int value) { speed.setting.number->setValue(value); }

void SensorEffect::on_LightH_valueChanged(int value)
{
    brightness.setting.number->setValue(value);
    if (DeviceWritesEnabled && !SensorUiUpdating)
        SetDpiLedBrightness(brightnessValues[static_cast<std::size_t>(value - brightness.setting.slider->minimum())]);
}

void SensorEffect::on_LightH_sliderMoved(int value) { brightness.setting.number->setValue(value); }
