#pragma once

#include "ui/ConfirmPrompt.h"

class QSpinBox;

/** Asks how the fire key fires: the interval of its shots and their number. */
class FireKey : public ConfirmPrompt
{
    Q_OBJECT
public:
    FireKey();

    /** What the dialog starts with; a value out of range becomes the nearest one that isn't. */
    void setTime(int milliseconds);
    void setCount(int count);

    /** Milliseconds from shot to shot, 10 to 255. Counts only if confirmed(). */
    int interval() const { return Interval; }
    /** Number of shots, 1 to 3; 0 for as long as the button is held. Counts only if confirmed(). */
    int repeats() const { return Repeats; }

public Q_SLOTS:
    void on_NewHong_clicked() override;
    void on_NewHong_2_clicked() { reject(); }

private:
    QSpinBox *addNumber(const char *name, const QRect &place, int minimum, int maximum, int value);

    int Interval = 10; // these two first: the boxes start with them
    int Repeats = 3;
    QSpinBox *Time;
    QSpinBox *Count;
};
