#include "macro/addKey.h"

#include "macro/KeyTable.h"
#include "productdata/Theme.h"
#include "ui/MyLineEdit.h"

#include <QDebug>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

namespace {

constexpr PromptDescription description{
    "addKeyA",
    "AddKey",
    "Please enter a button",
    {{"NewHong", "确定", PromptPlace::left}, {"NewHong_2", "取消", PromptPlace::right}},
    {0, 26, 301, 36}};

constexpr QRect lineEditPlace{50, 66, 200, 28};

} // namespace

addKey::addKey() : ConfirmPrompt(description), lineEdit(new MyLineEdit(frame()))
{
    lineEdit->setObjectName(QStringLiteral("lineEdit"));
    lineEdit->setGeometry(lineEditPlace);
    lineEdit->setFont(label()->font());
    lineEdit->setAlignment(Qt::AlignCenter);
    lineEdit->setAttribute(Qt::WA_InputMethodEnabled, false);
    lineEdit->setStyleSheet(Theme::lineEdit() + Theme::focusFrame(QStringLiteral("QLineEdit")));
    for (QToolButton *each : findChildren<QToolButton *>())
        each->setFocusPolicy(Qt::NoFocus); // Space and Enter are answers, not clicks
    lineEdit->setFocus();
    connect(button("NewHong_2"), &QToolButton::clicked, this, &addKey::on_NewHong_2_clicked);
    const bool isInstalled = hook.install(
        [this](unsigned virtualKey, bool down, bool repeat) { UpdateCapslockTip(int(virtualKey), down, repeat); },
        platform::SystemKeys::Untold);
    if (!isInstalled)
        qWarning() << "the system gave no keyboard hook: no key can be entered";
}

void addKey::UpdateCapslockTip(int virtualKey, bool, bool)
{
    const MacroKey *key = KeyTable::findVirtualKey(virtualKey);
    KeyText = key ? KeyTable::name(*key) : QString();
    lineEdit->setText(KeyText);
}

void addKey::on_NewHong_clicked()
{
    Confirmed = true;
    hook.remove();
    accept();
}

void addKey::on_NewHong_2_clicked()
{
    Confirmed = false;
    hook.remove();
    reject();
}

void addKey::keyPressEvent(QKeyEvent *event)
{
    // Not the prompt's, for which Return confirms and Escape cancels.
    event->accept();
}
