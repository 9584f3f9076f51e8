#pragma once

/** Gives what is selected in a text the theme's colours, wherever no style sheet says so. Once, before the widgets. */
void setUpSelection();
