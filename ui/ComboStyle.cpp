#include "ui/ComboStyle.h"

#include "productdata/Theme.h"
#include "ui/MyConmboBox.h"

#include <QListView>

namespace {

constexpr int visibleRows = 5;

/** Some styles pop up every item like a menu unless told otherwise. */
constexpr char listPopup[] = "QComboBox{combobox-popup: 0;}";
constexpr char disabledLook[] = "QComboBox:disabled{color: rgb(91,101,112);}";

} // namespace

QListView *styleCombo(MyConmboBox *combo, const char *folder)
{
    // In this order: a list that had its sheet before it belonged to the box would never get the sheet of the box.
    auto *const list = new QListView;
    combo->setView(list);
    combo->setMaxVisibleItems(visibleRows);
    combo->setStyleSheet(Theme::comboBox(Theme::pictureFolder(folder)) + QLatin1String(listPopup) +
                         QLatin1String(disabledLook));
    list->setStyleSheet(Theme::comboBoxList());
    return list;
}
