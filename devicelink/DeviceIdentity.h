#pragma once

#include "devicelink/DeviceAllInfo.h"

/** What an identification found. */
enum class Identity {
    NoAnswer = 0,   ///< the device told no ids in ten tries
    Known = 1,      ///< one of our models
    OtherModel = 2, ///< our company id with a model that this build doesn't know
    OtherMaker = 3,
};

/**
 * Asks the device at `info.Path` who it is and fills in the model, the kind of connection, whether its mouse answers
 * and, while a device is selected, its address. The entry of the selected device is copied over `SelectInfo`, with the
 * versions that are known kept. A device that never answers takes some 50 ms: the library waits its full time, 30 ms on
 * a quiet bus, for the first try only.
 */
Identity identifyDevice(DeviceAllInfo &info);

/** Refreshes `Online` and `UsbAddress` of an entry. */
void refreshOnline(DeviceAllInfo &info);

/** True if the product file describes the device's model. */
bool isKnownModel(const DeviceAllInfo &info);

/** True for the receiver classes of a mouse on its cable. */
bool isCordedClass(std::uint8_t receiverClass);

/** Rate in kHz of a receiver class; 0 for a mouse on its cable. */
int receiverRateOf(std::uint8_t receiverClass);
