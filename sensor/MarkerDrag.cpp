#include "sensor/MarkerDrag.h"

#include <array>

namespace MarkerDrag {
namespace {

constexpr int markY = 154;
constexpr std::array<int, levelCount> markX = {27, 118, 209, 300, 391, 483, 573, 664};

/** A drop outside of these is no drop on a level. */
constexpr int leftEnd = 15;
constexpr int rightEnd = 706;
/** The largest x for each last level; behind the eighth only the right end counts. */
constexpr std::array<int, levelCount> limits = {69, 160, 251, 342, 433, 524, 612, rightEnd};

struct Interval
{
    int from; ///< distance from the mark, both ends included
    int to;
    Jump jump;
};

/** Round each mark's neighbours, with free stretches between in which the marker goes back. */
constexpr std::array<Interval, 14> intervals = {{
    {78, 129, {1, 91}},
    {-102, -51, {-1, -91}}, //
    {168, 214, {2, 182}},
    {-192, -144, {-2, -182}}, //
    {264, 317, {3, 273}},
    {-284, -236, {-3, -273}}, //
    {361, 389, {4, 364}},
    {-369, -327, {-4, -364}}, //
    {443, 495, {5, 455}},
    {-465, -411, {-5, -455}}, //
    {538, 591, {6, 546}},
    {-556, -504, {-6, -546}}, //
    {623, 669, {7, 637}},
    {-646, -599, {-7, -637}},
}};

bool isLevel(int level) { return level >= 0 && level < levelCount; }

} // namespace

QPoint mark(int level) { return {isLevel(level) ? markX[static_cast<std::size_t>(level)] : markX[0], markY}; }

std::optional<Jump> jump(int distance)
{
    for (const Interval &interval : intervals) {
        if (interval.from <= distance && distance <= interval.to)
            return interval.jump;
    }
    return std::nullopt;
}

int rightLimit(int lastLevel) { return isLevel(lastLevel) ? limits[static_cast<std::size_t>(lastLevel)] : rightEnd; }

Result dropAt(QPoint point, const QRect &marker, int activeLevel, int lastLevel)
{
    if (!isLevel(activeLevel) || !marker.contains(point) || point.x() < leftEnd || point.x() > rightEnd)
        return {Drop::Missed, {}};
    if (point.x() > rightLimit(lastLevel))
        return {Drop::BeyondLastLevel, {}};
    const std::optional<Jump> found = jump(point.x() - mark(activeLevel).x());
    if (!found || !isLevel(activeLevel + found->levels))
        return {Drop::BetweenLevels, {}};
    return {Drop::Moved, *found};
}

} // namespace MarkerDrag
