#include "ui/mytoolButtonEnter.h"

void mytoolButtonEnter::enterEvent(QEvent *event)
{
    QToolButton::enterEvent(event);
    bool isNumber = false;
    const int index = objectName().remove(QLatin1String("btn")).toInt(&isNumber);
    // A copy: showing a device may rebuild the buttons, this one among them.
    const auto show = showDevice;
    if (isNumber && show)
        show(index);
}

void mytoolButtonEnter::leaveEvent(QEvent *event) { QToolButton::leaveEvent(event); }
