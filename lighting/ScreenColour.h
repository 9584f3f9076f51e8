#pragma once

#include <QColor>

#include <optional>

/**
 * The colour of the screen under the mouse cursor: what is on show there, whoever drew it.
 * \return nothing, with the reason in the log, when the screen can't be captured, as on Wayland.
 */
std::optional<QColor> screenColourUnderCursor();
