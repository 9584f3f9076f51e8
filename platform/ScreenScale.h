#pragma once

namespace platform {

/**
 * The part of the user's scaling of the primary screen, 125 % or 200 %, that leaves room for a window of this size in
 * pixels at 100 %: 1 where there is room for all of it, else less, but never so little that the window would be smaller
 * than at 100 %. 0 where the system doesn't tell what the user wants. Before the application is made.
 */
double scalingThatFits(int width, int height);

} // namespace platform
