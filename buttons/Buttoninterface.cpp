#include "buttons/Buttoninterface.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/Worker.h"
#include "portwire/portwire.h"
#include "productdata/Theme.h"
#include "ui/LateStyle.h"

#include <QFrame>
#include <QLabel>

Buttoninterface::Buttoninterface(QWidget *parent)
    : QWidget(parent), background(new QFrame(this)), mousePicture(new QLabel(background))
{
    setFixedSize(883, 630);
    background->setObjectName(QStringLiteral("ButtonPage"));
    background->setGeometry(rect());
    new LateStyle(background, Theme::frameBackground(Theme::pictureFolder("Buttoninterface"), background->objectName(),
                                                     QStringLiteral("BackGround.png")));
    mousePicture->setObjectName(QStringLiteral("MousePicture"));
    mousePicture->setGeometry(225, 129, 432, 356);

    worker = std::make_unique<Worker>();
    PostMsg *const hub = postMsg();
    connect(hub, &PostMsg::SigUpDataLightUIButton, this, &Buttoninterface::SlotUpDataButtonUIButton,
            Qt::BlockingQueuedConnection);
    connect(hub, &PostMsg::SigUpDataButtonUIC, this, &Buttoninterface::SlotUpDataButtonUIB);
    connect(hub, &PostMsg::SigFormReset, this, &Buttoninterface::SlotFormResetButton, Qt::BlockingQueuedConnection);
    connect(hub, &PostMsg::SigMouseIndex, this, &Buttoninterface::SlotMouseIndex);
}

Buttoninterface::~Buttoninterface()
{
    StopUsbChanged();
    worker.reset();
}

void Buttoninterface::SlotUpDataButtonUIButton(FlashDataMap DataMap)
{
    ButtonUiLoaded = false;
    SlotUpDataButtonUIB(DataMap);
    ButtonUiLoaded = true;
}

void Buttoninterface::SlotUpDataButtonUIB(FlashDataMap) { const FlagScope updating(ButtonUiUpdating); }

void Buttoninterface::SlotFormResetButton() { const FlagScope updating(ButtonUiUpdating); }

void Buttoninterface::SlotMouseIndex(int index)
{
    if (index != 0 && index != 1)
        return;
    mousePicture->setPixmap(
        QPixmap(Theme::pictureFolder("Buttoninterface") + QStringLiteral("mouse%1.png").arg(index)));
}
