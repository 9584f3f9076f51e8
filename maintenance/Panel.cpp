#include "maintenance/Panel.h"

#include <QPainter>
#include <qdrawutil.h>

#include <algorithm>

namespace {

/** Pixels of the picture on each side that aren't stretched. */
constexpr int edge = 8;
/** Pixels between them that are kept. Much less has too many pieces to paint, much more takes long to stretch. */
constexpr int kept = 64;

} // namespace

void Panel::paintEvent(QPaintEvent *)
{
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = QSize(edge + kept + edge, height()) * ratio;
    if (strip.size() != pixels) {
        strip = QPixmap(pixels);
        strip.setDevicePixelRatio(ratio);
        strip.fill(Qt::transparent);
        QPainter painter(&strip);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        qDrawBorderPixmap(&painter, {0, 0, edge + kept + edge, height()}, {edge, edge, edge, edge}, QPixmap(picture));
    }
    QPainter painter(this);
    const auto draw = [&](int left, int pieceWidth, int from) {
        painter.drawPixmap(QRectF(left, 0, pieceWidth, height()), strip,
                           QRectF(from * ratio, 0, pieceWidth * ratio, strip.height()));
    };
    const int right = width() - edge;
    draw(0, edge, 0);
    for (int left = edge; left < right; left += kept)
        draw(left, std::min(kept, right - left), edge);
    draw(right, edge, edge + kept);
}
