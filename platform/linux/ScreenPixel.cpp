#include "platform/ScreenPixel.h"

double platform::pixelScale()
{
    // QScreen::grabWindow applies the device pixel ratio itself, so the cursor's logical position is what it takes: at
    // a ratio of 2, the position times 2 lies outside a window that the plain position hits.
    return 1.0;
}
