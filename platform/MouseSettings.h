#pragma once

namespace platform {

/** Opens the system's own mouse settings and returns at once. False when there is no such program or it won't start. */
bool openSystemMouseSettings();

} // namespace platform
