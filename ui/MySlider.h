#pragma once

#include <QSlider>

/** A slider that jumps to the place clicked, and tells its parent by an event of type `jumpEvent`. */
class MySlider : public QSlider
{
    Q_OBJECT
public:
    static constexpr int jumpEvent = 1001;

    explicit MySlider(QWidget *parent = nullptr) : QSlider(parent) {}

protected:
    void mousePressEvent(QMouseEvent *event) override;
};
