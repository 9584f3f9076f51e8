#include "support/Controls.h"

#include "support/Child.h"
#include "support/SensorModel.h"

#include <QAbstractSlider>
#include <QColor>
#include <QComboBox>
#include <QTest>

#include <utility>

namespace {

using Window = const QWidget *;
using Field = std::uint8_t FlashDataMap::*;

const char *const sensor = "SenSorPage";
const char *const light = "LampLight";

template<typename Widget = QWidget>
Widget *in(Window window, const QString &page, const QString &name)
{
    return childOf<Widget>(childOf(window, page), name);
}

/** One of two values that the record can hold, and where it is set: an item of a list or a position of a slider. */
struct Value
{
    int held;
    int place;
};

using Reach = void (*)(Window, const QString &page, const QString &widget, int place);

template<Reach reach>
Control::Change between(const char *page, const char *widget, Field field, Value one, Value other)
{
    return [=](Window window, FlashDataMap held) {
        const Value &next = held.*field == one.held ? other : one;
        reach(window, page, widget, next.place);
        held.*field = std::uint8_t(next.held);
        return held;
    };
}
constexpr auto ofList = between<Hand::choose>;
constexpr auto ofSlider = between<Hand::slide>;

Control::Change ofSwitch(const char *page, const char *button, Field field)
{
    return [=](Window window, FlashDataMap held) {
        Hand::press(window, page, button);
        held.*field ^= 1;
        return held;
    };
}

/** Two buttons that set two values. */
Control::Change ofButtons(const char *one, int oneValue, const char *other, int otherValue, Field field)
{
    return [=](Window window, FlashDataMap held) {
        const bool isOne = held.*field == oneValue;
        Hand::press(window, sensor, isOne ? other : one);
        held.*field = std::uint8_t(isOne ? otherValue : oneValue);
        return held;
    };
}

int dpiOf(const DpiLevel &level) { return dpiOnTheMouse("3395", level.CodeX, level.Flags); }

void setDpi(DpiLevel &level, int dpi)
{
    const int counts = dpi / 50 - 1;
    level.CodeX = level.CodeY = std::uint8_t(counts);
    level.Flags = std::uint8_t(counts / 256 * 0x44); // the high bits, of both axes
}

FlashDataMap stepDpi(Window window, FlashDataMap held)
{
    DpiLevel &level = held.DpiLevels[held.DpiCurrentLevel];
    const bool isUp = dpiOf(level) % 100 == 0; // and down again
    Hand::press(window, sensor, isUp ? "AddLevelA" : "ReduceLevelA");
    setDpi(level, dpiOf(level) + (isUp ? 50 : -50));
    return held;
}

FlashDataMap slideDpi(Window window, FlashDataMap held)
{
    DpiLevel &level = held.DpiLevels[held.DpiCurrentLevel];
    const int dpi = dpiOf(level) == 700 ? 9650 : 700;
    Hand::slide(window, sensor, "horizontalSliderC", dpi);
    setDpi(level, dpi);
    return held;
}

FlashDataMap chooseCount(Window window, FlashDataMap held, int count)
{
    Hand::choose(window, sensor, "ChooseEvent", count - 1);
    held.DpiLevelCount = std::uint8_t(count);
    if (held.DpiCurrentLevel >= count) {
        std::swap(held.DpiLevels[held.DpiCurrentLevel], held.DpiLevels[count - 1]);
        held.DpiCurrentLevel = std::uint8_t(count - 1);
    }
    return held;
}

FlashDataMap colourLevel(Window window, FlashDataMap held)
{
    DpiLevel &level = held.DpiLevels[held.DpiCurrentLevel];
    level.Red ^= 0x55;
    level.Green = 20;
    level.Blue = 30;
    QMetaObject::invokeMethod(in(window, sensor, "frameDpi"), "SetColor",
                              Q_ARG(QColor, QColor(level.Red, level.Green, level.Blue)));
    return held;
}

FlashDataMap colourLight(Window window, FlashDataMap held)
{
    const bool isCyan = held.LightBlue == 255;
    Hand::press(window, light, isCyan ? "toolButtonColorA" : "toolButtonColorB");
    held.LightRed = isCyan ? 255 : 0;
    held.LightGreen = held.LightBlue = isCyan ? 0 : 255;
    return held;
}

} // namespace

void Hand::choose(Window window, const QString &page, const QString &list, int index)
{
    auto *const box = in<QComboBox>(window, page, list);
    box->setCurrentIndex(index);
    Q_EMIT box->activated(index);
}

void Hand::press(Window window, const QString &page, const QString &button)
{
    QTest::mouseClick(in(window, page, button), Qt::LeftButton);
}

void Hand::slide(Window window, const QString &page, const QString &slider, int value)
{
    in<QAbstractSlider>(window, page, slider)->setValue(value);
}

const std::vector<Control> &controls()
{
    using Held = FlashDataMap;
    const char *const onSensor = "SensorButton";
    const char *const onLights = "LightsButton";
    static const std::vector<Control> all = {
        {onSensor, "rate", ofButtons("Button500HZ", 2, "Button250HZ", 4, &Held::ReportRate)},
        {onSensor, "lift-off", ofList(sensor, "LOD", &Held::Lod, {1, 0}, {2, 1})},
        {onSensor, "sensor mode", ofList(sensor, "ModelChoose", &Held::SensorMode, {0, 0}, {1, 1})},
        {onSensor, "performance", ofSwitch(sensor, "Performance", &Held::Performance)},
        {onSensor, "performance time", ofList(sensor, "PerformanceOpen", &Held::PerformanceTime, {30, 2}, {120, 5})},
        {onSensor, "ripple", ofSwitch(sensor, "RippeControl_2", &Held::RippeControl)},
        {onSensor, "straight line", ofSwitch(sensor, "StraightLine_2", &Held::StraightLine)},
        {onSensor, "motion sync", ofSwitch(sensor, "MotionSync_2", &Held::MotionSync)},
        {onSensor, "level", ofButtons("BrightRedButton", 1, "RedButton", 2, &Held::DpiCurrentLevel)},
        {onSensor, "DPI step", stepDpi},
        {onSensor, "DPI slider", slideDpi},
        {onSensor, "level count",
         [](Window window, Held held) { return chooseCount(window, held, held.DpiLevelCount == 8 ? 7 : 8); }},
        {onSensor, "level count below the level",
         [](Window window, Held held) {
             return chooseCount(window, held, held.DpiCurrentLevel > 0 ? held.DpiCurrentLevel : 4);
         }},
        {onSensor, "level colour", colourLevel},
        {onLights, "effect", ofList(light, "LightMod", &Held::LightMode, {2, 2}, {3, 3})},
        {onLights, "brightness", ofSlider(light, "horizontalLight", &Held::LightBrightness, {4, 5}, {7, 8})},
        {onLights, "speed", ofSlider(light, "horizontalSpeed", &Held::LightSpeed, {4, 5}, {7, 8})},
        {onLights, "ripple light", ofSwitch(light, "RippeControl", &Held::LightRippeControl)},
        {onLights, "preset colour", colourLight},
        {onLights, "idle time", ofList(light, "StopClose", &Held::StopCloseTime, {30, 3}, {60, 4})},
    };
    return all;
}
