#pragma once

#include "devicelink/DeviceAllInfo.h"

#include <QList>

/** What the chooser shows, apart from how: the devices on the bus and the rules for several of one model. */
namespace ChooserList {

/** Finds and identifies everything on the bus into `ChooserDevices`. Without models in the product file nothing is
 * listed. */
void scan();

/** Two of one model on the same kind of connection: they can't be told apart. */
bool hasDuplicates(const QList<DeviceAllInfo> &list);

/** Removes the receivers of each model that is on its cable once: a mouse on its cable hides its own receiver. */
void hideReceivers(QList<DeviceAllInfo> &list);

/** Rate in kHz of the receiver that an entry is, by the product-id list that found it: 1, 2 or 4; 0 for a mouse. */
int receiverKilohertz(const DeviceAllInfo &entry);

} // namespace ChooserList

/** The devices that the last scan found, in picture order. GUI thread only. */
QList<DeviceAllInfo> &ChooserDevices();

/** The last rebuild found devices that can't be told apart. */
extern bool DuplicateDevices;
