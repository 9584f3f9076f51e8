#pragma once

#include "ui/SwitchFrame.h"

/** Ripple control of the sensor, on or off. */
class RippeControl : public SwitchFrame
{
    Q_OBJECT
public:
    explicit RippeControl(QWidget *parent = nullptr);

private Q_SLOTS:
    void on_RippeControl_2_clicked(bool checked);
};
