#pragma once

#include <string>

namespace platform {

/** Whether the system starts this program when the user logs in. */
bool startsWithSystem();

/**
 * Makes the system start `executable`, an absolute path in UTF-8, at log-in, or stops that. Turning off what isn't on
 * succeeds. False when the setting couldn't be stored.
 */
bool setStartsWithSystem(bool on, const std::string &executable);

} // namespace platform
