#include "sensor/StopCloseTime.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "sensor/TenSecondTimes.h"

using TenSecondTimes::idleTime;

StopCloseTime::StopCloseTime(QWidget *parent)
    : TitledCombo("StopClose", "Light", TenSecondTimes::texts(idleTime), parent)
{
    QMetaObject::connectSlotsByName(this);
}

void StopCloseTime::setTimeSilently(int tenSeconds) { setIndexSilently(TenSecondTimes::itemOf(idleTime, tenSeconds)); }

void StopCloseTime::on_StopClose_activated(int index)
{
    if (DeviceWritesEnabled && !LightUiUpdating && index >= 0 && index < TenSecondTimes::itemCount(idleTime))
        SetStopCloseTime(TenSecondTimes::valueOf(idleTime, index));
}
