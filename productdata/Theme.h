#pragma once

#include <QString>

/**
 * The look as data: picture folders beside the executable, colours of the product file, and the style-sheet templates
 * that every page fills with them. The templates stand here and nowhere else.
 */
namespace Theme {

/** Full path of a picture folder with a closing slash, such as pictureFolder("Sensor"). */
QString pictureFolder(const char *name);

/** Colour keys of the section `Option`. */
enum class Colour {
    LabelColor,
    ButtonColor,
    ComboxTextColor,
    ComboxSelectColor,
    ComboxBackGroundColor,
    LinEditColor,
    LinEditColorSecond,
    SliderColor,
    GroundColor, ///< the darkest ground, into which fields are sunk
    EdgeColor    ///< the edge of what can be acted on
};

/** "red,green,blue" of a colour key; the built-in colour when the key doesn't hold three numbers of 0 to 255. */
QString rgb(Colour colour);

/**
 * The neutral colours between and round `GroundColor` and `EdgeColor`: how far they are on the way from the one to the
 * other, in percent. A theme names the two, and everything that has no picture follows.
 */
enum class Tone {
    Deep = -6,     ///< the back of a well
    Sunken = 0,    ///< a field that is typed into
    Well = 9,      ///< the foot of a well
    Window = 17,   ///< what floats over the page
    Pressed = 23,  ///< the face of a button
    Raised = 52,   ///< the face of a button
    Hairline = 62, ///< between two groups, round a panel
    Hover = 77,    ///< the face of a button
    Edge = 100,
    Faint = 163 ///< letters of what can't be used now
};

/** "red,green,blue" of a neutral colour. */
QString rgb(Tone tone);

/** Text colour of every label below the widget. */
QString label();
/** Text colour of one label, by object name. */
QString namedLabel(const QString &objectName);
QString checkBox(const QString &folder);
/** A check box or a radio button without text, of 16 px: pictures NAME, NAMEHover and NAMECheck of the folder. */
QString indicator(const QString &folder, const QString &widgetClass, const QString &name);
/** A tool button with pictures for plain, hover and pressed. Pictures are file names in the folder. */
QString toolButton(const QString &folder, const QString &plain, const QString &hover, const QString &click);
/** A page button with pictures for plain, hover and checked, and one for while no other page can be reached. */
QString pageButton(const QString &folder, const QString &plain, const QString &hover, const QString &checked,
                   const QString &disabled);
/**
 * A confirm-like button with text: `ButtonColor`, a picture, one for hover or the keyboard, and one for pressed. The
 * corners of the picture keep their shape on a button of any width.
 */
QString textButton(const QString &folder, const QString &plain, const QString &hover, const QString &click);
/** The same for a push button, which has no keyboard of its own. */
QString pushButton(const QString &folder, const QString &plain, const QString &hover, const QString &click);
/** Appended to toolButton(): the one that has the keyboard looks as under the mouse. */
QString toolButtonFocus(const QString &folder, const QString &hover);
QString comboBox(const QString &folder);
QString comboBoxList();
/** A thin upright scroll bar, for the sheet of what scrolls. */
QString scrollBar();
QString slider(const QString &folder);
QString spinBox();
QString lineEdit();
/** Appended to the sheet of an entry field: its frame lights up while it has the keyboard. */
QString focusFrame(const QString &widgetClass);
/** A checkable button with text, one of a row of choices: pictures for plain, hover and checked. */
QString choiceButton(const QString &folder, const QString &plain, const QString &hover, const QString &checked);
/** Menus; entry fields have it in their own sheets. */
QString menu();
/** A hint over a control, for the widget below which the hints belong. */
QString toolTip();
/** A checkable switch, by object name: "Open.png" when checked, else "Close.png"; both with "Hover", the keyboard's
 * too. */
QString switchButton(const QString &folder, const QString &objectName);
/** A frame, by object name, with a picture as background. */
QString frameBackground(const QString &folder, const QString &objectName, const QString &picture);

} // namespace Theme
