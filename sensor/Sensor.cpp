#include "sensor/Sensor.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceIdentity.h"
#include "devicelink/DeviceSetters.h"
#include "devicelink/SelectedDevice.h"
#include "devicelink/WorkingRecord.h"
#include "productdata/LanguageFile.h"
#include "productdata/UserFolders.h"
#include "productdata/UserSettings.h"
#include "sensor/DpiCoding.h"
#include "sensor/SensorEffect.h"
#include "sensor/SensorForm.h"
#include "sensor/SensorRate.h"
#include "sensor/SensorTexts.h"
#include "sensor/SensorUpdate.h"
#include "sensor/TenSecondTimes.h"
#include "ui/MyConmboBox.h"

#include <QCheckBox>
#include <QDebug>
#include <QDir>
#include <QToolButton>

namespace {

constexpr int cordedMode = 2;
constexpr int code4000Hz = 32;

} // namespace

Sensor::Sensor(QWidget *parent) : QWidget(parent), form(std::make_unique<SensorForm>(this))
{
    const QString folder = UserFolders::path(UserFolders::Folder::SensorPage);
    if (!QDir().mkpath(folder))
        qWarning() << "the folder of the sensor page can't be made:" << folder;
    sensorCoding().driver = readDriverSensor();
    SlotChangeLanguage(UserSettings::instance()->language());
    // The indicator follows every record but is offered to nobody.
    form->frameEffect->hide();
    form->TitleButton_3->hide();
    QMetaObject::connectSlotsByName(this);
    connectHub();
}

Sensor::~Sensor() = default;

void Sensor::connectHub()
{
    PostMsg *const hub = postMsg();
    connect(hub, &PostMsg::SigChangeLanguage, this, &Sensor::SlotChangeLanguage);
    connect(hub, &PostMsg::SigHideModel, this, &Sensor::SlotHideModel);
    connect(hub, &PostMsg::SigUpDataSensorUIB, this, &Sensor::SlotUpDataSenSorUIB);
    const auto blocking = Qt::BlockingQueuedConnection;
    connect(hub, &PostMsg::SigUpDataLightSensor, this, &Sensor::SlotUpDataSenSorUISensor, blocking);
    connect(hub, &PostMsg::SigFormReset, this, &Sensor::SlotFormReset, blocking);
    connect(hub, &PostMsg::SigUpDataReportRate, this, &Sensor::SlotUpDataReportRate, blocking);
    connect(hub, &PostMsg::SigUpDataDPI, this, &Sensor::SlotUpDataDPI, blocking);
    connect(hub, &PostMsg::SigUpDataDPILed, this, &Sensor::SlotUpDataDPILed, blocking);
}

void Sensor::SlotChangeLanguage(int index)
{
    LanguageFile::readSection(index, QStringLiteral("Sensor"), [this](const QString &element, const QString &text) {
        applySensorText(*form, element, text);
    });
}

// What the device tells ----------------------------------------------------------------------------------------------

void Sensor::SlotUpDataSenSorUISensor(FlashDataMap DataMap)
{
    SensorUiLoaded = false;
    SensorUpdate::showRecord(*form, DataMap);
    SensorUiLoaded = true;
}

void Sensor::SlotUpDataSenSorUIB(FlashDataMap DataMap) { SensorUpdate::showRecord(*form, DataMap); }

void Sensor::SlotFormReset() { SensorUpdate::showDefaults(*form); }

void Sensor::SlotUpDataReportRate(int code)
{
    const int index = SensorRate::indexOf(code);
    if (index < 0)
        return;
    form->frameRate->select(index);
    if (!SensorUpdate::hasSensorMode() || SelectInfo().get().IsCorded)
        return;
    if (SensorRate::isHighRate(code))
        SensorUpdate::showCordedMode(*form);
    else
        SensorUpdate::offerSensorMode(*form, WorkingRecord::instance().copy().SensorMode);
}

void Sensor::SlotUpDataDPI(int level)
{
    const FlagScope silent(DeviceWritesEnabled, false);
    SensorUpdate::showActiveLevel(*form, level);
}

void Sensor::SlotUpDataDPILed(FlashDataMap DataMap) { SensorUpdate::showIndicator(*form, DataMap); }

void Sensor::SlotHideModel(int high)
{
    if (!SensorUpdate::hasSensorMode())
        return;
    const DeviceAllInfo device = SelectInfo().get();
    const FlashDataMap record = WorkingRecord::instance().copy();
    if (high == 0 && !device.IsCorded)
        SensorUpdate::offerSensorMode(*form, record.SensorMode);
    // The record keeps its own mode meanwhile, so that the lower rates bring it back.
    const int wanted = record.ReportRate == code4000Hz ? 4 : 2;
    if (high == 1 && receiverRateOf(device.ReceiverClass) >= wanted)
        SensorUpdate::showCordedMode(*form);
}

// What the user does -------------------------------------------------------------------------------------------------

void Sensor::on_Performance_toggled(bool checked) { form->PerformanceOpen->setEnabled(checked); }

void Sensor::on_Performance_clicked(bool checked)
{
    if (DeviceWritesEnabled)
        SetPerformance(checked ? 1 : 0);
}

void Sensor::on_PerformanceOpen_currentIndexChanged(int index)
{
    using TenSecondTimes::fullPerformance;
    if (DeviceWritesEnabled && !SensorUiUpdating && index >= 0 && index < TenSecondTimes::itemCount(fullPerformance))
        SetPerformanceTime(TenSecondTimes::valueOf(fullPerformance, index));
}

void Sensor::on_ModelChoose_currentIndexChanged(int index)
{
    if (DeviceWritesEnabled && !SensorUiUpdating && index >= 0 && index != cordedMode)
        SetSensorMode(static_cast<std::uint8_t>(index));
}
