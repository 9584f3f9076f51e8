#pragma once

#include "portwire/link/Channels.h"

namespace portwire {

/**
 * The virtual bus of this process: the scene of the state folder on it, its changes kept there, and the control socket
 * open. The socket and the keeping end with the application, the bus with the process.
 */
std::shared_ptr<Channels> startVirtualBus();

} // namespace portwire
