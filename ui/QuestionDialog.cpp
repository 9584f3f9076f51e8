#include "ui/QuestionDialog.h"

#include "productdata/Theme.h"

#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace {

constexpr PromptDescription description{
    "Question",
    "Question",
    "Please create a macro first",
    {{"NewHong", "确认", PromptPlace::left}, {"NewHong_2", "取消", PromptPlace::right}},
    {0, 26, 301, 36}};

constexpr QRect lineEditPlace{50, 66, 200, 28};

bool fits(const QString &text) { return text.toLocal8Bit().size() <= QuestionDialog::maximumNameBytes; }

/** What of an edited text may stand as a name. */
QString allowed(QString text)
{
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
    int cursor = lineEdit->cursorPosition();
    if (!name.contains(QLatin1Char(' ')))
        cursor -= text.left(cursor).count(QLatin1Char(' '));
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
