#include "ui/AddDelayTime.h"

#include "productdata/Theme.h"
#include "ui/NumberBox.h"

#include <QFrame>
#include <QLabel>
#include <QSpinBox>
#include <QToolButton>

namespace {

constexpr PromptDescription description{
    "AddDelayTimeA",
    "AddDelayTime",
    "Please enter the delay time",
    {{"NewHong", "确定", PromptPlace::left}, {"NewHong_2", "取消", PromptPlace::right}},
    {0, 26, 301, 36}};

constexpr QRect spinBoxPlace{100, 66, 100, 28};
/** Milliseconds. */
constexpr int minimumDelay = 10;
constexpr int maximumDelay = 65535;

} // namespace

AddDelayTime::AddDelayTime() : ConfirmPrompt(description), spinBox(new NumberBox(frame()))
{
    spinBox->setObjectName(QStringLiteral("spinBox"));
    spinBox->setGeometry(spinBoxPlace);
    spinBox->setFont(label()->font());
    spinBox->setStyleSheet(Theme::spinBox() + Theme::focusFrame(QStringLiteral("QSpinBox")));
    spinBox->setButtonSymbols(QAbstractSpinBox::NoButtons);
    spinBox->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    spinBox->setRange(minimumDelay, maximumDelay);
    spinBox->setValue(minimumDelay);
    spinBox->setFocus();
    spinBox->selectAll();
    connect(button("NewHong_2"), &QToolButton::clicked, this, &AddDelayTime::on_NewHong_2_clicked);
    setTabOrder(spinBox, button("NewHong"));
}

int AddDelayTime::delay() const { return spinBox->value(); }

void AddDelayTime::on_NewHong_clicked()
{
    spinBox->interpretText();
    accept();
}

void AddDelayTime::on_NewHong_2_clicked() { reject(); }
