#include "sensor/StraightLine.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"

StraightLine::StraightLine(QWidget *parent)
    : SwitchFrame("StraightLine_2", "Sensor", QStringLiteral("直线修正"), parent)
{
    QMetaObject::connectSlotsByName(this);
}

void StraightLine::on_StraightLine_2_clicked(bool checked)
{
    if (DeviceWritesEnabled)
        SetStraightLine(checked ? 1 : 0);
}
