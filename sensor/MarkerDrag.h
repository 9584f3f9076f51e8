#pragma once

#include <QPoint>
#include <QRect>

#include <optional>

/** The rules of the level marker: where it rests, and which level it means where it is dropped. */
namespace MarkerDrag {

constexpr int levelCount = 8;
constexpr QSize markerSize{30, 30};

/** Resting place of the marker for level 0 to 7. */
QPoint mark(int level);

/** Where a marker went. */
struct Jump
{
    int levels; ///< up to 7, negative to the left
    int pixels; ///< from the mark of the level it came from
};
/** The jump for a distance from the mark, in pixels; none if it was dropped between two levels. */
std::optional<Jump> jump(int distance);

/** Largest x at which the marker may be dropped when `lastLevel` is the last level in use. */
int rightLimit(int lastLevel);

/** What a drop at `point` means. */
enum class Drop { Missed, BeyondLastLevel, BetweenLevels, Moved };
struct Result
{
    Drop drop;
    Jump jump; ///< only when moved
};
Result dropAt(QPoint point, const QRect &marker, int activeLevel, int lastLevel);

} // namespace MarkerDrag
