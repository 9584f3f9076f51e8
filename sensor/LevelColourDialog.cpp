#include "sensor/LevelColourDialog.h"

#include "productdata/Theme.h"

namespace {

/** %1 text, %2 ground of a field, %3 the accent. */
const char *const darkStyle =
    "QColorDialog{background-color: rgb(21,25,30);}"
    "QLabel{color: rgb(%1);}"
    "QSpinBox,QLineEdit{color: rgb(%1);background-color: rgb(%2);border: 1px solid gray;"
    "border-radius:2px;padding: 2px;}"
    "QSpinBox:focus,QLineEdit:focus{border: 1px solid rgb(%3);}"
    "QPushButton{color: rgb(%1);background-color: rgb(38,44,52);border: 1px solid rgb(61,70,81);"
    "border-radius:4px;padding: 5px 14px;}"
    "QPushButton:hover{background-color: rgb(50,58,68);}"
    "QPushButton:focus,QPushButton:default{border: 1px solid rgb(%3);}"
    "QPushButton:pressed{background-color: rgb(24,28,33);}";

} // namespace

LevelColourDialog::LevelColourDialog(QWidget *parent)
{
    // The system's own would bring the system's look, where there is one.
    setOption(DontUseNativeDialog);
    setStyleSheet(QString::fromLatin1(darkStyle).arg(Theme::rgb(Theme::Colour::ComboxTextColor),
                                                     Theme::rgb(Theme::Colour::ComboxBackGroundColor),
                                                     Theme::rgb(Theme::Colour::SliderColor)));
    // A child of the page before it had a sheet of its own would keep the buttons of the page's style.
    setParent(parent, windowFlags());
}
