#pragma once

#include "portwire/virtual/HidEvent.h"
#include "portwire/virtual/VirtualMouse.h"

namespace portwire {

/** What the firmware makes of a button of the mouse that is pressed and let go, by what its flash says. */
class ButtonPlayer
{
public:
    explicit ButtonPlayer(VirtualMouse &ofMouse) : mouse(ofMouse) {}

    /** \param slot 0 to 15; another one gives nothing. Changes of the mouse itself are made and reported to the PC. */
    std::vector<HidEvent> press(int slot);

private:
    void pressAndRelease(HidEvent::Type type, int code);
    void stepDpi(int direction);
    void fire(int intervalMs, int count);
    void playSequence(int slot);
    void playMacro(int slot, int repeatCode);
    void playEvent(const std::uint8_t *event);
    void switchRate();
    void switchLight(int which);
    void lockDpi(std::uint8_t code);

    VirtualMouse &mouse;
    std::vector<HidEvent> events;
    std::int64_t now = 0; ///< ms since the button went down
};

} // namespace portwire
