#include "sensor/SensorUpdate.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/ReceiverClasses.h"
#include "devicelink/SelectedDevice.h"
#include "productdata/ConfigStore.h"
#include "sensor/DpiCoding.h"
#include "sensor/MotionSync.h"
#include "sensor/RippeControl.h"
#include "sensor/SensorDPI.h"
#include "sensor/SensorEffect.h"
#include "sensor/SensorForm.h"
#include "sensor/SensorLOD.h"
#include "sensor/SensorRate.h"
#include "sensor/StraightLine.h"
#include "sensor/TenSecondTimes.h"
#include "ui/MyConmboBox.h"

#include <QCheckBox>
#include <QListView>
#include <QSignalBlocker>
#include <QStandardItemModel>

namespace {

constexpr int cordedMode = 2;
constexpr int index1000Hz = 3;
constexpr int index4000Hz = 5;

/**
 * "Corded" can be shown but not chosen: its row is hidden, and disabled so that arrow keys and the wheel, which go by
 * what is enabled, pass over it too.
 */
void offerCorded(SensorForm &form, bool offered)
{
    form.modelList->setRowHidden(cordedMode, !offered);
    if (auto *const items = qobject_cast<QStandardItemModel *>(form.ModelChoose->model()))
        items->item(cordedMode)->setEnabled(offered);
}

QString hexadecimalColour(const DpiLevel &level)
{
    return QStringLiteral("#%1").arg((level.Red << 16) | (level.Green << 8) | level.Blue, 6, 16, QLatin1Char('0'));
}

/** Levels that the model offers; the record has room for eight. */
int offeredLevels(const QString &section)
{
    return qBound(0, ConfigStore::instance()->number(section, QStringLiteral("DPIMaxGrade")), SensorDPI::levelCount);
}

void showRate(SensorForm &form, const FlashDataMap &record, const DeviceAllInfo &device)
{
    const bool tooFast = device.IsCorded && SensorRate::isHighRate(record.ReportRate);
    form.frameRate->select(tooFast ? index1000Hz : SensorRate::indexOf(record.ReportRate));
}

/** The mode that a mouse starts with; greyed where the sensor has no choice of modes. */
void showFirstMode(SensorForm &form)
{
    SensorUpdate::offerSensorMode(form, 0);
    form.ModelChoose->setEnabled(SensorUpdate::hasSensorMode());
}

void showMode(SensorForm &form, const FlashDataMap &record, const DeviceAllInfo &device)
{
    const bool onFastReceiver = receiverRateOf(device.ReceiverClass) > 1;
    if (!SensorUpdate::hasSensorMode())
        showFirstMode(form); // the mode of the mouse before this one would be a false one
    else if (device.IsCorded || (onFastReceiver && SensorRate::isHighRate(record.ReportRate)))
        SensorUpdate::showCordedMode(form);
    else
        SensorUpdate::offerSensorMode(form, record.SensorMode);
}

void showPerformance(SensorForm &form, const FlashDataMap &record)
{
    form.Performance->setChecked(record.Performance != 0);
    form.PerformanceOpen->setEnabled(record.Performance != 0);
    const int item = TenSecondTimes::itemOf(TenSecondTimes::fullPerformance, record.PerformanceTime);
    if (item >= 0)
        form.PerformanceOpen->setCurrentIndex(item);
}

void showLevels(SensorForm &form, const FlashDataMap &record, int offered)
{
    form.frameDpi->blockLevelList(true);
    for (int level = 0; level < offered; ++level) {
        form.frameDpi->setLevelColor(level, hexadecimalColour(record.DpiLevels[level]));
        form.frameDpi->addLevelItem(level, QString::number(level + 1));
    }
    form.frameDpi->blockLevelList(false);
    if (record.DpiCurrentLevel < SensorDPI::levelCount)
        form.frameDpi->showActiveLook(record.DpiCurrentLevel);
}

void readName(const QString &section)
{
    sensorCoding().SensorName = ConfigStore::instance()->value(section, QStringLiteral("Sensor"));
}

void readRange(const QString &section)
{
    parseDpiRange(ConfigStore::instance()->valueList(section, QStringLiteral("DPIRange")), sensorCoding().DpiRange);
}

void showValues(SensorForm &form, const FlashDataMap &record, int offered)
{
    for (int level = 0; level < offered; ++level) {
        const DpiLevel &stored = record.DpiLevels[level];
        const int dpi = decodeDpi(sensorCoding(), {stored.CodeX, stored.Flags});
        form.frameDpi->setLevelText(level, QString::number(dpi));
        if (level == record.DpiCurrentLevel) {
            form.frameDpi->setSliderValue(dpi);
            form.frameDpi->setSpinValue(dpi);
        }
    }
    // A record may count more levels than the model has, or none.
    const int used = offered > 0 ? qBound(1, int(record.DpiLevelCount), offered) : 0;
    form.frameDpi->showLevels(used - 1);
    form.frameDpi->selectLevelItem(used - 1);
    form.frameDpi->moveMarker(record.DpiCurrentLevel + 1);
    form.frameDpi->checkLevel(record.DpiCurrentLevel);
}

/** Shows the settings that the sensor of the model has. */
void showFeatures(SensorForm &form, const QString &section)
{
    const auto has = [](DriverSensor::Feature feature) {
        return sensorCoding().driver.supports(feature, sensorCoding().SensorName);
    };
    form.frameLOD->setListEnabled(has(DriverSensor::LiftOff));
    form.frame->setVisible(has(DriverSensor::Ripple));
    form.frame_4->setVisible(has(DriverSensor::FixLine));
    form.frame_3->setVisible(has(DriverSensor::MotionSync));
    form.setSimple(ConfigStore::instance()->number(section, QStringLiteral("XIn1")) == 2);
}

} // namespace

bool SensorUpdate::hasSensorMode()
{
    return sensorCoding().driver.supports(DriverSensor::SensorModeSelection, sensorCoding().SensorName);
}

void SensorUpdate::offerSensorMode(SensorForm &form, int mode)
{
    // What the mouse holds already must not be written back to it.
    const QSignalBlocker blocker(form.ModelChoose);
    form.ModelChoose->setEnabled(true);
    if (mode >= 0 && mode < form.ModelChoose->count())
        form.ModelChoose->setCurrentIndex(mode);
    offerCorded(form, false);
}

void SensorUpdate::showCordedMode(SensorForm &form)
{
    const QSignalBlocker blocker(form.ModelChoose);
    offerCorded(form, true);
    form.ModelChoose->setCurrentIndex(cordedMode);
    form.ModelChoose->setEnabled(false);
}

void SensorUpdate::showIndicator(SensorForm &form, const FlashDataMap &record)
{
    if (record.DpiLedOn == 0)
        form.frameEffect->setMode(0);
    else if (record.DpiLedMode != 0)
        form.frameEffect->setMode(record.DpiLedMode);
    form.frameEffect->setSpeed(record.DpiLedSpeed);
    form.frameEffect->setBrightness(record.DpiLedBrightness);
}

void SensorUpdate::showActiveLevel(SensorForm &form, int level)
{
    if (level < 0 || level >= SensorDPI::levelCount)
        return;
    form.frameDpi->moveMarker(level + 1);
    form.frameDpi->checkLevel(level);
    form.frameDpi->setActiveLevel(level);
}

void SensorUpdate::showRecord(SensorForm &form, const FlashDataMap &record)
{
    const DeviceAllInfo device = SelectInfo().get();
    const QString section = selectedSection();
    const FlagScope updating(SensorUiUpdating);
    form.frameDpi->clearLevels();
    form.frameDpi->blockSlider(true);
    form.frameDpi->enableSlider();
    form.frameEffect->enableSliders();

    form.frameDpi->setActiveLevel(record.DpiCurrentLevel);
    showRate(form, record, device);
    readName(section);
    showMode(form, record, device);
    form.frameLOD->setIndex(record.Lod - 1);
    showPerformance(form, record);
    form.frame->setOn(record.RippeControl != 0);
    form.frame_4->setOn(record.StraightLine != 0);
    form.frame_3->setOn(record.MotionSync != 0);
    showIndicator(form, record);

    const int offered = offeredLevels(section);
    showLevels(form, record, offered);
    readRange(section);
    form.frameDpi->setSliderMaximum(sensorCoding().DpiRange.maximum());
    form.frameDpi->setSliderMinimum(sensorCoding().DpiRange.minimum());
    showValues(form, record, offered);

    form.frameRate->setRateClass(ReceiverClasses::kindOf(device.ReceiverClass).rateClass);
    showFeatures(form, section);
    // A bulk update brings the rates of another receiver along, which a 1K one can't carry.
    if (BulkUpdateActive && device.ReceiverClass == ReceiverClasses::receiver1K)
        form.frameRate->select(index1000Hz);
    form.frameDpi->blockSlider(false);
}

void SensorUpdate::showDefaults(SensorForm &form)
{
    constexpr int levels = 6;
    constexpr int activeLevel = 2;
    constexpr int dpi = 1600;
    const QString section = selectedSection();
    const FlagScope updating(SensorUiUpdating);
    // Nothing of the model before stays, not even where the product file says nothing of this one.
    sensorCoding().DpiRange = {};
    readName(section);
    readRange(section);
    form.frameDpi->blockSlider(true);
    form.frameDpi->setSliderMaximum(26000);
    form.frameDpi->setSliderMinimum(100);
    form.frameDpi->reloadDefaults();
    form.frameDpi->clearLevels();
    form.frameDpi->blockLevelList(true);
    for (int level = 0; level < levels; ++level)
        form.frameDpi->addLevelItem(level, QString::number(level + 1));
    form.frameDpi->selectLevelItem(levels - 1);
    form.frameDpi->blockLevelList(false);
    form.frameDpi->showLevels(levels - 1);
    form.frameDpi->setActiveLevel(activeLevel);
    form.frameDpi->moveMarker(activeLevel + 1);
    form.frameDpi->checkLevel(activeLevel);
    form.frameDpi->showActiveLook(activeLevel);
    form.frameDpi->setSliderValue(dpi);
    form.frameDpi->setSpinValue(dpi);
    form.frameDpi->blockSlider(false);

    form.frameLOD->setIndex(0);
    form.PerformanceOpen->setCurrentIndex(1);
    form.PerformanceOpen->setEnabled(false);
    form.Performance->setChecked(false);
    form.frameEffect->setMode(0);
    form.frameEffect->setSpeed(3);
    form.frameEffect->setBrightness(5);
    form.frame_3->setOn(true);
    form.frame_4->setOn(false);
    form.frame->setOn(false);

    // A symmetrical mouse on a 4K receiver comes up at 4000 Hz, which sets its mode; everything else at 1000 Hz.
    const int kind = SelectInfo().get().DeviceKind;
    const bool isFast = kind == 1 && ReceiverRate == 4;
    const bool isSlow = !isFast && (kind == 1 || kind == 2);
    form.frameRate->setRateClass(isSlow ? 0 : 1);
    form.frameRate->select(isFast ? index4000Hz : index1000Hz);
    if (isFast)
        SensorUpdate::showCordedMode(form);
    else
        showFirstMode(form);
    showFeatures(form, section);
}
