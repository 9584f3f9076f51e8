#pragma once

#include <cstdint>

/**
 * The keyboard for windows that no window manager hands it to. Windows are the system's own: X window ids, HWNDs. Where
 * the window system doesn't let a program choose, both do nothing.
 */
namespace platform {

/** The window that has the keyboard now, of whatever program; 0 if that can't be told. */
std::uintptr_t keyboardFocus();

/** Gives a window the keyboard. Nothing happens with 0 or with a window that is gone or isn't on the screen. */
void takeKeyboardFocus(std::uintptr_t windowId);

} // namespace platform
