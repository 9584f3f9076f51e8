#include "app/ChooserEntry.h"

#include "app/ChooserList.h"
#include "app/ModelNames.h"
#include "devicelink/DeviceIdentity.h"
#include "productdata/Theme.h"
#include "ui/mytoolButtonEnter.h"

#include <QLabel>

namespace {

constexpr QSize pictureSize(284, 360);
constexpr QSize statusSize(32, 32);
constexpr QSize receiverSize(42, 26);

QString folder() { return Theme::pictureFolder("DialogChange"); }

QLabel *makeLabel(QWidget *page, const QString &name, QPoint place, QSize size)
{
    auto *const label = new QLabel(page);
    label->setObjectName(name);
    label->setGeometry(QRect(place, size));
    label->setFocusPolicy(Qt::NoFocus);
    label->hide();
    return label;
}

/** 0 or 1 for the models that have pictures of their own, else -1. */
int pictureOf(const DeviceAllInfo &device)
{
    return isKnownModel(device) && (device.DeviceKind == 1 || device.DeviceKind == 2) ? device.DeviceKind - 1 : -1;
}

} // namespace

ChooserEntry::ChooserEntry(QWidget *page, int index, int left, QPoint status, QPoint receiver)
    : picture(new mytoolButtonEnter(page)),
      offlineLabel(makeLabel(page, QStringLiteral("label%1").arg(index), status, statusSize)),
      linkLabel(makeLabel(page, QStringLiteral("UsbWifi%1").arg(index), status, statusSize)),
      receiverLabel(makeLabel(page, QStringLiteral("class%1").arg(index), receiver, receiverSize))
{
    picture->setObjectName(QStringLiteral("btn%1").arg(index));
    picture->setGeometry(QRect(QPoint(left, 0), pictureSize));
    picture->setFocusPolicy(Qt::NoFocus);
    picture->setCursor(Qt::PointingHandCursor); // a picture, which nothing else tells to be a button
    picture->lower();
    offlineLabel->setPixmap(QPixmap(folder() + QStringLiteral("OffLine.png")));
}

void ChooserEntry::setTips(const QString &offline, const QString &unknown)
{
    offlineTip = offline;
    unknownTip = unknown;
    offlineLabel->setToolTip(offline);
    setHint();
}

/** Of the whole picture: which mouse it is, and why a click won't do. The small sign alone would have to be found. */
void ChooserEntry::setHint()
{
    picture->setAccessibleName(modelName);
    const QString why = isUnknown ? unknownTip : isOffline ? offlineTip : QString();
    picture->setToolTip(modelName.isEmpty() || why.isEmpty() ? modelName + why : modelName + QLatin1Char('\n') + why);
}

void ChooserEntry::show(const DeviceAllInfo &device)
{
    const int model = pictureOf(device);
    isUnknown = !isKnownModel(device);
    isOffline = !isUnknown && !device.Online;
    QString name = QStringLiteral("Unknow.png");
    if (model >= 0)
        name = (isOffline ? QStringLiteral("DisOnlin%1.png") : QStringLiteral("OnLine%1.png")).arg(model);
    picture->setStyleSheet(
        QStringLiteral("QToolButton{border:0px;background-position:center;"
                       "background-repeat:no-repeat;background-image: url(%1%2);}"
                       "QToolButton:hover{border: 1px solid rgba(%3,150);border-radius: 4px;}"
                       "QToolButton:pressed{border: 1px solid rgb(%4);border-radius: 4px;}")
            .arg(folder(), name, Theme::rgb(Theme::Colour::LabelColor), Theme::rgb(Theme::Colour::SliderColor)));
    linkLabel->setPixmap(
        QPixmap(folder() + (device.IsCorded ? QStringLiteral("OnLineUsb.png") : QStringLiteral("OnLineWifi.png"))));
    linkLabel->setVisible(!isOffline);
    offlineLabel->setVisible(isOffline);
    modelName = ModelNames::of(model);
    setHint();

    const int kilohertz = ChooserList::receiverKilohertz(device);
    if (kilohertz != 0)
        receiverLabel->setPixmap(QPixmap(folder() + QStringLiteral("%1KHz.png").arg(kilohertz)));
    receiverLabel->setVisible(kilohertz != 0);
}
