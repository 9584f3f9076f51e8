#include "platform/KeyboardFocus.h"

#include <windows.h>

std::uintptr_t platform::keyboardFocus() { return reinterpret_cast<std::uintptr_t>(GetForegroundWindow()); }

void platform::takeKeyboardFocus(std::uintptr_t windowId)
{
    const auto window = reinterpret_cast<HWND>(windowId);
    // Windows lets the program in front hand on the foreground, and answers others with a blinking task bar entry.
    if (IsWindow(window) && SetForegroundWindow(window))
        SetFocus(window);
}
