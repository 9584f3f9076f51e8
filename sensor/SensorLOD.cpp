#include "sensor/SensorLOD.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "ui/MyConmboBox.h"

SensorLOD::SensorLOD(QWidget *parent)
    : TitledCombo("LOD", "Sensor", {QStringLiteral("1mm"), QStringLiteral("2mm")}, parent)
{
    QMetaObject::connectSlotsByName(this);
}

void SensorLOD::setListEnabled(bool enabled) { comboBox()->setEnabled(enabled); }

void SensorLOD::on_LOD_currentIndexChanged(int index)
{
    if (DeviceWritesEnabled && !SensorUiUpdating && index >= 0)
        SetLod(static_cast<std::uint8_t>(index + 1));
}
