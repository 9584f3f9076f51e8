#include "buttons/Buttoninterface.h"
#include "productdata/Theme.h"
#include "ui/ComboStyle.h"
#include "ui/LateStyle.h"
#include "ui/MyConmboBox.h"

#include <QToolButton>

namespace {

/** One sheet for the whole page: some hundred buttons of four kinds. %1 the pictures, %2 text, %3 label. */
const char *const sheet =
    "#widget QToolButton{border: 0px;color: rgb(%2);background-image: url(%1NumberOrigin.png);"
    "background-position:center;background-repeat:no-repeat;}"
    "#widget QToolButton:hover{background-image: url(%1NumberHover.png);}"
    "#widget QToolButton:checked{background-image: url(%1NumberClick.png);}"
    "#rowList QToolButton{border: 0px;color: rgb(%2);border-image: url(%1Row.png);}"
    "#rowList QToolButton:hover{border-image: url(%1RowHover.png);}"
    "#rowList QToolButton:pressed,#rowList QToolButton:checked{border-image: url(%1RowChecked.png);}"
    "#rowList QToolButton:focus{border-image: url(%1RowFocus.png);}"
    "#rowList QToolButton:checked:focus{border-image: url(%1RowCheckedFocus.png);}"
    "#rowList QLabel{color: rgb(%3);}"
    "#page_2 QToolButton{border: 0px;color: rgb(%2);border-image: url(%1BMenuTitle.png);}"
    "#page_2 QToolButton:hover{border-image: url(%1BMenuTitleHover.png);}"
    "#page_2 QToolButton:pressed,#page_2 QToolButton:checked{border-image: url(%1BMenuTitleCheckedB.png);}"
    "#stackedWidget_2 QToolButton{border: 0px;color: rgb(%2);border-image: url(%1CMenuTitle.png);}"
    "#stackedWidget_2 QToolButton:hover{border-image: url(%1CMenuTitleHover.png);}"
    "#stackedWidget_2 QToolButton:pressed,#stackedWidget_2 QToolButton:checked"
    "{border-image: url(%1CMenuTitleChecked.png);}"
    "#groupBox QStackedWidget QToolButton:focus{border-image: url(%1EntryFocus.png);}"
    "#groupBox QStackedWidget QToolButton:checked:focus{border-image: url(%1EntryCheckedFocus.png);}"
    "QScrollArea,QScrollArea>QWidget,QScrollArea>QWidget>QWidget{background: transparent;border: 0px;}"
    "#page_2,#page_3,#page_4,#page_5,#page_6,#page_7,#page_8,#page_10"
    "{border: 8px solid transparent;border-image: url(%1Panel.png) 8 8 8 8 stretch;}"
    "QScrollBar:vertical{width: 10px;background: transparent;margin: 0px;}"
    "QScrollBar::handle:vertical{min-height: 24px;border-radius: 3px;margin: 0px 2px;background: rgba(%3,110);}"
    "QScrollBar::handle:vertical:hover{background: rgba(%3,190);}"
    "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{height: 0px;}"
    "QScrollBar::add-page:vertical,QScrollBar::sub-page:vertical{background: transparent;}";

} // namespace

void Buttoninterface::makeStyles()
{
    using Theme::Colour;
    setAttribute(Qt::WA_StyledBackground);
    const QString text = Theme::rgb(Colour::ButtonColor);
    const QString label = Theme::rgb(Colour::LabelColor);
    new LateStyle(this, Theme::frameBackground(PictureFolder, objectName(), QStringLiteral("BackGround.png")) +
                            Theme::toolTip() + Theme::namedLabel(QStringLiteral("label_3")) +
                            QString::fromLatin1(sheet).arg(PictureFolder, text, label));
    styleCombo(form.ProjectChoose, "Buttoninterface");
    for (QToolButton *button : {form.Reset, form.ImportData, form.OutputData})
        new LateStyle(button, Theme::textButton(PictureFolder, QStringLiteral("Button.png"),
                                                QStringLiteral("ButtonHover.png"), QStringLiteral("ButtonClick.png")));
}
