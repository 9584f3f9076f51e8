#include "sensor/LevelMarker.h"

#include <QLabel>

void LevelMarker::standAt(int level)
{
    if (level >= 0 && level < MarkerDrag::levelCount)
        label->move(MarkerDrag::mark(level));
}

void LevelMarker::take(QPoint point)
{
    if (!label->geometry().contains(point))
        return;
    isHeld = true;
    offset = point - label->pos();
}

bool LevelMarker::follow(QPoint point)
{
    if (!isHeld)
        return true;
    if (!area.contains(point))
        return false;
    label->move(point - offset);
    return true;
}

MarkerDrag::Result LevelMarker::drop(QPoint point, int activeLevel, int lastLevel)
{
    isHeld = false;
    const MarkerDrag::Result result = MarkerDrag::dropAt(point, label->geometry(), activeLevel, lastLevel);
    const QPoint mark = MarkerDrag::mark(activeLevel);
    label->move(mark.x() + (result.drop == MarkerDrag::Drop::Moved ? result.jump.pixels : 0), mark.y());
    return result;
}
