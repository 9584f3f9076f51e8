#include "maintenance/Panel.h"

#include <QPainter>
#include <qdrawutil.h>

namespace {

/** Pixels of the picture on each side that aren't stretched. */
constexpr int edge = 8;

} // namespace

void Panel::paintEvent(QPaintEvent *)
{
    const QSize pixels = size() * devicePixelRatioF();
    if (drawn.size() != pixels) {
        drawn = QPixmap(pixels);
        drawn.setDevicePixelRatio(devicePixelRatioF());
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        qDrawBorderPixmap(&painter, rect(), {edge, edge, edge, edge}, QPixmap(picture));
    }
    QPainter(this).drawPixmap(0, 0, drawn);
}
