#pragma once

#include "devicelink/FlashDataMap.h"

struct SensorForm;

/** How the sensor page follows the device. Nothing here writes to it. GUI thread only. */
namespace SensorUpdate {

/** Refills the page from a record and the product data of the selected model. */
void showRecord(SensorForm &form, const FlashDataMap &record);
/** How the page looks without a device. */
void showDefaults(SensorForm &form);
/** The indicator's part of a record. */
void showIndicator(SensorForm &form, const FlashDataMap &record);
/** The active level as the mouse tells it; a level outside 0 to 7 changes nothing. */
void showActiveLevel(SensorForm &form, int level);

/** True if the sensor of the selected model has a choice of modes. */
bool hasSensorMode();
/** A rate up to 1000 Hz holds: the user chooses between low power and high performance. */
void offerSensorMode(SensorForm &form, int mode);
/** The cable or a rate above 1000 Hz sets the mode: "Corded" shows, and nothing can be chosen. */
void showCordedMode(SensorForm &form);

} // namespace SensorUpdate
