#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

/** A frame with a text and an on-off switch: the shape of the sensor switches. */
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
    SwitchFrame(const char *buttonName, const QString &title, QWidget *parent);

private:
    QLabel *label;
    QToolButton *button;
};
