#pragma once

/**
 * Called at each USB change while the device window shows, on the GUI thread. Moves the selection to the cable when the
 * mouse in use on a receiver was plugged in, and leads back to the chooser when the selected device has gone.
 */
void deviceWatch();
