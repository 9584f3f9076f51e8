#pragma once

#include <cstdint>

namespace platform {

/**
 * False on a Wayland desktop: the compositor decides where a window stands and which one has the keyboard, also for the
 * programs of X11 that it shows. True everywhere else.
 */
bool windowsRuleThemselves();

/** False where the window system doesn't tell a program that its window was minimised or brought back: Wayland's own.
 */
bool tellsOfMinimising();

/**
 * False where a window may be moved while the program still counts the places of the screen from where it was: in one
 * of X11 on a Wayland desktop. Wayland's own counts them from the window's corner, wherever that is.
 */
bool tellsOfMoving();

/**
 * Whether the window system did minimise a window that asked for it a moment ago; not every window manager does. The
 * window is the system's own: an X window id, an HWND. True where that can't be told.
 */
bool isMinimised(std::uintptr_t windowId);

} // namespace platform
