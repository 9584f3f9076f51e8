#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>

class QWidget;

/**
 * The colour of the screen under the mouse cursor: what is on show there, whoever drew it. Where the screen can't be
 * captured, as on Wayland, it is what the program's own window draws there, and the log says so.
 * \param widget what the mouse is on, at `position` of it
 */
QColor screenColourUnderCursor(const QWidget *widget, const QPoint &position);

/** The same from a capture that was made there; an empty or a black one may be no capture at all. */
QColor colourOnShow(const QImage &capture, const QWidget *widget, const QPoint &position);
