#include "lighting/ScreenColour.h"

#include "platform/ScreenPixel.h"

#include <QApplication>
#include <QCursor>
#include <QDebug>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

namespace {

bool isBlack(const QColor &colour) { return colour.rgb() == qRgb(0, 0, 0); }

/** What the program's own window draws at a place of the screen; nothing where there is none. */
std::optional<QColor> drawnColour(const QPoint &place)
{
    const QWidget *const widget = QApplication::widgetAt(place);
    if (!widget)
        return std::nullopt;
    QWidget *const window = widget->window();
    const QImage drawn = window->grab(QRect(window->mapFromGlobal(place), QSize(1, 1))).toImage();
    return drawn.isNull() ? std::nullopt : std::optional<QColor>(drawn.pixelColor(0, 0));
}

} // namespace

std::optional<QColor> screenColourUnderCursor()
{
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen) {
        qWarning() << "No screen to take a colour from";
        return std::nullopt;
    }
    // Window id 0 is the whole desktop. A capture of one pixel comes back empty from some systems, hence two by two.
    constexpr WId desktop = 0;
    constexpr int size = 2;
    const double scale = platform::pixelScale();
    const QPoint cursor = QCursor::pos();
    const QPixmap capture = screen->grabWindow(desktop, int(cursor.x() * scale), int(cursor.y() * scale), size, size);
    return colourOnShow(capture.toImage(), cursor);
}

std::optional<QColor> colourOnShow(const QImage &capture, const QPoint &place)
{
    // A Wayland compositor lets no program look at the screen: Qt hands out nothing there, and to a program of X11 the
    // screen is black. Where it is black indeed, our own window says the same.
    if (!capture.isNull() && !isBlack(capture.pixelColor(0, 0)))
        return capture.pixelColor(0, 0);
    const std::optional<QColor> drawn = drawnColour(place);
    if (!drawn)
        qWarning() << "The screen could not be captured at" << place;
    else if (!isBlack(*drawn))
        qWarning() << "The screen could not be captured; the colour is that of the window at" << place;
    return drawn;
}
