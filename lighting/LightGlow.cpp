#include "lighting/LightGlow.h"

#include <QColor>
#include <QPolygonF>
#include <QtMath>

#include <algorithm>
#include <array>

namespace {

/** Reach of a lamp's glow in pixels. */
constexpr int reach = 88;
/** The glow is drawn this many times smaller, and so costs a sixteenth. */
constexpr int reduction = 4;

/** Unit of the parts; 40 lamps that give all they have to one point still fit 32 bits. */
constexpr quint32 whole = 1U << 16;

struct Fall
{
    qreal distance; ///< part of the reach
    qreal light;    ///< what is left of it there
};
constexpr std::array<Fall, 4> falls = {{{0.0, 0.16}, {0.3, 0.075}, {0.6, 0.022}, {1.0, 0.0}}};

/** What is left of the light at a distance, in parts of the reach. */
qreal lightAt(qreal distance)
{
    for (std::size_t next = 1; next < falls.size(); ++next) {
        const Fall &near = falls[next - 1];
        const Fall &far = falls[next];
        if (distance < far.distance)
            return near.light + (far.light - near.light) * (distance - near.distance) / (far.distance - near.distance);
    }
    return 0;
}

} // namespace

LightGlow::LightGlow(const QVector<QPointF> &lamps)
{
    const QRect strip = QPolygonF(lamps).boundingRect().toAlignedRect();
    lit = strip.adjusted(-reach, -reach, reach, reach);
    size = (lit.size() + QSize(reduction / 2, reduction / 2)) / reduction;
    lit.setSize(size * reduction); // a whole number of the picture's points
    constexpr qreal radius = qreal(reach) / reduction;
    for (const QPointF &lamp : lamps) {
        const QPointF centre = (lamp - lit.topLeft()) / reduction;
        const QRectF around(centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
        Reach each{around.toAlignedRect() & QRect(QPoint(), size), {}};
        for (int y = each.area.top(); y <= each.area.bottom(); ++y) {
            for (int x = each.area.left(); x <= each.area.right(); ++x) {
                const QPointF way = QPointF(x + 0.5, y + 0.5) - centre;
                const qreal light = lightAt(std::hypot(way.x(), way.y()) / radius);
                each.parts << static_cast<quint32>(qRound(light * whole));
            }
        }
        reaches << each;
    }
}

QImage LightGlow::picture(const QVector<QColor> &colours) const
{
    struct Sum
    {
        quint32 red = 0;
        quint32 green = 0;
        quint32 blue = 0;
    };
    QVector<Sum> sums(size.width() * size.height());
    for (int lamp = 0; lamp < std::min(reaches.size(), colours.size()); ++lamp) {
        const auto red = static_cast<quint32>(colours[lamp].red());
        const auto green = static_cast<quint32>(colours[lamp].green());
        const auto blue = static_cast<quint32>(colours[lamp].blue());
        const Reach &each = reaches[lamp];
        const quint32 *part = each.parts.constData();
        for (int y = each.area.top(); y <= each.area.bottom(); ++y) {
            Sum *sum = sums.data() + qptrdiff{y} * size.width() + each.area.left();
            for (int x = each.area.left(); x <= each.area.right(); ++x, ++sum, ++part) {
                sum->red += *part * red;
                sum->green += *part * green;
                sum->blue += *part * blue;
            }
        }
    }
    QImage glow(size, QImage::Format_RGB32);
    const auto byte = [](quint32 sum) { return static_cast<int>(std::min(sum / whole, 255U)); };
    for (int y = 0; y < size.height(); ++y) {
        auto *const line = reinterpret_cast<QRgb *>(glow.scanLine(y));
        const Sum *sum = sums.constData() + qptrdiff{y} * size.width();
        for (int x = 0; x < size.width(); ++x, ++sum)
            line[x] = qRgb(byte(sum->red), byte(sum->green), byte(sum->blue));
    }
    return glow;
}
