#pragma once

#include "support/Controls.h"

/** A profile file taken over, and the reset; see controls(). \param factory what the mouse holds after the reset */
std::vector<Control> profileControls(const FlashDataMap &factory);
