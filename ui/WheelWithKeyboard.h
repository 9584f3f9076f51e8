#pragma once

#include <QWheelEvent>

/**
 * A list, a number or a slider that the wheel changes only while it has the keyboard; the wheel doesn't give it that.
 * Who scrolls past it, or lets the hand rest on the wheel, means no choice. What takes no keyboard follows no wheel.
 */
template<typename Base>
class WheelWithKeyboard : public Base
{
public:
    explicit WheelWithKeyboard(QWidget *parent = nullptr) : Base(parent) { Base::setFocusPolicy(Qt::StrongFocus); }

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        if (Base::hasFocus())
            Base::wheelEvent(event);
        else
            event->ignore(); // what it lies on may scroll
    }
};
