#include "macro/Macro.h"
#include "macro/MacroTimeLine.h"
#include "macro/RowPainter.h"
#include "productdata/Theme.h"
#include "ui/LateStyle.h"
#include "ui/MyConmboBox.h"

#include <QListWidget>
#include <QPixmap>

namespace {

/** The two lists and their scroll bars; RowPainter paints the rows. %1 is the folder of the pictures. */
const char *const lists =
    "QListWidget{background: transparent;color: white;border: 1px solid rgb(%2);border-radius: 4px;outline: 0px;}"
    "QListWidget:focus{border: 1px solid rgb(%3);}"
    "QScrollBar:vertical{width: 20px;background: rgb(30,30,30);margin: 20px 0px 20px 0px;}"
    "QScrollBar::handle:vertical{background: rgb(117,117,117);min-height: 24px;margin: 0px 4px;border-radius: 4px;}"
    "QScrollBar::sub-line:vertical,QScrollBar::add-line:vertical{height: 20px;background: rgb(30,30,30);}"
    "QScrollBar::sub-line:vertical{subcontrol-position: top;subcontrol-origin: margin;}"
    "QScrollBar::add-line:vertical{subcontrol-position: bottom;subcontrol-origin: margin;}"
    "QScrollBar::up-arrow:vertical{image: url(%1Up.png);width: 15px;height: 15px;}"
    "QScrollBar::down-arrow:vertical{image: url(%1Down.png);width: 15px;height: 15px;}"
    "QScrollBar::sub-page:vertical,QScrollBar::add-page:vertical{background: transparent;}";

/** The rim of the picture keeps its width on the wide button. */
const char *const buttons = "QToolButton{border: 4px solid;color: rgb(%2);border-image: url(%1Button.png) 4 stretch;}"
                            "QToolButton:hover{border-image: url(%1ButtonHover.png) 4 stretch;}"
                            "QToolButton:pressed{border-image: url(%1ButtonClick.png) 4 stretch;}"
                            "QToolButton:disabled{color: rgb(127,127,127);border-image: url(%1Button.png) 4 stretch;}";

/** The text stands right of the sign. */
const char *const recordButton = "#%3{border: 0px;color: rgb(%2);padding-left: 24px;background-position: center;"
                                 "background-repeat: no-repeat;background-image: url(%1%4.png);}"
                                 "#%3:hover{background-image: url(%1%4Hover.png);}";

const char *const numbers = "QSpinBox{background: black;color: rgb(%1);border: 0px;border-radius: 4px;}"
                            "QSpinBox:focus{border: 1px solid rgb(%2);}";

const char *const rest = "#rule{border: 0px;background: rgb(%1);}#hint{color: rgb(127,127,127);}";

} // namespace

void Macro::setStyles()
{
    using Theme::Colour;
    using Theme::rgb;
    using Theme::Tone;
    const QString pictures = Theme::pictureFolder("Macro");
    const auto record = [&](const char *name, const char *picture) {
        return QString::fromLatin1(recordButton)
            .arg(pictures, rgb(Colour::ButtonColor), QLatin1String(name), QLatin1String(picture));
    };
    setAttribute(Qt::WA_StyledBackground);
    new LateStyle(this,
                  Theme::frameBackground(pictures, objectName(), QStringLiteral("BackGround.png")) + Theme::label() +
                      Theme::checkBox(pictures) +
                      QString::fromLatin1(lists).arg(pictures, rgb(Tone::Hairline), rgb(Tone::Faint)) +
                      QString::fromLatin1(buttons).arg(pictures, rgb(Colour::ButtonColor)) +
                      record("StartRecord", "Record") + record("StopRecord", "Stop") +
                      QString::fromLatin1(numbers).arg(rgb(Colour::LinEditColorSecond), rgb(Colour::SliderColor)) +
                      QString::fromLatin1(rest).arg(rgb(Tone::Hairline)) + Theme::toolTip() + Theme::menu());
    for (QListWidget *list : {form.listWidgetHong, form.listWidgetKey})
        list->setItemDelegate(new RowPainter(list));
    form.timeLine->setWarningPicture(QPixmap(pictures + QStringLiteral("Warning.png")));
}
