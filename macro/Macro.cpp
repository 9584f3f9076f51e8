#include "macro/Macro.h"

#include "productdata/Theme.h"
#include "ui/LateStyle.h"

#include <QFrame>

Macro::Macro(QWidget *parent) : QWidget(parent)
{
    setFixedSize(883, 630);
    auto *const background = new QFrame(this);
    background->setObjectName(QStringLiteral("MacroPage"));
    background->setGeometry(rect());
    new LateStyle(background, Theme::frameBackground(Theme::pictureFolder("Macro"), background->objectName(),
                                                     QStringLiteral("BackGround.png")));
}
