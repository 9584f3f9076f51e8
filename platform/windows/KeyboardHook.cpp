#include "platform/KeyboardHook.h"

#include "KeyState.h"

#include <algorithm>
#include <utility>
#include <vector>
#include <windows.h>

namespace platform {

class KeyboardHook::Installed
{
public:
    Installed(Callback receiver, SystemKeys systemKeys) : callback(std::move(receiver)), state(systemKeys) {}

    void tell(unsigned virtualKey, KeyMessage message)
    {
        state.take(virtualKey, message);
        callback(virtualKey, state.isDown(), state.isRepeat());
    }

    static bool add(std::shared_ptr<Installed> hook)
    {
        if (!handle)
            handle = SetWindowsHookExW(WH_KEYBOARD_LL, procedure, GetModuleHandleW(nullptr), 0);
        if (handle)
            all.push_back(std::move(hook));
        return handle;
    }

    static void remove(const std::shared_ptr<Installed> &hook)
    {
        all.erase(std::remove(all.begin(), all.end(), hook), all.end());
        if (all.empty() && handle)
            UnhookWindowsHookEx(std::exchange(handle, nullptr));
    }

private:
    /**
     * A hook procedure is a plain function without a context, so one hook of the system serves all of ours. It runs in
     * the message loop of the thread that installed it, and stalls the whole desktop's keyboard meanwhile: for keys
     * that are typed into other programs it does nothing.
     */
    static LRESULT CALLBACK procedure(int code, WPARAM message, LPARAM data)
    {
        if (code == HC_ACTION && GetWindowThreadProcessId(GetForegroundWindow(), nullptr) == GetCurrentThreadId()) {
            const auto *key = reinterpret_cast<const KBDLLHOOKSTRUCT *>(data);
            // A callback may remove hooks, its own too: those that remain are looked at, those taken here stay alive.
            const std::vector<std::shared_ptr<Installed>> current = all;
            for (const auto &hook : current) {
                if (std::find(all.begin(), all.end(), hook) != all.end())
                    hook->tell(key->vkCode, messageOf(message));
            }
        }
        return CallNextHookEx(nullptr, code, message, data);
    }

    static KeyMessage messageOf(WPARAM message)
    {
        switch (message) {
        case WM_KEYDOWN:
            return KeyMessage::Down;
        case WM_SYSKEYDOWN:
            return KeyMessage::SystemDown;
        case WM_SYSKEYUP:
            return KeyMessage::SystemUp;
        default:
            return KeyMessage::Up;
        }
    }

    static inline std::vector<std::shared_ptr<Installed>> all;
    static inline HHOOK handle = nullptr;

    Callback callback;
    KeyState state;
};

KeyboardHook::KeyboardHook() = default;

KeyboardHook::~KeyboardHook() { remove(); }

bool KeyboardHook::install(Callback callback, SystemKeys systemKeys)
{
    remove();
    if (!callback)
        return false;
    auto hook = std::make_shared<Installed>(std::move(callback), systemKeys);
    if (!Installed::add(hook))
        return false;
    installed = std::move(hook);
    return true;
}

void KeyboardHook::remove()
{
    if (const auto hook = std::exchange(installed, nullptr))
        Installed::remove(hook);
}

} // namespace platform
