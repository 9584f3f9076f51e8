#pragma once

#include <string>

namespace platform {

/**
 * Values of the user's registry. `key` is a whole path with backslashes, such as
 * "HKEY_CURRENT_USER\Software\Velko\Velko\Mouse Drive Test"; an empty `value` names the key's own value. All texts are
 * UTF-8. May be called from any thread.
 */

/** The value as text, a number in decimal. Empty when it is missing or can't be read. */
std::string registryText(const std::string &key, const std::string &value);

/** Stores a text and makes the key when it is missing. False when the system refused; the old value stands then. */
bool setRegistryText(const std::string &key, const std::string &value, const std::string &text);

/** Removes one value. True when it is gone, also when it never was there. */
bool removeRegistryValue(const std::string &key, const std::string &value);

} // namespace platform
