#pragma once

#include "portwire/link/Channels.h"

namespace portwire {

/**
 * The devices of the bus that `portwire.ini` beside the executable names, key `bus`; `virtual` if it names none. A name
 * that this library doesn't know gives a bus without devices, and a line in the log.
 */
std::shared_ptr<Channels> openChannelsOfChosenBus();

} // namespace portwire
