#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QWidget;

/**
 * Gives a widget its style sheet when that is wanted: before it shows for the first time, or else in a moment after the
 * start in which the program has nothing to do.
 *
 * A sheet loads its pictures when it is set, and the large ones of pages that nobody sees yet would double the time
 * until the first window shows. A sheet that the widget has got otherwise meanwhile stays.
 */
class LateStyle : public QObject
{
public:
    LateStyle(QWidget *widget, const QString &styleSheet);
    ~LateStyle() override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void apply();

    QWidget *const styled;
    const QString sheet;
    QTimer timer;
};
