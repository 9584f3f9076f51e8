#include "productdata/Theme.h"

#include "productdata/ConfigStore.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace {

struct ColourKey
{
    const char *key;
    const char *builtIn; ///< a readable default, so that a damaged product file doesn't give black on black
};

/** In the order of Theme::Colour. */
constexpr std::array<ColourKey, 10> colourKeys = {{
    {"LabelColor", "176,184,192"},
    {"ButtonColor", "236,240,244"},
    {"ComboxTextColor", "225,230,235"},
    {"ComboxSelectColor", "0,110,66"},
    {"ComboxBackGroundColor", "18,22,26"},
    {"LinEditColor", "236,240,244"},
    {"LinEditColorSecond", "225,230,235"},
    {"SliderColor", "0,255,153"},
    {"GroundColor", "13,16,19"},
    {"EdgeColor", "61,70,81"},
}};

/** What all entry fields share: round corners, and the menu that a right click opens. */
QString entryField(const QString &widgetClass)
{
    return QStringLiteral("%1{border-radius: 4px;}").arg(widgetClass) + Theme::menu();
}

} // namespace

QString Theme::pictureFolder(const char *name)
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/Picture/") + QLatin1String(name) +
           QLatin1Char('/');
}

QString Theme::rgb(Colour colour)
{
    const ColourKey &entry = colourKeys[static_cast<std::size_t>(colour)];
    const QStringList parts = ConfigStore::instance()->valueList(QStringLiteral("Option"), QLatin1String(entry.key));
    const auto isByte = [](const QString &part) {
        bool isNumber = false;
        const int number = part.trimmed().toInt(&isNumber);
        return isNumber && number >= 0 && number <= 255;
    };
    if (parts.size() != 3 || !std::all_of(parts.begin(), parts.end(), isByte))
        return QLatin1String(entry.builtIn);
    return parts.join(QLatin1Char(','));
}

QString Theme::rgb(Tone tone)
{
    const QStringList ground = rgb(Colour::GroundColor).split(QLatin1Char(','));
    const QStringList edge = rgb(Colour::EdgeColor).split(QLatin1Char(','));
    QStringList parts;
    for (int part = 0; part < ground.size(); ++part) {
        const int from = ground.at(part).toInt();
        const int mixed = from + (edge.at(part).toInt() - from) * static_cast<int>(tone) / 100;
        parts.append(QString::number(std::clamp(mixed, 0, 255)));
    }
    return parts.join(QLatin1Char(','));
}

QString Theme::label() { return QStringLiteral("QLabel{color: rgb(%1;);}").arg(rgb(Colour::LabelColor)); }

QString Theme::namedLabel(const QString &objectName)
{
    return QStringLiteral("#%1{color: rgb(%2;);}").arg(objectName, rgb(Colour::LabelColor));
}

QString Theme::checkBox(const QString &folder)
{
    return QStringLiteral("QCheckBox{color: rgb(%1;);}QCheckBox::indicator:checked {image: url(%2CheckBoxCheck.png);}"
                          "QCheckBox::indicator:unchecked {image: url(%2CheckBox.png);}"
                          "QCheckBox::indicator:unchecked:hover,QCheckBox::indicator:unchecked:focus"
                          "{image: url(%2CheckBoxHover.png);}")
        .arg(rgb(Colour::LabelColor), folder);
}

QString Theme::indicator(const QString &folder, const QString &widgetClass, const QString &name)
{
    return QStringLiteral("%1::indicator{width: 16px;height: 16px;image: url(%2%3.png);}"
                          "%1::indicator:hover{image: url(%2%3Hover.png);}"
                          "%1::indicator:checked{image: url(%2%3Check.png);}")
        .arg(widgetClass, folder, name);
}

QString Theme::toolButton(const QString &folder, const QString &plain, const QString &hover, const QString &click)
{
    return QStringLiteral("QToolButton{border:0px;background-image: url(%1%2);background-position:center;"
                          "background-repeat:no-repeat;}QToolButton:hover{background-image: url(%1%3);}"
                          "QToolButton:pressed{background-image: url(%1%4);}")
        .arg(folder, plain, hover, click);
}

QString Theme::pageButton(const QString &folder, const QString &plain, const QString &hover, const QString &checked,
                          const QString &disabled)
{
    return QStringLiteral("QToolButton{border: 0px;background-position:center;background-repeat:no-repeat;"
                          "background-image: url(%1%2);}QToolButton:hover{background-image: url(%1%3);}"
                          "QToolButton:checked{background-image: url(%1%4);}"
                          "QToolButton:disabled{background-image: url(%1%5);}")
        .arg(folder, plain, hover, checked, disabled);
}

QString Theme::textButton(const QString &folder, const QString &plain, const QString &hover, const QString &click)
{
    return QStringLiteral("QToolButton{border-style: solid;border-width: 1px 4px;color: rgb(%1);"
                          "border-image: url(%2%3) 1 4 1 4 stretch;}"
                          "QToolButton:hover,QToolButton:focus{border-image: url(%2%4) 1 4 1 4 stretch;}"
                          "QToolButton:pressed{border-image: url(%2%5) 1 4 1 4 stretch;}")
        .arg(rgb(Colour::ButtonColor), folder, plain, hover, click);
}

QString Theme::pushButton(const QString &folder, const QString &plain, const QString &hover, const QString &click)
{
    return QStringLiteral("QPushButton{border-style: solid;border-width: 1px 4px;color: rgb(%1);"
                          "border-image: url(%2%3) 1 4 1 4 stretch;}"
                          "QPushButton:hover{border-image: url(%2%4) 1 4 1 4 stretch;}"
                          "QPushButton:pressed{border-image: url(%2%5) 1 4 1 4 stretch;}")
        .arg(rgb(Colour::ButtonColor), folder, plain, hover, click);
}

QString Theme::toolButtonFocus(const QString &folder, const QString &hover)
{
    return QStringLiteral("QToolButton:focus:!pressed{background-image: url(%1%2);}").arg(folder, hover);
}

QString Theme::comboBox(const QString &folder)
{
    return QStringLiteral(
               "QComboBox{border: 1px solid gray; color: rgb(%1); border-image: url(%4ComboboxBack.png);}"
               "QComboBox::drop-down:button{border-radius:5px; background:rgb(%2);} "
               "QComboBox::down-arrow{image: url(%4Menu.png); right: 8px; }"
               "QComboBox::down-arrow:on{ image: url(%4MenuClicked.png);}"
               "QComboBox QAbstractItemView::item{height:25px;}"
               "QComboBox QAbstractItemView {outline: 0px solid gray; border: 1px  solid gray;color: rgb(%1); "
               "border-image: url(%4ComboboxTextBack.png);selection-background-color: rgb(%3); }")
        .arg(rgb(Colour::ComboxTextColor), rgb(Colour::ComboxBackGroundColor), rgb(Colour::ComboxSelectColor), folder);
}

QString Theme::comboBoxList()
{
    return QStringLiteral("QListView::item:selected{background-color: rgb(%1);}"
                          "QListView::item:hover{background-color: rgb(%1);}")
        .arg(rgb(Colour::ComboxSelectColor));
}

QString Theme::scrollBar()
{
    return QStringLiteral("QScrollBar:vertical{width: 8px;border: 0px;margin: 0px;background: rgb(%1);}"
                          "QScrollBar::handle:vertical{background: rgb(%2);border-radius: 3px;margin: 1px;"
                          "min-height: 24px;}QScrollBar::handle:vertical:hover{background: rgb(%3);}"
                          "QScrollBar::add-line,QScrollBar::sub-line{height: 0px;}"
                          "QScrollBar::add-page,QScrollBar::sub-page{background: none;}")
        .arg(rgb(Tone::Sunken), rgb(Tone::Edge), rgb(Tone::Faint));
}

QString Theme::slider(const QString &folder)
{
    return QStringLiteral("QSlider:groove:horizontal{height:2px;left: 0px;right: 0px;border:0px;border-radius:6px;"
                          "background:rgba(0,0,0,50);}QSlider:handle:horizontal{ width:  5px;height: 50px;  "
                          "margin-top: -20px;margin-left: 0px; margin-bottom: -20px;margin-right: 0px; border-image: "
                          "url(%1HuaKuai.png);} QSlider:sub-page:horizontal{background-color: rgb(%2;);}"
                          "QSlider:add-page:horizontal{background-color: rgb(255, 255, 255);}"
                          "QSlider:handle:horizontal:hover,QSlider:handle:horizontal:pressed,"
                          "QSlider:handle:horizontal:focus{border-image: "
                          "url(%1HuaKuaiHover.png);}")
        .arg(folder, rgb(Colour::SliderColor));
}

QString Theme::spinBox()
{
    return QStringLiteral("QSpinBox{background-color: transparent;color: rgb(%1;);border: 1px  solid gray;}"
                          "QSpinBox:hover{background-color: transparent;color: rgb(%1;);border: 1px  solid gray;}")
               .arg(rgb(Colour::LinEditColorSecond)) +
           entryField(QStringLiteral("QSpinBox"));
}

QString Theme::lineEdit()
{
    return QStringLiteral(
               "QLineEdit{background-color: transparent;color: rgb(%1);border: 1px solid gray;padding: 0 6px;}")
               .arg(rgb(Colour::LinEditColor)) +
           entryField(QStringLiteral("QLineEdit"));
}

QString Theme::focusFrame(const QString &widgetClass)
{
    return QStringLiteral("%1:focus{border: 1px solid rgb(%2);}").arg(widgetClass, rgb(Colour::SliderColor));
}

QString Theme::choiceButton(const QString &folder, const QString &plain, const QString &hover, const QString &checked)
{
    return QStringLiteral("QToolButton{border:0px;color: rgb(%1);border-image: url(%2%3);}"
                          "QToolButton:hover{border-image: url(%2%4);}"
                          "QToolButton:checked{border-image: url(%2%5);color: rgb(%6);}"
                          "QToolButton:focus{text-decoration: underline;}")
        .arg(rgb(Colour::ButtonColor), folder, plain, hover, checked, rgb(Colour::SliderColor));
}

QString Theme::menu()
{
    return QStringLiteral("QMenu{background: rgb(%2);color: rgb(%1);border: 1px solid rgb(%5);padding: 4px;}"
                          "QMenu::item{padding: 6px 24px;border-radius: 4px;}QMenu::item:selected{background: rgb(%3);}"
                          "QMenu::item:disabled{color: rgb(%4);background: transparent;}"
                          "QMenu::separator{height: 1px;margin: 4px 8px;background: rgb(%5);}")
        .arg(rgb(Colour::ComboxTextColor), rgb(Colour::ComboxBackGroundColor), rgb(Colour::ComboxSelectColor),
             rgb(Tone::Faint), rgb(Tone::Edge));
}

QString Theme::toolTip()
{
    return QStringLiteral("QToolTip{color: rgb(%1);background-color: rgb(%2);border: 1px solid gray;padding: 4px;}")
        .arg(rgb(Colour::ComboxTextColor), rgb(Colour::ComboxBackGroundColor));
}

QString Theme::switchButton(const QString &folder, const QString &objectName)
{
    return QStringLiteral("#%1{border:0px;background-position:center;background-repeat:no-repeat;"
                          "background-image: url(%2Close.png);}"
                          "#%1:hover,#%1:focus{background-image: url(%2CloseHover.png);}"
                          "#%1:checked{background-image: url(%2Open.png);}"
                          "#%1:checked:hover,#%1:checked:focus{background-image: url(%2OpenHover.png);}")
        .arg(objectName, folder);
}

QString Theme::frameBackground(const QString &folder, const QString &objectName, const QString &picture)
{
    return QStringLiteral("#%1{border:0px;background-image: url(%2%3);}").arg(objectName, folder, picture);
}
