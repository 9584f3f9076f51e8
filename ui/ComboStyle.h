#pragma once

class MyConmboBox;
class QListView;

/**
 * Gives a combo box the theme's look, with the pictures of a folder such as "Sensor", and a list of at most five
 * visible rows. Before it has items: a list that gets a sheet measures its rows, and loads the fonts of letters that
 * nobody sees before it pops up. \return the list that pops up.
 */
QListView *styleCombo(MyConmboBox *combo, const char *folder);
