#pragma once

#include "platform/KeyboardHook.h"
#include "ui/ConfirmPrompt.h"

class QLineEdit;

/**
 * Asks for one key of a macro. The key that was touched last counts, a release like a press; so every key is an answer,
 * and only the mouse confirms or cancels.
 */
class addKey : public ConfirmPrompt
{
    Q_OBJECT
public:
    addKey();

    bool Confirmed = false;
    QString KeyText; ///< name of the key, empty for one that no macro can hold

public Q_SLOTS:
    /** A key change from the hook: virtual key, down, repeat. */
    void UpdateCapslockTip(int virtualKey, bool down, bool repeat);
    void on_NewHong_clicked() override;
    void on_NewHong_2_clicked();
    void on_CloseButton_clicked() override { on_NewHong_2_clicked(); }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    /** Tab is a key like any other here. */
    bool focusNextPrevChild(bool) override { return false; }

private:
    QLineEdit *lineEdit;
    platform::KeyboardHook hook;
};
