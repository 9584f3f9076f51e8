#pragma once

#include <cstdint>

namespace portwire {

/** What a mouse tells the PC, or does to itself, when buttons are used. */
struct HidEvent
{
    enum class Type {
        MouseButton, ///< code: bit of the button byte
        Modifier,    ///< code: bit of the modifier byte
        Key,         ///< code: keyboard usage
        Consumer,    ///< code: consumer usage
        Wheel,       ///< code: 1 up, -1 down
        Tilt,        ///< code: -1 left, 1 right
        Dpi,         ///< code: the DPI that counts from now on
        ReportRate,  ///< code: in Hz
        Light,       ///< code: 1 the light is on from now, else 0
        Indicator,   ///< code: 1 the DPI indicator is on from now, else 0
        Profile,     ///< code: the profile that counts from now on
    };
    std::int64_t atMs; ///< on the time line of the play
    Type type;
    bool isPress; ///< of what can be held; otherwise true
    int code;
};

} // namespace portwire
