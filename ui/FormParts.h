#pragma once

#include <QLatin1String>
#include <QRect>
#include <QWidget>

/**
 * A new child of a form. Style sheets and language files know it by its name.
 * @param place in pixels of the parent
 */
template<typename Widget>
Widget *addPlaced(QWidget *parent, const char *name, const QRect &place)
{
    auto *const widget = new Widget(parent);
    widget->setObjectName(QLatin1String(name));
    widget->setGeometry(place);
    return widget;
}
