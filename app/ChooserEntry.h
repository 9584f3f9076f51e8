#pragma once

#include <QPoint>
#include <QString>

class QLabel;
class QWidget;
class mytoolButtonEnter;
struct DeviceAllInfo;

/** The widgets of one device on the chooser: its picture, how it is connected, and the rate of its receiver. */
class ChooserEntry
{
public:
    /** Makes the widgets on `page`; `index` is that of the device in the list, `left` the picture's x. */
    ChooserEntry(QWidget *page, int index, int left, QPoint status, QPoint receiver);

    /** Shows the device as it is now. */
    void show(const DeviceAllInfo &device);
    /** Says why a mouse doesn't answer, and why a device can't be opened. */
    void setTips(const QString &offline, const QString &unknown);

    mytoolButtonEnter *button() const { return picture; }

private:
    void setHint();

    QString modelName; ///< empty if it has none
    QString offlineTip;
    QString unknownTip;
    bool isUnknown = false;
    bool isOffline = false; ///< a known mouse that doesn't answer
    mytoolButtonEnter *picture;
    QLabel *offlineLabel;  ///< shown while the mouse doesn't answer
    QLabel *linkLabel;     ///< cable or receiver
    QLabel *receiverLabel; ///< rate of the receiver
};
