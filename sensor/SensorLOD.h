#pragma once

#include "ui/TitledCombo.h"

/** Lift-off distance, 1 or 2 mm: item 0 or 1. */
class SensorLOD : public TitledCombo
{
    Q_OBJECT
public:
    explicit SensorLOD(QWidget *parent = nullptr);

    /** A sensor without the setting shows it greyed. */
    void setListEnabled(bool enabled);

private Q_SLOTS:
    void on_LOD_currentIndexChanged(int index);
};
