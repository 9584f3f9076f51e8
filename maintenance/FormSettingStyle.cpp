#include "maintenance/FormSetting.h"
#include "maintenance/Panel.h"
#include "productdata/Theme.h"
#include "ui/ChangeSheet.h"
#include "ui/LateStyle.h"
#include "ui/MyConmboBox.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>

namespace {

const char *const lines = "#rule{border: 0px;background: rgb(%1);}";
const char *const clear = "#scrollArea,#SettingPage,QTextEdit{background: transparent;border: 0px;}";
const char *const description = "QTextEdit{color: rgb(%1);}";
/** The line over which the page scrolls: opaque. */
const char *const versionLine = "#label{color: rgb(%1);background: rgb(%2);border: 1px solid rgb(%3);"
                                "border-radius: 4px;}";
/** The window cuts the lower 20 px of the page off, and the handle is to come to its end above them. */
const char *const scrollPlace = "QScrollBar:vertical{margin: 8px 2px 28px 2px;width: 12px;background: transparent;}";
/** The address ends as far from the right edge of the panel as from the lower one. */
const char *const link = "QPushButton{border: 0px;padding-right: 10px;color: rgb(%1);text-align: right;}"
                         "QPushButton:hover{text-decoration: underline;}";
const char *const icons = "QToolButton{border: 0px;background: url(%1Title.png) no-repeat center;}"
                          "#toolButton{background: url(%1Mouse.png) no-repeat center;}"
                          "#toolButton_2,#toolButton_3{background: url(%1Info.png) no-repeat center;}";

QString updateButtonSheet(bool isOffered)
{
    return Theme::pushButton(Theme::pictureFolder("FormSetting"),
                             isOffered ? QStringLiteral("WaitUpdate.png") : QStringLiteral("Confirm.png"),
                             isOffered ? QStringLiteral("WaitUpdateHover.png") : QStringLiteral("ConfirmHover.png"),
                             QStringLiteral("ConfirmClick.png"));
}

} // namespace

void FormSetting::setStyles()
{
    using Theme::Colour;
    using Theme::Tone;
    const QString pictures = Theme::pictureFolder("FormSetting");
    const QString accent = Theme::rgb(Colour::SliderColor);
    const QString grey = Theme::rgb(Colour::LabelColor);
    const QString hairline = Theme::rgb(Tone::Hairline);
    new LateStyle(form.scrollArea,
                  Theme::label() + QString::fromLatin1(lines).arg(hairline) + QLatin1String(clear) +
                      QString::fromLatin1(icons).arg(pictures) + QString::fromLatin1(description).arg(grey) +
                      QString::fromLatin1(versionLine).arg(grey, Theme::rgb(Tone::Window), hairline) +
                      Theme::indicator(pictures, QStringLiteral("QCheckBox"), QStringLiteral("CheckBox")) +
                      Theme::indicator(pictures, QStringLiteral("QRadioButton"), QStringLiteral("Radio")));
    form.background->setPicture(pictures + QStringLiteral("Panel.png"));
    form.scrollArea->verticalScrollBar()->setStyleSheet(Theme::scrollBar() + QLatin1String(scrollPlace));
    for (QPushButton *button : {form.pushButton, form.pushButton_2})
        new LateStyle(button, Theme::pushButton(pictures, QStringLiteral("Button.png"),
                                                QStringLiteral("ButtonHover.png"), QStringLiteral("ButtonClick.png")));
    for (QPushButton *button : {form.pushButton_3, form.pushButton_4})
        button->setStyleSheet(QString::fromLatin1(link).arg(accent) + Theme::toolTip());
    for (QPushButton *button : {form.Receive, form.Mouse})
        new LateStyle(button, updateButtonSheet(false));
    // None of them does anything; under the mouse they would look as if.
    for (QToolButton *still :
         form.titles + QVector<QToolButton *>{form.toolButton, form.toolButton_2, form.toolButton_3})
        still->setAttribute(Qt::WA_TransparentForMouseEvents);
}

void FormSetting::showUpdateButton(QPushButton *button, bool isOffered)
{
    changeSheet(button, updateButtonSheet(isOffered));
}
