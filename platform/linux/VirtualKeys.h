#pragma once

#include <QKeyEvent>

namespace platform {

/** The Windows virtual-key code of a key event, 1 to 255; 255 for a key that has none. */
unsigned virtualKey(const QKeyEvent &event);

} // namespace platform
