#include "ui/MyToolButton.h"

#include <QMouseEvent>

void MyToolButton::mousePressEvent(QMouseEvent *event) { act(event, false); }

void MyToolButton::mouseDoubleClickEvent(QMouseEvent *event) { act(event, true); }

void MyToolButton::act(const QMouseEvent *event, bool isDouble)
{
    if (event->button() != Qt::LeftButton)
        return;
    setChecked(true);
    Q_EMIT clicked(isDouble);
}
