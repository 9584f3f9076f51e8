#pragma once

#include <atomic>
#include <cstdint>

/**
 * The one callback that the report link has: every reply and every unprompted report of the mouse ends here, on a
 * thread of the library, one at a time. It decodes the report, updates the working record and the device state, asks
 * for what follows, and tells the pages through the hub, where most signals block it until the GUI thread is done.
 */
void dispatchReport(const std::uint8_t *header, int headerLength, const std::uint8_t *payload,
                    std::uint32_t payloadLength);

/** True while a report is being handled. */
bool isDispatching();

/** `Option` key of the same name: 1 puts a percent sign behind the battery number. */
inline std::atomic<int> ShowBatteryValue{0};
