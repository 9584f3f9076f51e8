#include "ui/LateStyle.h"

#include "app/hub/Wait.h"

#include <QEvent>
#include <QWidget>

namespace {

/** From the making of the widgets, in ms: the first window has been painted by then. */
constexpr int afterStart = 500;
/** Between two of them, in ms: one takes some 15 ms, and a click may be waiting. */
constexpr int distance = 60;

int waiting = 0; // GUI thread only

} // namespace

LateStyle::LateStyle(QWidget *widget, const QString &styleSheet) : QObject(widget), styled(widget), sheet(styleSheet)
{
    widget->installEventFilter(this);
    connect(&timer, &QTimer::timeout, this, &LateStyle::apply);
    timer.setSingleShot(true);
    timer.start(Wait::scaled(afterStart + distance * waiting));
    ++waiting;
}

LateStyle::~LateStyle() { --waiting; }

bool LateStyle::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Show)
        apply();
    return QObject::eventFilter(object, event);
}

void LateStyle::apply()
{
    timer.stop();
    styled->removeEventFilter(this);
    if (styled->styleSheet().isEmpty())
        styled->setStyleSheet(sheet);
    deleteLater();
}
