#include "platform/WindowSystem.h"

bool platform::windowsRuleThemselves() { return true; }
