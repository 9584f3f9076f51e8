#include "platform/MouseSettings.h"

#include <windows.h>

bool platform::openSystemMouseSettings()
{
    constexpr UINT lastError = 31; // WinExec's results up to here are errors
    return WinExec("control.exe /name Microsoft.Mouse", SW_SHOW) > lastError;
}
