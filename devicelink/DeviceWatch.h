#pragma once

#include "devicelink/DeviceAllInfo.h"

#include <QList>
#include <QString>

#include <optional>

/**
 * Called at each USB change while the device window shows, on the GUI thread. Moves the selection to the cable when the
 * mouse in use on a receiver was plugged in, and leads back to the chooser when the selected device has gone.
 */
void deviceWatch();

/**
 * Looks once more if the selected mouse may be on its cable unheard: one that has just been plugged in may not answer
 * the watch in time, and the bus doesn't change when it does. GUI thread only.
 * \return true if it is the selected device on its cable now
 */
bool lookForCable();

/** What the last look of the watch found on the bus. GUI thread only, as all below. */
const QList<DeviceAllInfo> &watchedDevices();

/** The receiver that lies on the bus beside a mouse on its cable, from the last look of the watch. */
std::optional<DeviceAllInfo> pairedReceiver();
/** Its firmware version; empty without one. */
QString pairedReceiverVersion();

/**
 * `UpdateClass`: the rate in kHz of the receiver whose firmware can be updated, 1, 2 or 4. That of the selected device,
 * or the one beside a mouse on its cable; 0 if there is none.
 */
int updateClass();

/**
 * Looks whether newer firmware than `version` lies at hand for a receiver, keeps the answer in `DongleUpdateAvailable`
 * and tells the settings page.
 */
void offerReceiverUpdate(const QString &version, int modelIndex, int updateClass);
