#pragma once

#include <functional>
#include <memory>

namespace platform {

/** What becomes of the "down" of keys that are pressed with Alt held, and of Alt itself: the system's own key messages.
 */
enum class SystemKeys {
    Followed, ///< they are down and up like any other key
    Untold,   ///< they reach the callback with "down" as the ordinary key before them left it
};

/**
 * Tells every key change while one of the program's windows is in front. No key is consumed: each goes on to the window
 * that it was meant for. Hooks are independent of each other; destroying one removes it.
 *
 * Everything happens on the GUI thread, the callback included. The callback may remove or destroy its own hook, and may
 * run an event loop of its own.
 */
class KeyboardHook
{
public:
    /**
     * `virtualKey` is a Windows virtual-key code, 1 to 255, on every system. Shift, Ctrl, Alt and Win come as their
     * left or right key (160 to 165, 91, 92); 255 stands for a key that has no code. `repeat` means that the key is the
     * one of the message before, with no key let go in between.
     */
    using Callback = std::function<void(unsigned virtualKey, bool down, bool repeat)>;

    KeyboardHook();
    ~KeyboardHook();
    KeyboardHook(const KeyboardHook &) = delete;
    KeyboardHook &operator=(const KeyboardHook &) = delete;

    /** Starts telling; a callback installed before is replaced. False when the system refused: nothing is told then. */
    bool install(Callback callback, SystemKeys systemKeys = SystemKeys::Followed);

    /** Stops telling at once. Without a hook it does nothing. */
    void remove();

private:
    class Installed;
    std::shared_ptr<Installed> installed;
};

} // namespace platform
