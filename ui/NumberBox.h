#pragma once

#include <QSpinBox>

/** A number that the wheel changes only while it has the keyboard; the wheel doesn't give it that. See MyConmboBox. */
class NumberBox : public QSpinBox
{
    Q_OBJECT
public:
    explicit NumberBox(QWidget *parent = nullptr) : QSpinBox(parent) { setFocusPolicy(Qt::StrongFocus); }

protected:
    void wheelEvent(QWheelEvent *event) override;
};

/** Gives a number the look of the pages: centred, without arrows, with a frame that lights up for the keyboard. */
void styleNumberBox(QSpinBox *number);

/** The same for a number that only tells what a slider is at: it can't be edited and takes no focus. */
void styleNumberDisplay(QSpinBox *number);
