#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

/** A frame with a text and an on-off switch: the shape of a setting that is on or off. */
class SwitchFrame : public QFrame
{
    Q_OBJECT
public:
    /** Shows a state as a record says it, without writing. */
    void setOn(bool on);
    bool isOn() const;
    void setTitle(const QString &text);
    void setDescription(const QString &toolTip);

protected:
    /** `buttonName` is the object name of the switch, `folder` the name of the picture folder. */
    SwitchFrame(const char *buttonName, const char *folder, const QString &title, QWidget *parent);

private:
    QLabel *label;
    QToolButton *button;
};
