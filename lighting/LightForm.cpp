#include "lighting/LightForm.h"

#include "lighting/LightStage.h"
#include "lighting/LightTables.h"
#include "sensor/StopCloseTime.h"
#include "ui/ComboStyle.h"
#include "ui/FormParts.h"
#include "ui/MyConmboBox.h"
#include "ui/NumberBox.h"

#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>

namespace {

// Places are pixels of the page, on a grid of 8. Left of 424 stands what every effect shares, right of it the colour.

struct LabelPlace
{
    QLabel *LightForm::*member = nullptr;
    const char *name = "";
    const char *text = "";
    QRect place;
    bool inColourPanel = false;
};

constexpr LabelPlace labels[] = {
    {&LightForm::label_9, "label_9", "", {40, 48, 16, 24}, false},
    {&LightForm::label, "label", "灯光模式", {60, 40, 180, 40}, false},
    {&LightForm::label_2, "label_2", "亮度", {48, 152, 296, 24}, false},
    {&LightForm::label_3, "label_3", "速度", {48, 264, 296, 24}, false},
    {&LightForm::label_4, "label_4", "移动时关灯", {48, 424, 288, 32}, false},
    {&LightForm::label_5, "label_5", "静止关灯时间", {48, 504, 214, 40}, false},
    {&LightForm::label_6, "label_6", "自定义颜色", {448, 340, 308, 24}, true},
    {&LightForm::label_7, "label_7", "", {448, 372, 308, 34}, true},
    {&LightForm::label_8, "label_8", "预览", {764, 340, 80, 24}, true},
    {&LightForm::labelPreView, "labelPreView", "", {774, 372, 60, 60}, true},
    {&LightForm::label_11, "label_11", "R:", {448, 416, 16, 24}, true},
    {&LightForm::label_10, "label_10", "G:", {554, 416, 16, 24}, true},
    {&LightForm::label_12, "label_12", "B:", {660, 416, 16, 24}, true},
    {&LightForm::label_13, "label_13", "预设颜色", {448, 464, 308, 24}, true},
};

struct LevelPlace
{
    SliderWithNumber LightForm::*level;
    const char *sliderName;
    const char *numberName;
    const char *lineName;
    int top;
};

constexpr LevelPlace levels[] = {
    {&LightForm::brightness, "horizontalLight", "LightSpinBox_2", "line", 152},
    {&LightForm::speed, "horizontalSpeed", "SpeedSpinBox_2", "line_2", 264},
};

struct ChannelPlace
{
    QSpinBox *LightForm::*value;
    const char *valueName;
    QToolButton *LightForm::*reduce;
    const char *reduceName;
    QToolButton *LightForm::*add;
    const char *addName;
    int left;
};

constexpr ChannelPlace channels[] = {
    {&LightForm::RSpinBox, "RSpinBox", &LightForm::ReduceR, "ReduceR", &LightForm::AddR, "AddR", 464},
    {&LightForm::GSpinBox, "GSpinBox", &LightForm::ReduceG, "ReduceG", &LightForm::AddG, "AddG", 570},
    {&LightForm::BSpinBox, "BSpinBox", &LightForm::ReduceB, "ReduceB", &LightForm::AddB, "AddB", 676},
};
constexpr int channelTop = 416;

constexpr QRect effectPlace(248, 45, 152, 30);
constexpr QRect switchPlace(360, 430, 40, 20);
constexpr QRect idlePlace(270, 509, 130, 30);
constexpr QRect stageWithColour(448, 40, 386, 276);
constexpr QRect stageAlone(448, 40, 386, 528);

/** Hairlines between the groups on the left. */
constexpr QRect rules[] = {{48, 116, 352, 1}, {48, 384, 352, 1}};

constexpr QPoint firstPreset(446, 500);
constexpr int presetSize = 28;
constexpr QPoint presetPitch(47, 40);
constexpr int presetsInRow = 7;

QToolButton *addButton(QWidget *page, const char *name, const QRect &place)
{
    auto *button = addPlaced<QToolButton>(page, name, place);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

void LightForm::build(QWidget *page)
{
    stage = addPlaced<LightStage>(page, "stage", stageWithColour);
    for (const QRect &rule : rules)
        addPlaced<QFrame>(page, "rule", rule);
    buildLabels(page);
    LightMod = addPlaced<MyConmboBox>(page, "LightMod", effectPlace);
    styleCombo(LightMod, "Light");
    for (const LightTables::Effect &effect : LightTables::effects)
        LightMod->addItem(QString::fromUtf8(effect.defaultText));
    buildLevels(page);
    RippeControl = addButton(page, "RippeControl", switchPlace);
    RippeControl->setCheckable(true);
    frameClose = addPlaced<StopCloseTime>(page, "frameClose", idlePlace);
    buildColour(page);
    buildPresets(page);
}

void LightForm::buildLabels(QWidget *page)
{
    for (const LabelPlace &entry : labels) {
        auto *made = addPlaced<QLabel>(page, entry.name, entry.place);
        made->setText(QString::fromUtf8(entry.text));
        this->*entry.member = made;
        if (entry.inColourPanel)
            colourPanel += made;
    }
    label_8->setAlignment(Qt::AlignCenter);
}

void LightForm::buildLevels(QWidget *page)
{
    for (const LevelPlace &entry : levels) {
        const SliderWithNumber level(page, "Light", entry.sliderName, entry.numberName, entry.lineName);
        level.place({48, entry.top + 32, 352, 24}, {352, entry.top, 48, 24}, 352);
        level.setMaximum(LightTables::highestLevel);
        level.slider->setFocusPolicy(Qt::NoFocus);
        level.number->setFocusPolicy(Qt::ClickFocus);
        this->*entry.level = level;
    }
}

void LightForm::buildColour(QWidget *page)
{
    for (const ChannelPlace &entry : channels) {
        auto *reduce = addButton(page, entry.reduceName, {entry.left, channelTop + 2, 20, 20});
        auto *value = addPlaced<NumberBox>(page, entry.valueName, {entry.left + 23, channelTop, 34, 24});
        styleNumberBox(value);
        value->setFocusPolicy(Qt::ClickFocus);
        value->setRange(0, 255);
        auto *increase = addButton(page, entry.addName, {entry.left + 60, channelTop + 2, 20, 20});
        this->*entry.reduce = reduce;
        this->*entry.value = value;
        this->*entry.add = increase;
        colourPanel << reduce << value << increase;
    }
}

void LightForm::buildPresets(QWidget *page)
{
    for (int number = 0; number < int(presets.size()); ++number) {
        const QByteArray name = QByteArray("toolButtonColor") + char('A' + number);
        const QPoint at(number % presetsInRow * presetPitch.x(), number / presetsInRow * presetPitch.y());
        presets[std::size_t(number)] =
            addButton(page, name.constData(), {firstPreset + at, QSize(presetSize, presetSize)});
        colourPanel += presets[std::size_t(number)];
    }
}

void LightForm::showEffect(int index)
{
    if (index < 0 || index >= int(LightTables::effects.size()))
        return;
    const LightTables::Effect &effect = LightTables::effects[std::size_t(index)];
    brightness.setOffered(effect.hasBrightness);
    speed.setOffered(effect.hasSpeed);
    for (QWidget *widget : qAsConst(colourPanel))
        widget->setVisible(effect.hasColour);
    stage->setGeometry(effect.hasColour ? stageWithColour : stageAlone);
}
