#pragma once

class QComboBox;

/** Fills a list with the languages in themselves, in index order, and shows the user's. */
void fillLanguageList(QComboBox &list);
