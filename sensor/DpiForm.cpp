#include "sensor/DpiForm.h"

#include "productdata/ConfigStore.h"
#include "productdata/Theme.h"
#include "sensor/MarkerDrag.h"
#include "ui/ChangeSheet.h"
#include "ui/ComboStyle.h"
#include "ui/LateStyle.h"
#include "ui/MyConmboBox.h"
#include "ui/MySlider.h"
#include "ui/NumberBox.h"
#include "ui/PageFont.h"
#include "ui/RgbText.h"

#include <QButtonGroup>
#include <QColor>
#include <QLabel>
#include <QSpinBox>
#include <QToolButton>

namespace {

struct Level
{
    const char *cardName; ///< the bar's is the same with an A behind it
    const char *colour;   ///< until a model says otherwise
};

/** The names are those of the first colours and stay whatever colour the user picks. */
constexpr std::array<Level, DpiForm::levelCount> levels = {{
    {"BlueButton", "255,0,0"},
    {"BrightRedButton", "0,0,255"},
    {"RedButton", "0,255,0"},
    {"YellowButton", "255,255,0"},
    {"GreenButton", "0,255,255"},
    {"PurpleButton", "255,0,255"},
    {"LightBlueButton", "159,0,0"},
    {"LightYellowButton", "0,212,252"},
}};

constexpr int levelDistance = 91;

QRect cardAtRest(int level) { return {15 + levelDistance * level, 99, 54, 56}; }
QRect cardSelected(int level) { return {15 + levelDistance * level - 7, 99 - 7, 68, 70}; }
QRect barAtRest(int level) { return {17 + levelDistance * level, 141, 50, 12}; }
QRect barSelected(int level) { return {17 + levelDistance * level - 8, 141 + 6, 66, 14}; }

/** Room under the number for the bar that lies over the card. */
constexpr int barRoom = 14;

QString cardStyle(const QString &folder)
{
    return QStringLiteral("QToolButton{border:0px;padding-bottom:%4px;color: rgb(%1);background-position:center;"
                          "background-repeat:no-repeat;background-image: url(%2MinA.png);}"
                          "QToolButton:hover{color: rgb(%3);}"
                          "QToolButton:focus{text-decoration: underline;}"
                          "QToolButton:checked{background-image: url(%2MaxA.png);}")
        .arg(Theme::rgb(Theme::Colour::ButtonColor), folder, Theme::rgb(Theme::Colour::SliderColor))
        .arg(barRoom);
}

int firstChecked(const std::array<QToolButton *, DpiForm::levelCount> &buttons)
{
    for (int level = 0; level < DpiForm::levelCount; ++level) {
        if (buttons[static_cast<std::size_t>(level)]->isChecked())
            return level;
    }
    return -1;
}

} // namespace

DpiForm::DpiForm(QWidget *editor)
    : folder(Theme::pictureFolder("Sensor")), label(new QLabel(editor)), ChooseEvent(new MyConmboBox(editor)),
      horizontalSliderC(new MySlider(editor)), spinBoxA(new NumberBox(editor)), ReduceLevelA(new QToolButton(editor)),
      AddLevelA(new QToolButton(editor)), levelGroup(new QButtonGroup(editor)), barGroup(new QButtonGroup(editor)),
      label_8(nullptr)
{
    makeHead();
    makeValueControls();
    makeLevels(editor);
    makeMarker(editor);
}

void DpiForm::makeHead()
{
    label->setObjectName(QStringLiteral("label"));
    label->setGeometry(0, 0, 91, 21);
    label->setStyleSheet(Theme::label());
    label->setFont(PageFont::font());

    ChooseEvent->setObjectName(QStringLiteral("ChooseEvent"));
    ChooseEvent->setGeometry(98, 1, 81, 21);
    styleCombo(ChooseEvent, "Sensor");
    ChooseEvent->setFont(PageFont::small());
}

void DpiForm::makeValueControls()
{
    horizontalSliderC->setObjectName(QStringLiteral("horizontalSliderC"));
    horizontalSliderC->setGeometry(18, 56, 561, 20);
    horizontalSliderC->setOrientation(Qt::Horizontal);
    horizontalSliderC->setTracking(false);
    horizontalSliderC->setRange(50, 10000);
    horizontalSliderC->setSingleStep(50);
    horizontalSliderC->setPageStep(50);
    new LateStyle(horizontalSliderC, Theme::slider(folder));

    spinBoxA->setObjectName(QStringLiteral("spinBoxA"));
    spinBoxA->setGeometry(618, 56, 66, 20);
    spinBoxA->setRange(50, 100000);
    styleNumberDisplay(spinBoxA);
    spinBoxA->setFont(PageFont::small());

    const auto stepButton = [this](QToolButton *button, const char *name, const QString &picture, const QRect &place) {
        button->setObjectName(QLatin1String(name));
        button->setGeometry(place);
        new LateStyle(button,
                      Theme::toolButton(folder, picture + ".png", picture + "Hover.png", picture + "Click.png") +
                          Theme::toolButtonFocus(folder, picture + "Hover.png"));
    };
    stepButton(ReduceLevelA, "ReduceLevelA", QStringLiteral("Reduce"), {598, 64, 14, 4});
    stepButton(AddLevelA, "AddLevelA", QStringLiteral("Add"), {691, 59, 14, 14});
}

void DpiForm::makeLevels(QWidget *editor)
{
    const auto make = [editor](const QString &name, QButtonGroup *group, int level) {
        auto *const button = new QToolButton(editor);
        button->setObjectName(name);
        button->setCheckable(true);
        group->addButton(button, level);
        return button;
    };
    for (int level = 0; level < levelCount; ++level) {
        const Level &entry = levels[static_cast<std::size_t>(level)];
        const QString name = QLatin1String(entry.cardName);
        QToolButton *const button = make(name, levelGroup, level);
        cards[static_cast<std::size_t>(level)] = button;
        bars[static_cast<std::size_t>(level)] = make(name + QLatin1Char('A'), barGroup, level);
        button->setFont(PageFont::font());
        new LateStyle(button, cardStyle(folder));
        showCard(level, false);
        bar(level)->setGeometry(barAtRest(level));
        setColour(level, QLatin1String(entry.colour));
    }
}

void DpiForm::makeMarker(QWidget *editor)
{
    label_8 = new QLabel(editor);
    label_8->setObjectName(QStringLiteral("label_8"));
    label_8->setGeometry(QRect(QPoint(103, 154), MarkerDrag::markerSize));
    label_8->setCursor(Qt::SizeHorCursor);
    // Its place reaches over the foot of the bars, but its picture doesn't: a click there is for the colour.
    for (QToolButton *bar : bars)
        bar->raise();
    new LateStyle(label_8, QStringLiteral("#label_8{background: url(%1Level.png) no-repeat center;}"
                                          "#label_8:hover{background-image: url(%1LevelHover.png);}")
                               .arg(folder));
}

void DpiForm::showCard(int level, bool selected)
{
    card(level)->setGeometry(selected ? cardSelected(level) : cardAtRest(level));
}

void DpiForm::showBar(int level, bool selected)
{
    bar(level)->setGeometry(selected ? barSelected(level) : barAtRest(level));
    styleBar(level, selected);
}

void DpiForm::setColour(int level, const QString &rgb)
{
    colours[static_cast<std::size_t>(level)] = rgb;
    styleBar(level, bar(level)->isChecked());
}

void DpiForm::styleBar(int level, bool selected)
{
    changeSheet(bar(level),
                QStringLiteral(
                    "QToolButton{border:0px;border-radius:3px;background-position:center;background-repeat:no-repeat;"
                    "background-color:rgb(%1);background-image: url(%2%3);}"
                    "QToolButton:hover,QToolButton:focus{border:1px solid rgb(%4);}")
                    .arg(colour(level), folder, selected ? QStringLiteral("MaxB.png") : QStringLiteral("MinB.png"),
                         Theme::rgb(Theme::Colour::ComboxTextColor)));
}

void DpiForm::showActiveLook(int level)
{
    for (int each = 0; each < levelCount; ++each)
        showBar(each, each == level);
}

void DpiForm::showLevels(int lastLevel) const
{
    for (int level = 0; level < levelCount; ++level) {
        card(level)->setVisible(level <= lastLevel);
        bar(level)->setVisible(level <= lastLevel);
    }
}

void DpiForm::takeDefaults(const QString &section)
{
    const QList<int> parts = ConfigStore::instance()->numberList(section, QStringLiteral("DPIColor"));
    for (int level = 0; level < levelCount && level * 3 + 2 < parts.size(); ++level) {
        const QColor colour(parts.at(level * 3), parts.at(level * 3 + 1), parts.at(level * 3 + 2));
        if (colour.isValid())
            setColour(level, rgbText(colour));
    }
    const QList<int> values = ConfigStore::instance()->numberList(section, QStringLiteral("DPIGrade"));
    if (values.size() < levelCount)
        return;
    for (int level = 0; level < levelCount; ++level) {
        card(level)->setText(QString::number(values.at(level)));
        showBar(level, false);
    }
}

int DpiForm::checkedCard() const { return firstChecked(cards); }
int DpiForm::checkedBar() const { return firstChecked(bars); }
