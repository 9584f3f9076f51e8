#pragma once

#include <QColor>

/** What the light of the mouse is set to, in the values that the page shows. */
struct LightLook
{
    int effect = 0;            ///< index in LightTables::effects
    QColor colour = Qt::black; ///< of the effects that take one
    int brightness = 10;       ///< 1 to 10
    int speed = 10;            ///< 1 to 10

    bool operator==(const LightLook &other) const
    {
        return effect == other.effect && colour == other.colour && brightness == other.brightness &&
               speed == other.speed;
    }
};

namespace LightPattern {

/** True if the light of this effect changes with time. */
bool isMoving(const LightLook &look);

/**
 * Colour of one place of the light strip; black where it is dark.
 * \param place 0 at one end of the strip, 1 at the other
 * \param seconds time since the effect began
 */
QColor colourAt(const LightLook &look, double place, double seconds);

} // namespace LightPattern
