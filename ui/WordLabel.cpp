#include "ui/WordLabel.h"

#include <QPainter>
#include <QStyle>

void WordLabel::setLines(const QString &whole, const QString &asLines)
{
    divided = whole;
    lines = asLines;
    setText(whole);
    update();
}

void WordLabel::paintEvent(QPaintEvent *event)
{
    if (divided.isEmpty() || text() != divided) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    drawFrame(&painter);
    style()->drawItemText(&painter, contentsRect(), int(alignment()), palette(), isEnabled(), lines, foregroundRole());
}
