#include "ui/ComboStyle.h"

#include "productdata/Theme.h"
#include "ui/MyConmboBox.h"

#include <QListView>

namespace {

constexpr int visibleRows = 5;

/** Some styles pop up every item like a menu unless told otherwise. */
const char *const listPopup = "QComboBox{combobox-popup: 0;}";

/** The states that the shared template leaves out: what has the keyboard, and what can't be used now. */
QString states()
{
    return QStringLiteral("QComboBox:focus{border: 1px solid rgb(%1);border-radius: 4px;border-image: none;"
                          "background: rgb(%2);}QComboBox:disabled{color: rgb(%3);}")
        .arg(Theme::rgb(Theme::Colour::SliderColor), Theme::rgb(Theme::Tone::Sunken), Theme::rgb(Theme::Tone::Faint));
}

} // namespace

QListView *styleCombo(MyConmboBox *combo, const char *folder)
{
    // In this order: a list that had its sheet before it belonged to the box would never get the sheet of the box.
    auto *const list = new QListView;
    combo->setView(list);
    combo->setMaxVisibleItems(visibleRows);
    combo->setStyleSheet(Theme::comboBox(Theme::pictureFolder(folder)) + QLatin1String(listPopup) + states());
    list->setStyleSheet(Theme::comboBoxList() + Theme::scrollBar());
    // A style that pops up like a menu has switched it off, and nothing would tell that there is more.
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    return list;
}
