#pragma once

#include <QObject>
#include <QString>

class QWidget;

/**
 * Gives a widget its style sheet when that is wanted: before it shows for the first time, or else in a moment after the
 * start in which the program has nothing to do. A widget that shows already gets it at once.
 *
 * A sheet loads its pictures when it is set, and those of pages that nobody sees yet would double the time until the
 * first window shows, most of all where something looks into every file that is opened. A sheet that the widget has got
 * otherwise meanwhile stays.
 */
class LateStyle : public QObject
{
public:
    LateStyle(QWidget *widget, const QString &styleSheet);
    ~LateStyle() override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    static void applyWaiting();
    void apply();

    QWidget *const styled;
    const QString sheet;
};
