#include "ui/MyToolButton.h"

#include <QMouseEvent>

void MyToolButton::act() { act(false); }

void MyToolButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        act(false);
}

void MyToolButton::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        act(true);
}

void MyToolButton::act(bool isDouble)
{
    setChecked(true);
    Q_EMIT clicked(isDouble);
}
