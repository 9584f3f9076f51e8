#include "ui/LateStyle.h"

#include "app/hub/Wait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <QVector>
#include <QWidget>

#include <utility>

namespace {

/** From the first turn of the event loop, in ms: the first window has been painted by then. */
constexpr int afterStart = 500;
/** Sheets are set for so long at once, and then not for a while, in ms: a page takes some 15 ms, and a click may be
 * waiting. */
constexpr int turn = 10;
constexpr int distance = 60;

QVector<LateStyle *> waiting; // GUI thread only, in the order of their making
bool isTurnDue = false;

} // namespace

LateStyle::LateStyle(QWidget *widget, const QString &styleSheet) : QObject(widget), styled(widget), sheet(styleSheet)
{
    waiting.append(this);
    if (widget->isVisible()) {
        apply();
        return;
    }
    widget->installEventFilter(this);
    if (std::exchange(isTurnDue, true))
        return;
    // However long the making of all widgets takes, the time begins when the first of them can be painted.
    QTimer::singleShot(0, qApp, [] { QTimer::singleShot(Wait::scaled(afterStart), qApp, &LateStyle::applyWaiting); });
}

LateStyle::~LateStyle() { waiting.removeOne(this); }

bool LateStyle::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Show)
        apply();
    return QObject::eventFilter(object, event);
}

void LateStyle::applyWaiting()
{
    QElapsedTimer since;
    since.start();
    while (!waiting.isEmpty() && since.elapsed() < Wait::scaled(turn))
        waiting.first()->apply();
    isTurnDue = !waiting.isEmpty();
    if (isTurnDue)
        QTimer::singleShot(Wait::scaled(distance), qApp, &LateStyle::applyWaiting);
}

void LateStyle::apply()
{
    waiting.removeOne(this);
    styled->removeEventFilter(this);
    if (styled->styleSheet().isEmpty())
        styled->setStyleSheet(sheet);
    deleteLater();
}
