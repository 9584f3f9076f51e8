#include "platform/WindowSystem.h"

#include "XConnection.h"

namespace {

bool isOfWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland")); // there is "wayland-egl" as well
}

/** A compositor that shows programs of X11 lets those of its session know of both ways to it. */
bool isGuestOfWayland() { return !isOfWayland() && qEnvironmentVariableIsSet("WAYLAND_DISPLAY"); }

} // namespace

bool platform::windowsRuleThemselves() { return !isOfWayland() && !isGuestOfWayland(); }

bool platform::tellsOfMinimising() { return !isOfWayland(); }

bool platform::tellsOfMoving() { return !isGuestOfWayland(); }

bool platform::isMinimised(std::uintptr_t windowId)
{
    const XConnection connection;
    if (!connection)
        return true;
    // Qt hears of it in the same way, but takes a window for minimised as soon as it has asked.
    constexpr char name[] = "WM_STATE"; // two numbers: the state, and the window of the icon
    constexpr std::uint32_t iconic = 3;
    const XReply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 1, sizeof name - 1, name), nullptr));
    if (!atom)
        return true;
    const XReply<xcb_get_property_reply_t> state(xcb_get_property_reply(
        connection,
        xcb_get_property(connection, 0, static_cast<xcb_window_t>(windowId), atom->atom, XCB_ATOM_ANY, 0, 1), nullptr));
    return !state || xcb_get_property_value_length(state.get()) < int(sizeof iconic) ||
           *static_cast<const std::uint32_t *>(xcb_get_property_value(state.get())) == iconic;
}
