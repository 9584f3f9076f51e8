#pragma once

#include <QString>

/** What the sensors do with the bytes of a DPI level, told from their side; nothing of it is shared with the program.
 */
inline int dpiOnTheMouse(const QString &sensor, int code, int flags)
{
    int dpi = 0;
    if (sensor == "3311") {
        dpi = (code - 3) * 100;
    } else {
        const int counts = (sensor == "3395" ? 256 * (flags / 64) : 0) + code + 1;
        dpi = counts * ((flags & 0x22) ? 100 : 50);
    }
    return (flags & 0x11) ? 2 * dpi : dpi;
}
