#pragma once

#include "ui/SwitchFrame.h"

/** Straight-line correction of the sensor, on or off. */
class StraightLine : public SwitchFrame
{
    Q_OBJECT
public:
    explicit StraightLine(QWidget *parent = nullptr);

private Q_SLOTS:
    void on_StraightLine_2_clicked(bool checked);
};
