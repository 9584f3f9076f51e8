#pragma once

class QStackedWidget;

/**
 * From now on a page of the stack that comes up takes the keyboard itself, not the control that had it when its window
 * was left. A menu of the page before closes: something else than the user has changed the page. Lists and menus of the
 * whole program open at once for that, without the system's effects.
 *
 * A stack gives the keyboard back to where it was, and that may be a list of a page that doesn't show any more: the
 * space bar, which starts a pairing wherever no control wants it, would open that list over the page on show.
 */
void givePagesTheFocus(QStackedWidget &pages);
