#pragma once

class QWidget;

/**
 * Where the window stood when the program last ended. On a Wayland desktop, where the compositor places windows, both
 * do nothing.
 */
namespace WindowPlace {

/** Moves the window there, if a screen still shows its middle. Call it before the window shows. */
void restore(QWidget &window);
/** Keeps the place for the next start. */
void keep(const QWidget &window);

} // namespace WindowPlace
