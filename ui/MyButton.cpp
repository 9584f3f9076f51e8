#include "ui/MyButton.h"

void MyButton::enterEvent(QEvent *event)
{
    setCursor(Qt::PointingHandCursor);
    QPushButton::enterEvent(event);
}

void MyButton::leaveEvent(QEvent *event)
{
    setCursor(Qt::ArrowCursor);
    QPushButton::leaveEvent(event);
}
