#include "sensor/MotionSync.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"

MotionSync::MotionSync(QWidget *parent) : SwitchFrame("MotionSync_2", "Sensor", QStringLiteral("移动同步"), parent)
{
    QMetaObject::connectSlotsByName(this);
}

void MotionSync::on_MotionSync_2_clicked(bool checked)
{
    if (DeviceWritesEnabled)
        SetMotionSync(checked ? 1 : 0);
}
