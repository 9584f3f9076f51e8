#include "sensor/StopCloseTime.h"

#include "devicelink/DeviceFlags.h"
#include "devicelink/DeviceSetters.h"
#include "ui/MyConmboBox.h"

#include <QSignalBlocker>

#include <algorithm>
#include <array>

namespace {

struct IdleTime
{
    std::uint8_t tenSeconds;
    const char *text;
};

constexpr std::array<IdleTime, 11> idleTimes = {{
    {1, "10秒"},
    {3, "30秒"},
    {6, "1分钟"},
    {30, "5分钟"},
    {60, "10分钟"},
    {90, "15分钟"},
    {120, "20分钟"},
    {150, "25分钟"},
    {180, "30分钟"},
    {210, "35分钟"},
    {240, "40分钟"},
}};

QStringList texts()
{
    QStringList items;
    for (const IdleTime &time : idleTimes)
        items.append(QString::fromUtf8(time.text));
    return items;
}

} // namespace

StopCloseTime::StopCloseTime(QWidget *parent) : TitledCombo("StopClose", "Light", texts(), parent)
{
    QMetaObject::connectSlotsByName(this);
}

void StopCloseTime::setIndexSilently(int index)
{
    const QSignalBlocker blocker(comboBox());
    setIndex(index);
}

void StopCloseTime::setTimeSilently(int tenSeconds)
{
    const auto found = std::find_if(idleTimes.begin(), idleTimes.end(),
                                    [=](const IdleTime &time) { return time.tenSeconds == tenSeconds; });
    if (found != idleTimes.end())
        setIndexSilently(int(found - idleTimes.begin()));
}

void StopCloseTime::on_StopClose_activated(int index)
{
    if (DeviceWritesEnabled && !LightUiUpdating && index >= 0 && index < int(idleTimes.size()))
        SetStopCloseTime(idleTimes[static_cast<std::size_t>(index)].tenSeconds);
}
