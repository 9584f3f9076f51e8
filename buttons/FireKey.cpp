#include "buttons/FireKey.h"

#include "productdata/LanguageFile.h"
#include "productdata/Theme.h"
#include "productdata/UserSettings.h"
#include "ui/FormParts.h"
#include "ui/NumberBox.h"
#include "ui/WordLabel.h"

#include <QFrame>
#include <QLabel>
#include <QSpinBox>
#include <QToolButton>

namespace {

constexpr QSize size(406, 170);
/** The text of the base class keeps 14 px from the sides of its place. */
constexpr QRect countLabel(14, 62, 258, 28);
constexpr QRect intervalLabel(28, 28, 230, 28);
constexpr QRect hintLabel(28, 94, 350, 34);
constexpr QRect intervalPlace(274, 28, 104, 28);
constexpr QRect countPlace(274, 62, 104, 28);
constexpr QPoint closePlace(381, 5);
/** Points of the labels; a text too long for its place gets smaller when the language is read. */
constexpr int points = 10;

constexpr PromptDescription description{
    "FireKeyA",          "FireKey",
    "次数 (0-3)",        {{"NewHong", "确认", {98, 136, 90, 24}}, {"NewHong_2", "取消", {218, 136, 90, 24}}},
    countLabel,          size,
    "BackGroundWide.png"};

QLabel *addLabel(QFrame *frame, const char *name, const char *text, const QRect &place)
{
    auto *label = addPlaced<WordLabel>(frame, name, place);
    label->setText(QString::fromUtf8(text));
    label->setFont(QFont(QStringLiteral("微软雅黑"), points));
    label->setStyleSheet(Theme::label());
    return label;
}

} // namespace

FireKey::FireKey()
    : ConfirmPrompt(description), Time(addNumber("Time", intervalPlace, 10, 255, Interval)),
      Count(addNumber("Count", countPlace, 0, 3, Repeats))
{
    // The base class puts one text in the middle; here each stands before its number.
    label()->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label()->setWordWrap(false);
    addLabel(frame(), "label_2", "间隔 (10-255)", intervalLabel);
    addLabel(frame(), "label_3", "次数设置为0时, 按下按键一直发, 松开按键结束", hintLabel)->setWordWrap(true);
    findChild<QToolButton *>(QStringLiteral("CloseButton"))->move(closePlace);
    Time->setSuffix(QStringLiteral(" ms"));
    Time->setFocus();
    Time->selectAll();
    connect(button("NewHong_2"), &QToolButton::clicked, this, &FireKey::on_NewHong_2_clicked);
    setTabOrder(Time, Count);
    setTabOrder(Count, button("NewHong"));
    loadLanguage();
    // The page has the unit for its debounce times, in the words of the language.
    LanguageFile::readSection(UserSettings::instance()->language(), QStringLiteral("Buttoninterface"),
                              [this](const QString &element, const QString &text) {
                                  if (element == QLatin1String("S1"))
                                      Time->setSuffix(QLatin1Char(' ') + text);
                              });
}

QSpinBox *FireKey::addNumber(const char *name, const QRect &place, int minimum, int maximum, int value)
{
    auto *number = addPlaced<NumberBox>(frame(), name, place);
    number->setFont(label()->font());
    number->setStyleSheet(Theme::spinBox() + Theme::focusFrame(QStringLiteral("QSpinBox")));
    number->setButtonSymbols(QAbstractSpinBox::NoButtons);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    number->setRange(minimum, maximum);
    number->setValue(value);
    return number;
}

void FireKey::setTime(int milliseconds) { Time->setValue(milliseconds); }

void FireKey::setCount(int count) { Count->setValue(count); }

void FireKey::on_NewHong_clicked()
{
    Time->interpretText();
    Count->interpretText();
    Interval = Time->value();
    Repeats = Count->value();
    accept();
}
