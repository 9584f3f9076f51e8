#include "lighting/LampLight.h"
#include "lighting/LightTables.h"
#include "productdata/Theme.h"
#include "ui/LateStyle.h"

#include <QLabel>
#include <QToolButton>

namespace {

const char *const lines = "#rule{border: 0px;background: rgb(%1);}";
const char *const presetButton = "#%2{border: 0px;background: url(%1Color%3.png) no-repeat center;}"
                                 "#%2:hover{border: 1px solid rgb(%5);border-radius: 5px;}"
                                 "#%2:pressed{border: 1px solid rgb(%4);border-radius: 5px;}";

} // namespace

void LampLight::setStyles()
{
    using Theme::Colour;
    const QString accent = Theme::rgb(Colour::SliderColor);
    setAttribute(Qt::WA_StyledBackground);
    QString presetButtons; // late as well: each has a picture of its own
    for (std::size_t number = 0; number < form.presets.size(); ++number)
        presetButtons += QString::fromLatin1(presetButton)
                             .arg(pictures, form.presets[number]->objectName(), QString(QChar(char('A' + number))),
                                  accent, Theme::rgb(Colour::ComboxTextColor));
    new LateStyle(this, Theme::frameBackground(pictures, objectName(), QStringLiteral("BackGround.png")) +
                            Theme::label() + QString::fromLatin1(lines).arg(Theme::rgb(Theme::Tone::Hairline)) +
                            presetButtons);

    new LateStyle(form.RippeControl, Theme::switchButton(pictures, form.RippeControl->objectName()));

    form.label_7->setPixmap(QPixmap(pictures + QStringLiteral("ColorBoard.png")));
    form.label_7->setCursor(Qt::CrossCursor);
    form.label_9->setPixmap(QPixmap(pictures + QStringLiteral("Title.png")));
    new LateStyle(form.labelPreView,
                  QStringLiteral("QLabel{background-image: url(%1PreviewColor.png);}").arg(pictures));
    for (QToolButton *button : {form.AddR, form.AddG, form.AddB})
        new LateStyle(button, Theme::toolButton(pictures, QStringLiteral("Add.png"), QStringLiteral("AddHover.png"),
                                                QStringLiteral("AddClick.png")));
    for (QToolButton *button : {form.ReduceR, form.ReduceG, form.ReduceB})
        new LateStyle(button, Theme::toolButton(pictures, QStringLiteral("Reduce.png"),
                                                QStringLiteral("ReduceHover.png"), QStringLiteral("ReduceClick.png")));
}
