#pragma once

#include "ui/SwitchFrame.h"

/** Sensor readings in step with the USB reports, on or off. */
class MotionSync : public SwitchFrame
{
    Q_OBJECT
public:
    explicit MotionSync(QWidget *parent = nullptr);

private Q_SLOTS:
    void on_MotionSync_2_clicked(bool checked);
};
