#include "platform/WindowSystem.h"

#include <windows.h>

bool platform::windowsRuleThemselves() { return true; }

bool platform::tellsOfMinimising() { return true; }

bool platform::tellsOfMoving() { return true; }

bool platform::isMinimised(std::uintptr_t windowId) { return IsIconic(reinterpret_cast<HWND>(windowId)) != FALSE; }
