#pragma once

#include "ui/WheelWithKeyboard.h"

#include <QSpinBox>

using NumberBox = WheelWithKeyboard<QSpinBox>;

/** Gives a number the look of the pages: centred, without arrows, with a frame that lights up for the keyboard. */
void styleNumberBox(QSpinBox *number);

/** The same for a number that only tells what a slider is at: it can't be edited and takes no focus. */
void styleNumberDisplay(QSpinBox *number);
