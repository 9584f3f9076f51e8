#pragma once

#include <QByteArray>
#include <QSize>

#include <cstdint>
#include <memory>

struct xcb_connection_t;

/** The X display that the measured programs show themselves on, and what can be seen there. */
class Screen
{
public:
    /** Opens the display of the environment; ends the program without one. */
    Screen();
    ~Screen();

    /** Seconds of a clock that only goes forward. */
    static double now();

    /** Forgets windows that were made until now. Before a program is started. */
    void forget();
    /** Waits for the next new window of exactly this size. \return its id, or 0 after `seconds`. */
    std::uint32_t waitForWindow(QSize size, double seconds);
    /**
     * Watches a window from its first picture until it has not changed for `rest` seconds.
     * \return when the last change was seen, in seconds of now(), to about half a millisecond; 0 if nothing but black
     * was seen for 20 s
     */
    double waitForPicture(std::uint32_t window, QSize size, double rest);
    /** Some lines of the window; empty while it can't be seen. Equal pictures give equal bytes. */
    QByteArray lines(std::uint32_t window, QSize size) const;
    /** Moves the window to the top left corner. */
    void moveToCorner(std::uint32_t window);
    /** Asks the window to close, as the desktop does. */
    void close(std::uint32_t window);

private:
    std::uint32_t atom(const char *name) const;

    struct Disconnect
    {
        void operator()(xcb_connection_t *held) const;
    };
    std::unique_ptr<xcb_connection_t, Disconnect> connection;
    std::uint32_t root = 0;
};
