#include "ui/MySlider.h"

#include <QCoreApplication>
#include <QMouseEvent>

void MySlider::mousePressEvent(QMouseEvent *event)
{
    QSlider::mousePressEvent(event);
    // The base class pages on while the button is held; the handle is where it was wanted already.
    setRepeatAction(SliderNoAction);
    if (width() <= 0)
        return;
    const double fraction = event->localPos().x() / width();
    const double span = double(maximum()) - minimum();
    setValue(int(qBound(double(minimum()), minimum() + span * fraction, double(maximum()))));
    if (parentWidget()) {
        QEvent jumped(static_cast<QEvent::Type>(jumpEvent));
        QCoreApplication::sendEvent(parentWidget(), &jumped);
    }
}
