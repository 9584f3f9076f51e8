#pragma once

#include "platform/KeyboardHook.h"

namespace platform {

/** The kinds of key message. The system's own are those of Alt and of the keys pressed with it. */
enum class KeyMessage { Down, Up, SystemDown, SystemUp };

/** What a keyboard hook remembers between two messages: the same rules on every system. */
class KeyState
{
public:
    explicit KeyState(SystemKeys treatment) : systemKeys(treatment) {}

    void take(unsigned virtualKey, KeyMessage message)
    {
        repeat = virtualKey == lastKey;
        lastKey = virtualKey;
        if (message == KeyMessage::Up) {
            down = repeat = false;
            lastKey = 0;
        } else if (message == KeyMessage::Down) {
            down = true;
        } else if (systemKeys == SystemKeys::Followed) {
            down = message == KeyMessage::SystemDown;
        }
    }

    bool isDown() const { return down; }
    bool isRepeat() const { return repeat; }

private:
    SystemKeys systemKeys;
    unsigned lastKey = 0; ///< 0 after a key was let go
    bool down = false;
    bool repeat = false;
};

} // namespace platform
