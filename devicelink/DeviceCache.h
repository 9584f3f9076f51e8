#pragma once

#include "devicelink/FlashDataMap.h"

#include <QString>

/**
 * The last known record of each model, one file in the `Device_Info` folder: what the pages show while the mouse
 * sleeps.
 */

/** File name for a device, such as "Device_CID12_MID01.bin". */
QString deviceCacheName(std::uint8_t cid, std::uint8_t deviceKind);

/**
 * Reads a cache file into `record`.
 * \return false, with `record` untouched, if the name is empty or the file is missing or isn't one of ours.
 */
bool LoadDeviceCache(const QString &name, FlashDataMap &record);

/** Writes a cache file, replacing the old one in one step. An empty name writes nothing; failures go to the log. */
void SaveDeviceCache(const QString &name, const FlashDataMap &record);
