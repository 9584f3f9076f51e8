#pragma once

namespace platform {

/**
 * The factor, the same across and down, that turns a cursor position as QCursor::pos tells it into the position that
 * QScreen::grabWindow of the primary screen takes. At least 1; 1 when the screen can't be asked.
 */
double pixelScale();

} // namespace platform
