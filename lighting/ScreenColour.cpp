#include "lighting/ScreenColour.h"

#include "platform/ScreenPixel.h"

#include <QCursor>
#include <QDebug>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

namespace {

bool isBlack(const QColor &colour) { return colour.rgb() == qRgb(0, 0, 0); }

/** What the program's own window draws there. The cursor's place on the screen wouldn't do: Wayland tells it to nobody.
 */
QColor drawnColour(const QWidget *widget, const QPoint &position)
{
    QWidget *const window = widget->window();
    return window->grab(QRect(widget->mapTo(window, position), QSize(1, 1))).toImage().pixelColor(0, 0);
}

} // namespace

QColor screenColourUnderCursor(const QWidget *widget, const QPoint &position)
{
    // Window id 0 is the whole desktop. A capture of one pixel comes back empty from some systems, hence two by two.
    constexpr WId desktop = 0;
    constexpr int size = 2;
    const double scale = platform::pixelScale();
    const QPoint cursor = QCursor::pos();
    QScreen *screen = QGuiApplication::primaryScreen();
    const QImage capture =
        screen ? screen->grabWindow(desktop, int(cursor.x() * scale), int(cursor.y() * scale), size, size).toImage()
               : QImage();
    return colourOnShow(capture, widget, position);
}

QColor colourOnShow(const QImage &capture, const QWidget *widget, const QPoint &position)
{
    // A Wayland compositor lets no program look at the screen: Qt hands out nothing there, and to a program of X11 the
    // screen is black. Where it is black indeed, our own window says the same.
    if (!capture.isNull() && !isBlack(capture.pixelColor(0, 0)))
        return capture.pixelColor(0, 0);
    const QColor drawn = drawnColour(widget, position);
    if (!isBlack(drawn))
        qWarning() << "The screen could not be captured; the colour is what the window draws at" << position;
    return drawn;
}
