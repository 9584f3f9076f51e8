#pragma once

#include <QApplication>
#include <QElapsedTimer>

/**
 * An application that knows how long its GUI thread is busy at a stretch, the time in which no window can react. Events
 * that follow each other without a pause are one stretch: a mouse move, what it changes, and the picture of that.
 */
class BusyApplication : public QApplication
{
public:
    BusyApplication(int &argc, char **argv) : QApplication(argc, argv) { clock.start(); }

    bool notify(QObject *receiver, QEvent *event) override;

    /** Forgets what was seen so far. */
    void restart();
    /** Longest stretch since restart(), in ms. */
    double longest() const { return double(most) * 1e-6; }
    /** Number of stretches since restart(); without any there is nothing to tell. */
    int stretchCount() const { return stretches; }

private:
    QElapsedTimer clock;
    int depth = 0; ///< events inside of events
    qint64 begin = 0;
    qint64 end = 0;
    qint64 most = 0; ///< ns, as the others
    int stretches = 0;
};
