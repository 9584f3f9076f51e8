#include "ui/ComboStyle.h"

#include "productdata/Theme.h"
#include "ui/LateStyle.h"
#include "ui/MyConmboBox.h"

#include <QListView>
#include <QScrollBar>

namespace {

constexpr int visibleRows = 5;

/** Some styles pop up every item like a menu unless told otherwise. */
const char *const listPopup = "QComboBox{combobox-popup: 0;}";

/** The letters keep off the edge of the list; the border has every row drawn by the sheet, not the selected one alone.
 */
const char *const listRow = "QListView::item{padding-left: 6px;border: 0px;}";

/** The states that the shared template leaves out: under the mouse, with the keyboard, and what can't be used now. */
QString states()
{
    return QStringLiteral("QComboBox:hover,QComboBox:focus{border: 1px solid rgb(%3);border-radius: 4px;"
                          "border-image: none;background: rgb(%2);}QComboBox:focus{border-color: rgb(%1);}"
                          "QComboBox:disabled{color: rgb(%3);}QComboBox::down-arrow:disabled{image: none;}")
        .arg(Theme::rgb(Theme::Colour::SliderColor), Theme::rgb(Theme::Tone::Sunken), Theme::rgb(Theme::Tone::Faint));
}

} // namespace

QListView *styleCombo(MyConmboBox *combo, const char *folder)
{
    // In this order: a list that had its sheet before it belonged to the box would never get the sheet of the box.
    auto *const list = new QListView;
    new LateStyle(combo, Theme::comboBox(Theme::pictureFolder(folder)) + QLatin1String(listPopup) + states());
    combo->setView(list);
    combo->setMaxVisibleItems(visibleRows);
    list->setStyleSheet(Theme::comboBoxList() + QLatin1String(listRow));
    // It looks into the sheets of its parents as soon as the list belongs to the box, and no more after that.
    list->verticalScrollBar()->setStyleSheet(Theme::scrollBar());
    // The list has an edge of its own; the style takes the frame round it away only when a page gets a sheet later on.
    if (auto *const frame = qobject_cast<QFrame *>(list->parentWidget()))
        frame->setFrameShape(QFrame::NoFrame);
    // A style that pops up like a menu has switched it off, and nothing would tell that there is more.
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    return list;
}
