#include "bench/Screen.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <poll.h>
#include <thread>
#include <xcb/xcb.h>

namespace {

/** Parts of the height at which a line is looked at: title bar, page buttons, head and middle of the pictures, foot. */
constexpr std::array<double, 5> lineHeights = {0.033, 0.107, 0.3, 0.5, 0.86};
constexpr double blackTime = 20;

template<typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

void pause(std::chrono::microseconds time) { std::this_thread::sleep_for(time); }

} // namespace

void Screen::Disconnect::operator()(xcb_connection_t *held) const { xcb_disconnect(held); }

Screen::Screen() : connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(connection.get()))
        qFatal("there is no X display");
    root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.get(), root, XCB_CW_EVENT_MASK, &events);
    // A pointer in the middle would light up what lies under it.
    xcb_warp_pointer(connection.get(), XCB_NONE, root, 0, 0, 0, 0, 2, 2);
    xcb_flush(connection.get());
}

Screen::~Screen() = default;

double Screen::now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void Screen::forget()
{
    owned(xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    while (owned(xcb_poll_for_event(connection.get()))) {
    }
}

std::uint32_t Screen::waitForWindow(QSize size, double seconds)
{
    for (const double end = now() + seconds; now() < end;) {
        pollfd descriptor{xcb_get_file_descriptor(connection.get()), POLLIN, 0};
        poll(&descriptor, 1, 100);
        while (const auto event = owned(xcb_poll_for_event(connection.get()))) {
            if ((event->response_type & 0x7f) != XCB_CREATE_NOTIFY)
                continue;
            const auto *made = reinterpret_cast<const xcb_create_notify_event_t *>(event.get());
            if (made->width == size.width() && made->height == size.height())
                return made->window;
        }
    }
    return 0;
}

QByteArray Screen::lines(std::uint32_t window, QSize size) const
{
    QByteArray bytes;
    for (const double part : lineHeights) {
        const auto cookie = xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0,
                                          std::int16_t(size.height() * part), std::uint16_t(size.width()), 1, ~0U);
        xcb_generic_error_t *error = nullptr;
        const auto reply = owned(xcb_get_image_reply(connection.get(), cookie, &error));
        const auto ownedError = owned(error);
        if (!reply)
            return QByteArray(); // it isn't on the screen yet
        bytes.append(reinterpret_cast<const char *>(xcb_get_image_data(reply.get())),
                     xcb_get_image_data_length(reply.get()));
    }
    return bytes;
}

double Screen::waitForPicture(std::uint32_t window, QSize size, double rest)
{
    QByteArray last;
    double changed = 0;
    for (const double begin = now(); now() < (changed > 0 ? changed + rest : begin + blackTime);) {
        const QByteArray seen = lines(window, size);
        const double at = now();
        const bool isBlack = seen.count('\0') + seen.count('\xff') == seen.size();
        if (!isBlack && seen != last) {
            last = seen;
            changed = at;
        }
        pause(std::chrono::microseconds(changed > 0 && at > changed + 0.1 ? 5000 : 300));
    }
    return changed;
}

void Screen::moveToCorner(std::uint32_t window)
{
    const std::uint32_t place[] = {0, 0};
    xcb_configure_window(connection.get(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
    forget();
}

std::uint32_t Screen::atom(const char *name) const
{
    const auto cookie = xcb_intern_atom(connection.get(), 0, std::uint16_t(qstrlen(name)), name);
    const auto reply = owned(xcb_intern_atom_reply(connection.get(), cookie, nullptr));
    return reply ? reply->atom : 0;
}

void Screen::close(std::uint32_t window)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(connection.get(), 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&event));
    xcb_flush(connection.get());
}
