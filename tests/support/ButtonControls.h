#pragma once

#include "support/Controls.h"

/** What is offered on the button page; see controls(). */
const std::vector<Control> &buttonControls();
