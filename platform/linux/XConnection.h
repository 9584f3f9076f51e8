#pragma once

#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace platform {

struct XReplyFree
{
    void operator()(void *memory) const { std::free(memory); }
};

template<typename Reply>
using XReply = std::unique_ptr<Reply, XReplyFree>;

/** A connection of our own, open for one question: Qt's belongs to its private parts. None where Qt doesn't use X11. */
class XConnection
{
public:
    XConnection() : connection(isX11() ? xcb_connect(nullptr, nullptr) : nullptr) {}
    ~XConnection()
    {
        if (connection)
            xcb_disconnect(connection); // right for a failed connection too
    }
    XConnection(const XConnection &) = delete;
    XConnection &operator=(const XConnection &) = delete;

    explicit operator bool() const { return connection && !xcb_connection_has_error(connection); }
    operator xcb_connection_t *() const { return connection; }

private:
    static bool isX11() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

    xcb_connection_t *connection;
};

} // namespace platform
