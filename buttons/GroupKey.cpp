#include "buttons/GroupKey.h"

#include "app/hub/Wait.h"
#include "buttons/KeySequences.h"
#include "macro/KeyTable.h"
#include "productdata/Theme.h"
#include "ui/GroupMaxThree.h"
#include "ui/MyLineEdit.h"

#include <QCheckBox>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

namespace {

constexpr PromptDescription description{
    "groupKeyA",
    "groupKey",
    "Please enter keystroke",
    {{"NewHong", "确定", {45, 110, 90, 24}}, {"NewHong_2", "取消", {165, 110, 90, 24}}},
    {20, 8, 250, 26}};

constexpr QRect linePlace(32, 40, 236, 28);
constexpr QRect firstBox(32, 76, 62, 24);
constexpr int boxPitch = 62;
constexpr int boxPoints = 9;

struct Box
{
    const char *name; ///< of the widget, and in the text of the combination
    const char *text;
};
constexpr std::array<Box, 4> boxTexts = {{{"Shift", "shift"}, {"Ctrl", "Ctrl"}, {"Alt", "Alt"}, {"Win", "Win"}}};

/** A pause as long as this begins a new entry, in ms. */
constexpr int pauseTime = 2000;

constexpr QLatin1Char separator('+');

/** The name of a key, empty for modifiers too: they are chosen by the boxes, which know no side. */
QString nameOf(int virtualKey)
{
    const MacroKey *const key = KeyTable::findVirtualKey(virtualKey);
    return key && key->kind == KeyKind::keyboard ? KeyTable::name(*key) : QString();
}

int separatorsIn(const QString &text) { return KeySequences::keyNames(text).size() - 1; }

} // namespace

GroupKey::GroupKey() : ConfirmPrompt(description), lineEdit(new MyLineEdit(frame()))
{
    lineEdit->setObjectName(QStringLiteral("lineEdit"));
    lineEdit->setGeometry(linePlace);
    lineEdit->setFont(label()->font());
    lineEdit->setAlignment(Qt::AlignCenter);
    lineEdit->setStyleSheet(Theme::lineEdit() + Theme::focusFrame(QStringLiteral("QLineEdit")));
    const QString boxStyle = Theme::checkBox(Theme::pictureFolder("WarningDialog"));
    for (std::size_t index = 0; index < boxes.size(); ++index) {
        boxes[index] = new QCheckBox(QString::fromUtf8(boxTexts[index].text), frame());
        boxes[index]->setObjectName(QLatin1String(boxTexts[index].name));
        boxes[index]->setGeometry(firstBox.translated(int(index) * boxPitch, 0));
        boxes[index]->setFont(QFont(QStringLiteral("微软雅黑"), boxPoints));
        boxes[index]->setStyleSheet(boxStyle);
    }
    // Every key is an entry, so none may press a button or move the focus away.
    const QList<QWidget *> others = frame()->findChildren<QWidget *>();
    for (QWidget *other : others)
        other->setFocusPolicy(Qt::NoFocus);
    lineEdit->setFocusPolicy(Qt::StrongFocus);
    lineEdit->setFocus();
    connect(button("NewHong_2"), &QToolButton::clicked, this, &GroupKey::on_NewHong_2_clicked);
    connect(lineEdit, &QLineEdit::textEdited, this, &GroupKey::on_lineEdit_textEdited);
    hook.install([this](unsigned key, bool down, bool repeat) { UpdateCapslockTip(int(key), down, repeat); },
                 platform::SystemKeys::Untold);
}

/** Every way out comes through here. */
void GroupKey::done(int result)
{
    hook.remove();
    if (notice)
        notice->reject();
    ConfirmPrompt::done(result);
}

void GroupKey::UpdateCapslockTip(int virtualKey, bool down, bool)
{
    if (!down)
        return;
    if (FirstKey) {
        KeyClock.start();
        FirstKey = false;
    } else if (KeyClock.elapsed() > Wait::scaled(pauseTime)) {
        lineEdit->clear();
        LastKey = -1;
        KeyClock.restart();
    }
    if (virtualKey == LastKey)
        return;
    LastKey = virtualKey;
    const QString name = nameOf(virtualKey);
    const QString text = lineEdit->text();
    PlusCount = text.isEmpty() ? 0 : separatorsIn(text);
    if (PlusCount >= KeySequences::maximumKeys - 1) {
        PlusCount = 0;
        lineEdit->setText(name);
    } else if (!text.contains(name)) { // the empty name is in every text
        lineEdit->setText(text.isEmpty() ? name : text + separator + name);
        if (PlusCount == 1)
            LastKey = -1;
    }
}

QStringList GroupKey::modifiers() const
{
    QStringList names;
    for (const QCheckBox *box : boxes) {
        if (box->isChecked())
            names += box->objectName();
    }
    return names;
}

void GroupKey::on_NewHong_clicked()
{
    QStringList parts = modifiers();
    int count = parts.size();
    if (!lineEdit->text().isEmpty()) {
        count += separatorsIn(lineEdit->text()) + 1;
        parts += lineEdit->text();
    }
    if (count > KeySequences::maximumKeys) {
        GroupMaxThree prompt;
        notice = &prompt;
        prompt.centreOn(this);
        prompt.exec();
        startAnew(); // the key that answered the notice was heard as an entry too
        return;
    }
    KeyText = parts.join(separator);
    accept();
}

void GroupKey::startAnew()
{
    PlusCount = 0;
    LastKey = -1;
    lineEdit->clear();
}

void GroupKey::on_lineEdit_textEdited(const QString &text) { lineEdit->setText(text.toUpper()); }

void GroupKey::keyPressEvent(QKeyEvent *event)
{
    // Escape must not close the dialog in which it can be entered, and Return, too, is a key and no answer.
    const int key = event->key();
    if (key != Qt::Key_Escape && key != Qt::Key_F12 && key != Qt::Key_Return && key != Qt::Key_Enter)
        ConfirmPrompt::keyPressEvent(event);
}

bool GroupKey::focusNextPrevChild(bool) { return false; }
