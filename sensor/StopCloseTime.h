#pragma once

#include "ui/TitledCombo.h"

/**
 * Idle time before the mouse sleeps and its light goes off: eleven items from 10 s to 40 min. Writes only what the user
 * chooses, never what its host sets.
 */
class StopCloseTime : public TitledCombo
{
    Q_OBJECT
public:
    explicit StopCloseTime(QWidget *parent = nullptr);

    /** Shows the item of a record value, in units of 10 s; a value that no item has leaves the item as it is. */
    void setTimeSilently(int tenSeconds);

private Q_SLOTS:
    void on_StopClose_activated(int index);
};
