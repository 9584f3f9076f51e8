#include "platform/ScreenPixel.h"

#include <windows.h>

double platform::pixelScale()
{
    // The system scales a process that isn't aware of the screen's density: its metrics are logical then, while the
    // device context of the desktop still tells the true width.
    const HWND desktop = GetDesktopWindow();
    const HDC context = GetDC(desktop);
    if (!context)
        return 1.0;
    const int pixels = GetDeviceCaps(context, DESKTOPHORZRES);
    ReleaseDC(desktop, context);
    const int logical = GetSystemMetrics(SM_CXSCREEN);
    return pixels > 0 && logical > 0 ? static_cast<double>(pixels) / logical : 1.0;
}
