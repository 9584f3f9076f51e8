#include "sensor/RippeControl.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"

RippeControl::RippeControl(QWidget *parent)
    : SwitchFrame("RippeControl_2", "Sensor", QStringLiteral("波纹控制"), parent)
{
    QMetaObject::connectSlotsByName(this);
}

void RippeControl::on_RippeControl_2_clicked(bool checked)
{
    if (DeviceWritesEnabled)
        SetRippeControl(checked ? 1 : 0);
}
