#include "maintenance/FormSetting.h"

#include "productdata/Theme.h"
#include "ui/LateStyle.h"

#include <QFrame>

FormSetting::FormSetting(QWidget *parent) : QWidget(parent)
{
    setFixedSize(883, 630);
    auto *const background = new QFrame(this);
    background->setObjectName(QStringLiteral("SettingPage"));
    background->setGeometry(rect());
    new LateStyle(background, Theme::frameBackground(Theme::pictureFolder("FormSetting"), background->objectName(),
                                                     QStringLiteral("BackGround.png")));
}
