#pragma once

class MyConmboBox;
class QListView;

/**
 * Gives a combo box the theme's look, with the pictures of a folder such as "Sensor", and a list of at most five
 * visible rows. \return the list that pops up.
 */
QListView *styleCombo(MyConmboBox *combo, const char *folder);
