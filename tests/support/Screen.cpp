#include "support/Screen.h"

#include "productdata/UserSettings.h"
#include "support/Child.h"
#include "support/SensorModel.h"
#include "support/SensorWidgets.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>
#include <QHash>
#include <QSpinBox>
#include <QWidget>

#include <algorithm>
#include <array>
#include <utility>

namespace {

using namespace SensorWidgets;

constexpr int code1000Hz = 1;
constexpr int cordedMode = 2;

/** In units of 10 s. */
constexpr std::array<int, 11> idleTimes = {1, 3, 6, 30, 60, 90, 120, 150, 180, 210, 240};

template<typename Table>
int indexIn(const Table &table, int value)
{
    return static_cast<int>(std::find(table.begin(), table.end(), value) - table.begin());
}

/** DPI of a level of the Q1. */
int dpiOf(const DpiLevel &level) { return dpiOnTheMouse(QStringLiteral("3395"), level.CodeX, level.Flags); }

class Comparison
{
public:
    explicit Comparison(const QWidget *shownPage) : page(shownPage) {}

    template<typename Widget>
    const Widget *find(const QString &name) const
    {
        return childOf<Widget>(page, name);
    }
    void compare(const QString &what, int shown, int held)
    {
        if (shown != held)
            differences << QStringLiteral("%1 shows %2, the mouse holds %3").arg(what).arg(shown).arg(held);
    }
    void choice(const char *name, int held) { compare(name, find<QComboBox>(name)->currentIndex(), held); }
    void slider(const char *name, int held) { compare(name, find<QAbstractSlider>(name)->value(), held); }
    void number(const char *name, int held) { compare(name, find<QSpinBox>(name)->value(), held); }
    void button(const QString &name, bool held) { compare(name, find<QAbstractButton>(name)->isChecked(), held); }
    void colour(const QString &name, int red, int green, int blue)
    {
        const QString colour = QStringLiteral("rgb(%1,%2,%3)").arg(red).arg(green).arg(blue);
        if (!find<QWidget>(name)->styleSheet().contains(colour))
            differences << QStringLiteral("%1 isn't %2").arg(name, colour);
    }

    QStringList differences;

private:
    const QWidget *page;
};

void compareLevels(Comparison &sensor, const FlashDataMap &held)
{
    sensor.choice("ChooseEvent", held.DpiLevelCount - 1);
    const auto *const marker = sensor.find<QWidget>("label_8");
    for (int index = 0; index < 8; ++index) {
        const QString name = cards[static_cast<std::size_t>(index)];
        const auto *const card = sensor.find<QAbstractButton>(name);
        sensor.compare(name + " offered", !card->isHidden(), index < held.DpiLevelCount);
        if (index >= held.DpiLevelCount)
            continue;
        const DpiLevel &level = held.DpiLevels[index];
        const bool isActive = index == held.DpiCurrentLevel;
        sensor.button(name, isActive);
        sensor.button(name + 'A', isActive);
        sensor.compare(name, card->text().toInt(), dpiOf(level));
        sensor.colour(name + 'A', level.Red, level.Green, level.Blue);
        const int distance = marker->geometry().center().x() - card->geometry().center().x();
        sensor.compare(name + " has the marker", qAbs(distance) <= 3, isActive);
    }
    const int dpi = dpiOf(held.DpiLevels[held.DpiCurrentLevel % 8]);
    sensor.slider("horizontalSliderC", dpi);
    sensor.number("spinBoxA", dpi);
}

QStringList sensorDifferences(const QWidget *page, const FlashDataMap &held, bool isCorded)
{
    Comparison sensor(page);
    const bool isHighRate = held.ReportRate >= 16;
    const int rate = isCorded && isHighRate ? code1000Hz : held.ReportRate;
    for (const Rate &each : rates)
        sensor.button(each.button, each.code == rate);
    sensor.choice("LOD", held.Lod - 1);
    sensor.choice("ModelChoose", isCorded || isHighRate ? cordedMode : held.SensorMode);
    sensor.button("Performance", held.Performance != 0);
    sensor.choice("PerformanceOpen", indexIn(performanceTimes, held.PerformanceTime));
    sensor.button("RippeControl_2", held.RippeControl != 0);
    sensor.button("StraightLine_2", held.StraightLine != 0);
    sensor.button("MotionSync_2", held.MotionSync != 0);
    sensor.compare("performance time", sensor.find<QComboBox>("PerformanceOpen")->isEnabled(), held.Performance != 0);
    const int brightness = indexIn(indicatorBrightness, held.DpiLedBrightness) + 1;
    sensor.slider("SpeedH", held.DpiLedSpeed);
    sensor.number("SpeedSpinBox", held.DpiLedSpeed);
    sensor.slider("LightH", brightness);
    sensor.number("LightSpinBox", brightness);
    const auto *const indicator = sensor.find<QWidget>("frameEffect"); // which itself is offered to nobody
    const int effect = held.DpiLedOn != 0 ? held.DpiLedMode : 0;
    sensor.choice("Model", effect);
    sensor.compare("LightH offered", sensor.find<QWidget>("LightH")->isVisibleTo(indicator), effect == 1);
    sensor.compare("SpeedH offered", sensor.find<QWidget>("SpeedH")->isVisibleTo(indicator), effect == 2);
    compareLevels(sensor, held);
    return sensor.differences;
}

QStringList lightDifferences(const QWidget *page, const FlashDataMap &held)
{
    Comparison light(page);
    light.choice("LightMod", held.LightOn != 0 ? held.LightMode : 0);
    light.slider("horizontalLight", held.LightBrightness + 1);
    light.slider("horizontalSpeed", held.LightSpeed + 1);
    light.number("LightSpinBox_2", held.LightBrightness + 1);
    light.number("SpeedSpinBox_2", held.LightSpeed + 1);
    light.number("RSpinBox", held.LightRed);
    light.number("GSpinBox", held.LightGreen);
    light.number("BSpinBox", held.LightBlue);
    light.colour("labelPreView", held.LightRed, held.LightGreen, held.LightBlue);
    light.button("RippeControl", held.LightRippeControl != 0);
    light.choice("StopClose", indexIn(idleTimes, held.StopCloseTime));
    return light.differences;
}

/** What the button page calls a function, in English; of those that a test assigns. */
QString functionText(const FlashDataMap &held, int slot)
{
    const KeyFunction &function = held.KeyFunctions[slot];
    static const QHash<int, QString> texts = {
        {0x0000, "Unassigned"},  {0x0101, "Left button"},    {0x0102, "Right button"}, {0x0104, "Middle button"},
        {0x0108, "Back button"}, {0x0110, "Forward button"}, {0x0201, "DPI cycle"}};
    switch (function.KeyType) {
    case 5:
        return held.KeySequences[slot].Events[0].Code == 0xB7 ? "Stop playback" : "Mute";
    case 6:
        return "Macro: " + QString::fromUtf8(held.MacroSlots[slot].Name, 30).remove(QChar(QChar::Null));
    case 10:
        return QStringLiteral("DPI lock-%1").arg(dpiOnTheMouse(QStringLiteral("3395"), function.KeyParam1, 0));
    default:
        return texts.value(function.KeyType * 0x100 + function.KeyParam1, "?");
    }
}

QStringList buttonDifferences(const QWidget *page, const FlashDataMap &held)
{
    Comparison buttons(page);
    buttons.choice("Debunce", held.DebounceTime);
    if (UserSettings::instance()->language() != 0)
        return buttons.differences; // the words below are English
    constexpr std::array<std::pair<const char *, int>, 6> rows = {
        {{"FireKey", 0}, {"RightKey", 1}, {"BackKey", 2}, {"StartPause", 4}, {"TopMusic", 3}, {"BackMusic", 5}}};
    for (const auto &[row, slot] : rows) {
        const QString shown = buttons.find<QAbstractButton>(row)->text();
        const QString wanted = functionText(held, slot);
        if (shown != wanted)
            buttons.differences << QStringLiteral("%1 says %2, the mouse has %3").arg(row, shown, wanted);
    }
    return buttons.differences;
}

} // namespace

QStringList screenDifferences(const QWidget *window, const FlashDataMap &held, bool isCorded)
{
    const auto *const sensor = window->findChild<QWidget *>(QStringLiteral("SenSorPage"));
    const auto *const light = window->findChild<QWidget *>(QStringLiteral("LampLight"));
    if (!sensor || !light)
        qFatal("a page is missing");
    // Tests of the other pages go without it.
    const auto *const buttons = window->findChild<QWidget *>(QStringLiteral("ButtonPage"));
    return sensorDifferences(sensor, held, isCorded) + lightDifferences(light, held) +
           (buttons ? buttonDifferences(buttons, held) : QStringList());
}
