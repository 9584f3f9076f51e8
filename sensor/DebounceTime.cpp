#include "sensor/DebounceTime.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "ui/MyConmboBox.h"

#include <QSignalBlocker>

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

void DebounceTime::setIndex(int index) { TitledCombo::setIndex(index); }

void DebounceTime::setIndexSilently(int index)
{
    const QSignalBlocker blocker(comboBox());
    TitledCombo::setIndex(index);
}

void DebounceTime::setUnit(const QString &unit)
{
    for (int index = 0; index < itemCount; ++index)
        setItemText(index, QString::number(index) + unit);
}

void DebounceTime::on_Debunce_currentIndexChanged(int index)
{
    if (DeviceWritesEnabled && index >= 0)
        SetDebounceTime(static_cast<std::uint8_t>(index));
}
