#pragma once

#include "devicelink/FlashDataMap.h"
#include "portwire/link/ImageLayout.h"

namespace portwire {

/** The longest delay that an event of the image can hold, some 37 hours; longer ones are cut to it. */
constexpr std::uint32_t maxEventDelayMs = (1u << 27) - 1;

/**
 * Puts the record into the image. Bytes of the image that no field of the record owns stay as they are, so that an
 * image that came from a mouse doesn't change where the record didn't.
 */
void encodeImage(const FlashDataMap &record, DeviceImage &image);

/**
 * Fills every byte of the record. Any image is taken: counts and lengths beyond their arrays are cut, so that whoever
 * walks the record by them stays inside.
 */
void decodeImage(const DeviceImage &image, FlashDataMap &record);

} // namespace portwire
