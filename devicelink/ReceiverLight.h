#pragma once

#include "devicelink/Snapshot.h"
#include "portwire/portwire.h"

/** State of the receiver's light; written by the dispatcher and the settings page. */
Snapshot<DongleRGB> &DongleRgb();

/** Shows it on the settings page. For the thread of the reports, which stands still meanwhile. */
void showReceiverLight();
