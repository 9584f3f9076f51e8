#include "ui/QuestionDialog.h"

#include "productdata/FileName.h"
#include "productdata/Theme.h"

#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr PromptDescription description{
    "Question",
    "Question",
    "Please create a macro first",
    {{"NewHong", "确认", PromptPlace::left}, {"NewHong_2", "取消", PromptPlace::right}},
    {0, 26, 301, 36}};

constexpr QRect lineEditPlace{50, 66, 200, 28};

bool fits(const QString &text) { return text.toLocal8Bit().size() <= QuestionDialog::maximumNameBytes; }

/** A text without what no file name can hold: the macro's file has its name. */
QString withoutForbidden(QString text)
{
    const auto isForbidden = [](QChar character) { return !FileName::isCharacter(character); };
    text.truncate(int(std::remove_if(text.begin(), text.end(), isForbidden) - text.begin()));
    return text;
}

/** What of an edited text may stand as a name. */
QString allowed(QString text)
{
    text = withoutForbidden(text);
    if (text.endsWith(QLatin1Char(' ')))
        text.remove(QLatin1Char(' '));
    // A character has at least one byte, so no longer text can fit; this bounds the loop for a pasted novel.
    text.truncate(QuestionDialog::maximumNameBytes + 1);
    while (!fits(text))
        text.chop(1);
    // Half a character beyond the basic plane would show as a box and be stored as a question mark.
    if (!text.isEmpty() && text.at(text.size() - 1).isHighSurrogate())
        text.chop(1);
    return text;
}

} // namespace

QuestionDialog::QuestionDialog() : ConfirmPrompt(description), lineEdit(new QLineEdit(frame()))
{
    lineEdit->setObjectName(QStringLiteral("lineEdit"));
    lineEdit->setGeometry(lineEditPlace);
    lineEdit->setFont(label()->font());
    lineEdit->setStyleSheet(Theme::lineEdit() + Theme::focusFrame(QStringLiteral("QLineEdit")));
    lineEdit->setFocus();
    connect(lineEdit, &QLineEdit::textEdited, this, &QuestionDialog::on_lineEdit_textEdited);
    connect(button("NewHong_2"), &QToolButton::clicked, this, &QuestionDialog::WindowClosedLan);
    setTabOrder(lineEdit, button("NewHong"));
}

void QuestionDialog::on_lineEdit_textEdited(const QString &text)
{
    const QString name = allowed(text);
    if (name == text)
        return;
    // Setting a text moves the cursor to its end, where the next letter of an edit in the middle doesn't belong.
    const QString before = withoutForbidden(text.left(lineEdit->cursorPosition()));
    int cursor = before.size();
    if (!name.contains(QLatin1Char(' ')))
        cursor -= before.count(QLatin1Char(' '));
    lineEdit->setText(name);
    lineEdit->setCursorPosition(cursor);
}

void QuestionDialog::on_NewHong_clicked()
{
    enteredName = lineEdit->text();
    accept();
}

void QuestionDialog::WindowClosedLan()
{
    enteredName.clear();
    reject();
}
