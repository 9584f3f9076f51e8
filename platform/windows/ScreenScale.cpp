#include "platform/ScreenScale.h"

#include <algorithm>
#include <windows.h>

double platform::scalingThatFits(int width, int height)
{
    const HDC screen = GetDC(nullptr);
    const double scaling = screen ? GetDeviceCaps(screen, LOGPIXELSX) / double{USER_DEFAULT_SCREEN_DPI} : 1;
    if (screen)
        ReleaseDC(nullptr, screen);
    RECT area{}; // without the task bar
    if (scaling <= 1 || !SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0))
        return 1;
    const double room = std::min(static_cast<double>(area.right - area.left) / width,
                                 static_cast<double>(area.bottom - area.top) / height);
    return std::clamp(room, 1.0, scaling) / scaling;
}
