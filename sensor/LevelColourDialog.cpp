#include "sensor/LevelColourDialog.h"

#include "productdata/Theme.h"

#include <QPushButton>

namespace {

/** %1 text, %2 ground of a field, %3 the accent, %4 the dialog, %5 to %7 a button's face, %8 its edge. */
const char *const darkStyle = "QColorDialog{background-color: rgb(%4);}"
                              "QLabel{color: rgb(%1);}"
                              "QSpinBox,QLineEdit{color: rgb(%1);background-color: rgb(%2);border: 1px solid gray;"
                              "border-radius:2px;padding: 2px;}"
                              "QSpinBox::up-button,QSpinBox::down-button{width: 0px;border: 0px;}"
                              "QSpinBox:focus,QLineEdit:focus{border: 1px solid rgb(%3);}"
                              "QPushButton{color: rgb(%1);background-color: rgb(%5);border: 1px solid rgb(%8);"
                              "border-radius:4px;padding: 5px 14px;}"
                              "QPushButton:hover{background-color: rgb(%6);}"
                              "QPushButton:focus,QPushButton:default{border: 1px solid rgb(%3);}"
                              "QPushButton:pressed{background-color: rgb(%7);}";

} // namespace

LevelColourDialog::LevelColourDialog(QWidget *parent)
{
    // The system's own would bring the system's look, where there is one.
    setOption(DontUseNativeDialog);
    using Theme::Colour;
    using Theme::Tone;
    setStyleSheet(QString::fromLatin1(darkStyle).arg(
        Theme::rgb(Colour::ComboxTextColor), Theme::rgb(Colour::ComboxBackGroundColor), Theme::rgb(Colour::SliderColor),
        Theme::rgb(Tone::Window), Theme::rgb(Tone::Raised), Theme::rgb(Tone::Hover), Theme::rgb(Tone::Pressed),
        Theme::rgb(Tone::Edge)));
    // A child of the page before it had a sheet of its own would keep the buttons of the page's style.
    setParent(parent, windowFlags());
    // Those of the style are drawn for light buttons.
    for (QPushButton *button : findChildren<QPushButton *>())
        button->setIcon({});
}
