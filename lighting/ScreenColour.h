#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>

#include <optional>

/**
 * The colour of the screen under the mouse cursor: what is on show there, whoever drew it. Where the screen can't be
 * captured, as on Wayland, it is what the program's own window draws there, and the log says so.
 * \return nothing, with the reason in the log, when neither tells a colour.
 */
std::optional<QColor> screenColourUnderCursor();

/** The same from a capture that was made at `place` of the screen; an empty or a black one may be no capture at all. */
std::optional<QColor> colourOnShow(const QImage &capture, const QPoint &place);
