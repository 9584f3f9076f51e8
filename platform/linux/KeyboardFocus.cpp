#include "platform/KeyboardFocus.h"

#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

struct Free
{
    void operator()(void *memory) const { std::free(memory); }
};

/**
 * A connection of our own, open for one request: Qt's belongs to its private parts, and it sends a focus request with
 * the time of the last event that it saw, which the server drops if a window manager moved the focus later.
 */
class Connection
{
public:
    Connection() : connection(isX11() ? xcb_connect(nullptr, nullptr) : nullptr) {}
    ~Connection()
    {
        if (connection)
            xcb_disconnect(connection); // right for a failed connection too
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    explicit operator bool() const { return connection && !xcb_connection_has_error(connection); }
    operator xcb_connection_t *() const { return connection; }

private:
    static bool isX11() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

    xcb_connection_t *connection;
};

} // namespace

std::uintptr_t platform::keyboardFocus()
{
    const Connection connection;
    if (!connection)
        return 0;
    const std::unique_ptr<xcb_get_input_focus_reply_t, Free> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return reply ? reply->focus : 0;
}

void platform::takeKeyboardFocus(std::uintptr_t windowId)
{
    const Connection connection;
    if (!connection || windowId == 0)
        return;
    const auto request = xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_POINTER_ROOT,
                                                     static_cast<xcb_window_t>(windowId), XCB_CURRENT_TIME);
    // An error says that the window is gone or not on the screen; then there is nothing to do.
    const std::unique_ptr<xcb_generic_error_t, Free> error(xcb_request_check(connection, request));
}
