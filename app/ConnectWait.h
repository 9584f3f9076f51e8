#pragma once

#include <optional>

class UpDataParam;

/**
 * What happens when the time of the wait prompt is up: waits for the pages to have taken the record, closes the prompt,
 * and says what the user has to be told.
 */
namespace ConnectWait {

/** Index of the offline prompt: the offline text or the time-out text. */
enum Notice { Offline = 0, Timeout = 1 };

/**
 * Runs the case of the prompt's last wait. GUI thread; serves the event loop for up to 8 s.
 * \return what to tell the user, once the prompt's own event loop has ended; nothing if all is well or the user left.
 */
std::optional<Notice> onTimeUp(UpDataParam &prompt);

} // namespace ConnectWait
