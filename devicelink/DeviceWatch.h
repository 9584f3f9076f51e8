#pragma once

#include <QString>

/**
 * Called at each USB change while the device window shows, on the GUI thread. Moves the selection to the cable when the
 * mouse in use on a receiver was plugged in, and leads back to the chooser when the selected device has gone.
 */
void deviceWatch();

/**
 * Firmware version of the receiver that lies on the bus beside a mouse on its cable, from the last look of the watch;
 * empty without one. GUI thread only.
 */
QString pairedReceiverVersion();
