#include "macro/MacroForm.h"

#include "macro/MacroTables.h"
#include "macro/MacroTimeLine.h"
#include "macro/RepeatCode.h"
#include "ui/ComboStyle.h"
#include "ui/FittedText.h"
#include "ui/FormParts.h"
#include "ui/MyConmboBox.h"
#include "ui/NumberBox.h"
#include "ui/PageFont.h"
#include "ui/WordLabel.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>

namespace {

// Places are pixels of the page, on a grid of 8: macros on the left, their rows in the middle, how they are recorded
// and played on the right, and the time line under both.

constexpr QRect macrosPlace(40, 64, 200, 472);
constexpr QRect rowsPlace(280, 64, 268, 320);
constexpr QRect timeLinePlace(280, 456, 562, 128);
constexpr QRect recordPlace(588, 32, 254, 32);
constexpr QRect choosePlace(712, 308, 130, 30);

struct LabelPlace
{
    QLabel *MacroForm::*member = nullptr;
    const char *name = "";
    QRect place;
};

constexpr LabelPlace labels[] = {
    {&MacroForm::label, "label", {40, 24, 200, 32}},
    {&MacroForm::label_2, "label_2", {280, 24, 268, 32}},
    {&MacroForm::label_3, "label_3", {588, 308, 116, 30}},
    {&MacroForm::AutoInsertDelayLabel, "AutoInsertDelayLabel", {610, 80, 232, 24}},
    {&MacroForm::ReUntilClickLabel, "ReUntilClickLabel", {610, 228, 232, 24}},
    {&MacroForm::ReUntilLabel, "ReUntilLabel", {610, 260, 232, 24}},
};

struct ButtonPlace
{
    QToolButton *MacroForm::*member = nullptr;
    const char *name = "";
    QRect place;
};

constexpr ButtonPlace buttons[] = {
    {&MacroForm::NewHong, "NewHong", {40, 552, 96, 24}}, {&MacroForm::DeleteHong, "DeleteHong", {144, 552, 96, 24}},
    {&MacroForm::Amend, "Amend", {280, 400, 96, 24}},    {&MacroForm::DeleteKey, "DeleteKey", {452, 400, 96, 24}},
    {&MacroForm::Save, "Save", {588, 392, 254, 32}},
};

struct BoxPlace
{
    QCheckBox *MacroForm::*member = nullptr;
    const char *name = "";
    QRect place;
};

/** As wide as the indicator where a label holds the text. */
constexpr BoxPlace delayBoxes[] = {
    {&MacroForm::AutoInsertDelay, "AutoInsertDelay", {588, 80, 18, 24}},
    {&MacroForm::DefaultDelay, "DefaultDelay", {588, 112, 166, 24}},
};
constexpr BoxPlace repeatBoxes[] = {
    {&MacroForm::ReNumber, "ReNumber", {588, 164, 166, 24}},
    {&MacroForm::ReUntilLoose, "ReUntilLoose", {588, 196, 254, 24}},
    {&MacroForm::ReUntilClick, "ReUntilClick", {588, 228, 18, 24}},
    {&MacroForm::ReUntil, "ReUntil", {588, 260, 18, 24}},
};
constexpr QRect delayTimePlace(762, 112, 80, 24);
constexpr QRect numberPlace(762, 164, 80, 24);

/** Hairlines between the groups on the right. */
constexpr QRect rules[] = {{588, 149, 254, 1}, {588, 297, 254, 1}, {588, 371, 254, 1}};

QSpinBox *addNumber(QWidget *page, const char *name, const QRect &place, int minimum, int maximum)
{
    auto *number = addPlaced<NumberBox>(page, name, place);
    number->setButtonSymbols(QAbstractSpinBox::NoButtons);
    number->setAlignment(Qt::AlignCenter);
    number->setFocusPolicy(Qt::ClickFocus);
    number->setRange(minimum, maximum);
    return number;
}

QListWidget *addList(QWidget *page, const char *name, const QRect &place)
{
    auto *list = addPlaced<QListWidget>(page, name, place);
    list->setUniformItemSizes(true);
    list->setTextElideMode(Qt::ElideRight);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    return list;
}

QButtonGroup *group(QWidget *page, std::initializer_list<QCheckBox *> boxes)
{
    auto *made = new QButtonGroup(page); // exclusive as it is
    for (QCheckBox *box : boxes)
        made->addButton(box);
    return made;
}

} // namespace

void MacroForm::build(QWidget *page)
{
    for (const QRect &rule : rules)
        addPlaced<QFrame>(page, "rule", rule);
    for (const LabelPlace &entry : labels)
        this->*entry.member = addPlaced<QLabel>(page, entry.name, entry.place);
    for (const ButtonPlace &entry : buttons) {
        this->*entry.member = addPlaced<QToolButton>(page, entry.name, entry.place);
        (this->*entry.member)->setFocusPolicy(Qt::NoFocus); // none that a recorded key could press
    }
    buildLists(page);
    buildRecording(page);
    buildRepeat(page);
    setDefaultTexts();
}

void MacroForm::buildLists(QWidget *page)
{
    listWidgetHong = addList(page, "listWidgetHong", macrosPlace);
    listWidgetHong->setContextMenuPolicy(Qt::CustomContextMenu);
    listWidgetKey = addList(page, "listWidgetKey", rowsPlace);
    hint = addPlaced<WordLabel>(listWidgetKey, "hint", QRect(QPoint(), rowsPlace.size()).adjusted(24, 24, -24, -24));
    hint->setWordWrap(true);
    hint->setAlignment(Qt::AlignCenter);
    hint->setAttribute(Qt::WA_TransparentForMouseEvents);
    hint->hide();
    timeLine = addPlaced<MacroTimeLine>(page, "timeLine", timeLinePlace);
    ChooseEvent = addPlaced<MyConmboBox>(page, "ChooseEvent", choosePlace);
    ChooseEvent->setFocusPolicy(Qt::NoFocus);
    styleCombo(ChooseEvent, "Macro");
    ChooseEvent->addItem(QString());
    for (const MacroTables::EventChoice &choice : MacroTables::eventChoices)
        ChooseEvent->addItem(QString::fromUtf8(choice.defaultText));
}

void MacroForm::buildRecording(QWidget *page)
{
    StartRecord = addPlaced<QPushButton>(page, "StartRecord", recordPlace);
    StopRecord = addPlaced<QPushButton>(page, "StopRecord", recordPlace);
    for (QPushButton *button : {StartRecord, StopRecord}) {
        button->setFocusPolicy(Qt::NoFocus);
        button->setAutoDefault(false);
    }
    StopRecord->hide();
    for (const BoxPlace &entry : delayBoxes) {
        this->*entry.member = addPlaced<QCheckBox>(page, entry.name, entry.place);
        (this->*entry.member)->setFocusPolicy(Qt::NoFocus);
    }
    group(page, {AutoInsertDelay, DefaultDelay});
    AutoInsertDelay->setChecked(true);
    DelayTime = addNumber(page, "DelayTime", delayTimePlace, MacroTables::leastFixedDelay, MacroTables::mostFixedDelay);
    DelayTime->setSuffix(QStringLiteral(" ms"));
}

void MacroForm::buildRepeat(QWidget *page)
{
    for (const BoxPlace &entry : repeatBoxes) {
        this->*entry.member = addPlaced<QCheckBox>(page, entry.name, entry.place);
        (this->*entry.member)->setFocusPolicy(Qt::NoFocus);
    }
    repeatGroup = group(page, {ReUntilLoose, ReUntilClick, ReNumber, ReUntil});
    ReNumber->setChecked(true);
    NumberEdit = addNumber(page, "NumberEdit", numberPlace, RepeatCode::once, RepeatCode::mostTimes);
}

void MacroForm::setDefaultTexts()
{
    for (const MacroTables::Text &text : MacroTables::texts)
        MacroTables::setText(*this, text, QString::fromUtf8(text.defaultText));
    for (int index = 0; index < int(MacroTables::eventChoices.size()); ++index)
        ChooseEvent->setItemText(index + 1,
                                 QString::fromUtf8(MacroTables::eventChoices[std::size_t(index)].defaultText));
}

int MacroForm::repeatCode() const
{
    if (ReUntilLoose->isChecked())
        return RepeatCode::untilReleased;
    if (ReUntilClick->isChecked())
        return RepeatCode::untilPressedAgain;
    if (ReUntil->isChecked())
        return RepeatCode::untilAnyButton;
    return NumberEdit->value();
}

void MacroForm::showRepeatCode(int code)
{
    const QSignalBlocker quietGroup(repeatGroup);
    const QSignalBlocker quietNumber(NumberEdit);
    switch (code) {
    case RepeatCode::untilReleased:
        ReUntilLoose->setChecked(true);
        break;
    case RepeatCode::untilPressedAgain:
        ReUntilClick->setChecked(true);
        break;
    case RepeatCode::untilAnyButton:
        ReUntil->setChecked(true);
        break;
    default:
        ReNumber->setChecked(true);
        NumberEdit->setValue(RepeatCode::normalised(code));
    }
}

QCheckBox *MacroForm::boxOf(const QWidget *textLabel) const
{
    return textLabel == AutoInsertDelayLabel ? AutoInsertDelay
           : textLabel == ReUntilClickLabel  ? ReUntilClick
           : textLabel == ReUntilLabel       ? ReUntil
                                             : nullptr;
}

void MacroForm::showHint(const QString &words)
{
    FittedText::set(hint, words, PageFont::points, 0);
    hint->setVisible(!words.isEmpty());
}

void MacroForm::showRecording(bool isRecording)
{
    StartRecord->setVisible(!isRecording);
    StopRecord->setVisible(isRecording);
    DelayTime->setVisible(!isRecording);
    NumberEdit->setVisible(!isRecording);
    listWidgetHong->setEnabled(!isRecording);
    ChooseEvent->setEnabled(!isRecording);
    listWidgetKey->setFocusPolicy(isRecording ? Qt::NoFocus : Qt::StrongFocus);
}
