#pragma once

class QWidget;

/**
 * Lets a window have the keyboard itself where a widget of it would that lies on a page behind another: a page that
 * comes back is given what had the keyboard there before. Space opened a list that nobody saw then, in place of what it
 * does everywhere. For the pages that the window has by now.
 */
void keepFocusInSight(QWidget *window);
