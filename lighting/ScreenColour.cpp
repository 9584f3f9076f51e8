#include "lighting/ScreenColour.h"

#include "platform/ScreenPixel.h"

#include <QCursor>
#include <QDebug>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

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
    const QImage image =
        screen->grabWindow(desktop, int(cursor.x() * scale), int(cursor.y() * scale), size, size).toImage();
    if (image.isNull()) {
        qWarning() << "The screen could not be captured at" << cursor;
        return std::nullopt;
    }
    return image.pixelColor(0, 0);
}
