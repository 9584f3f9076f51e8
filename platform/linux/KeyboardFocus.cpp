#include "platform/KeyboardFocus.h"

#include "XConnection.h"

std::uintptr_t platform::keyboardFocus()
{
    const XConnection connection;
    if (!connection)
        return 0;
    const XReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return reply ? reply->focus : 0;
}

void platform::takeKeyboardFocus(std::uintptr_t windowId)
{
    const XConnection connection;
    if (!connection || windowId == 0)
        return;
    // Qt would send the time of the last event that it saw, with which the server drops the request if a window manager
    // moved the focus later.
    const auto request = xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_POINTER_ROOT,
                                                     static_cast<xcb_window_t>(windowId), XCB_CURRENT_TIME);
    // An error says that the window is gone or not on the screen; then there is nothing to do.
    const XReply<xcb_generic_error_t> error(xcb_request_check(connection, request));
}
