#pragma once

#include "ui/WheelWithKeyboard.h"

#include <QSlider>

/** A slider that jumps to the place clicked, and tells its parent by an event of type `jumpEvent`. */
class MySlider : public WheelWithKeyboard<QSlider>
{
    Q_OBJECT
public:
    static constexpr int jumpEvent = 1001;

    using WheelWithKeyboard::WheelWithKeyboard;

protected:
    void mousePressEvent(QMouseEvent *event) override;
};
