#pragma once

#include <QPushButton>

/** A push button with a hand for a cursor while the mouse is over it. */
class MyButton : public QPushButton
{
    Q_OBJECT
public:
    explicit MyButton(QWidget *parent = nullptr) : QPushButton(parent) {}

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
};
