#include "sensor/DebounceTime.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"

namespace {

QStringList numbers()
{
    QStringList texts;
    for (int index = 0; index < DebounceTime::itemCount; ++index)
        texts.append(QString::number(index));
    return texts;
}

} // namespace

DebounceTime::DebounceTime(QWidget *parent) : TitledCombo("Debunce", "Buttoninterface", numbers(), parent)
{
    QMetaObject::connectSlotsByName(this);
}

void DebounceTime::on_Debunce_currentIndexChanged(int index)
{
    if (DeviceWritesEnabled && index >= 0)
        SetDebounceTime(static_cast<std::uint8_t>(index));
}
