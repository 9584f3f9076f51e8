#pragma once

#include "ui/WheelWithKeyboard.h"

#include <QComboBox>

#include <optional>

/** A combo box with its text in the middle, which remembers what it showed when the user reached for it. */
class MyConmboBox : public WheelWithKeyboard<QComboBox>
{
    Q_OBJECT
public:
    using WheelWithKeyboard::WheelWithKeyboard;

    /**
     * The index shown at the last mouse press, so that a choice can be taken back; also at the last key or turn of the
     * wheel, by which a user chooses as well. -1 before the first.
     */
    int pressIndex() const { return PressIndex; }

    void showPopup() override;
    void hidePopup() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int PressIndex = -1;
    std::optional<ulong> listKeyTime; ///< timestamp of the last key that the open list has had
};
