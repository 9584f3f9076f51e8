#pragma once

#include <QString>
#include <QWidget>

/**
 * Gives a widget a style sheet that may be the one that it has. Qt would style the widget and all its children anew
 * even then, and records and connects mostly bring what is shown already.
 */
inline void changeSheet(QWidget *widget, const QString &sheet)
{
    if (widget->styleSheet() != sheet)
        widget->setStyleSheet(sheet);
}
