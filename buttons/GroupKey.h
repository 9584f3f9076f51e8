#pragma once

#include "platform/KeyboardHook.h"
#include "ui/ConfirmPrompt.h"

#include <QElapsedTimer>
#include <QPointer>

#include <array>

class MyLineEdit;
class QCheckBox;

/**
 * Asks for a key combination of at most three keys: modifiers by their boxes, the others by being pressed. A fourth key
 * and a pause of two seconds begin a new entry.
 */
class GroupKey : public ConfirmPrompt
{
    Q_OBJECT
public:
    GroupKey();

    /** The combination, such as "Ctrl+C"; may be empty. Counts only if confirmed(). */
    QString keyText() const { return KeyText; }

public Q_SLOTS:
    /** A key of the keyboard went down or up, as a Windows virtual key. */
    void UpdateCapslockTip(int virtualKey, bool down, bool repeat);
    void on_NewHong_clicked() override;
    void on_NewHong_2_clicked() { reject(); }
    void on_lineEdit_textEdited(const QString &text);
    void done(int result) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    QStringList modifiers() const;
    void startAnew();

    platform::KeyboardHook hook;
    MyLineEdit *lineEdit;
    std::array<QCheckBox *, 4> boxes{}; ///< in the order of the text: Shift, Ctrl, Alt, Win
    QPointer<Prompt> notice;
    QString KeyText;
    int PlusCount = 0; ///< separators between the keys in the line
    int LastKey = -1;  ///< virtual key last taken
    bool FirstKey = true;
    QElapsedTimer KeyClock; ///< since the first key or the last time that a pause ended an entry
};
