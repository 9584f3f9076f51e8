#pragma once

#include "sensor/MarkerDrag.h"

#include <QPoint>
#include <QRect>

class QLabel;

/** The marker below the levels: it stands at the mark of the active one, and a user drags it to another. */
class LevelMarker
{
public:
    /** Where it can be dragged, in pixels of the editor, as all points here: the whole of it. */
    static constexpr QRect area{0, 0, 728, 194};

    /** `shownLabel` belongs to the editor. */
    explicit LevelMarker(QLabel *shownLabel) : label(shownLabel) {}

    /** Puts it at the mark of a level, 0 to 7; for others it stays where it is. */
    void standAt(int level);

    /** The user takes it, if it lies under the point. */
    void take(QPoint point);
    /** Follows the pointer while it is held. \return false outside the area, where it has to be dropped. */
    bool follow(QPoint point);
    /** Lets it go, at the mark of the level that the point means or else of the active one. \return what it means. */
    MarkerDrag::Result drop(QPoint point, int activeLevel, int lastLevel);

private:
    QLabel *label;
    bool isHeld = false;
    QPoint offset; ///< from its corner to where it was taken
};
