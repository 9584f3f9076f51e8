#pragma once

#include "ui/ConfirmPrompt.h"

class QLineEdit;

/** Asks for the name of a macro. */
class QuestionDialog : public ConfirmPrompt
{
    Q_OBJECT
public:
    /** Bytes that a name may have in the local 8-bit form: what the mouse keeps of it, less the closing NUL. */
    static constexpr int maximumNameBytes = 30;

    QuestionDialog();

    /** The name that was confirmed; empty after every other way out. */
    QString name() const { return confirmed() ? enteredName : QString(); }

public Q_SLOTS:
    void on_NewHong_clicked() override;
    void on_CloseButton_clicked() override { WindowClosedLan(); }
    void on_lineEdit_textEdited(const QString &text);
    /** Refuses. */
    void WindowClosedLan();

private:
    QLineEdit *lineEdit;
    QString enteredName;
};
