#include "lighting/LightPattern.h"

#include "lighting/LightTables.h"

#include <cmath>

namespace {

constexpr double pi = 3.14159265358979;

double fraction(double number) { return number - std::floor(number); }

/** Rounds of the effect in a second: one takes 6 s at the lowest speed and a little over 1 s at the highest. */
double roundsPerSecond(const LightLook &look) { return look.speed / 12.0 + 1.0 / 12.0; }

/** Strength of a breathing light in a round, 0 to 1. It starts bright, so that a change of the colour shows at once. */
double breath(double rounds) { return 0.5 + 0.5 * std::cos(2 * pi * rounds); }

QColor hue(double turn) { return QColor::fromHsvF(fraction(turn), 1, 1); }

/** Lower levels are still well lit: the eye takes a tenth of the light for about a third. */
double strength(const LightLook &look) { return std::sqrt(double(look.brightness) / LightTables::highestLevel); }

QColor scaled(const QColor &colour, double factor)
{
    return QColor::fromRgbF(colour.redF() * factor, colour.greenF() * factor, colour.blueF() * factor);
}

QColor flow(const LightLook &, double place, double rounds) { return hue(place - rounds); }
QColor breathing(const LightLook &look, double, double rounds) { return scaled(look.colour, breath(rounds)); }
QColor steady(const LightLook &look, double, double) { return look.colour; }
QColor neon(const LightLook &, double, double rounds) { return hue(rounds / 3); }

/** Each breath has the next of six colours; the change comes in the dark. */
QColor mixedBreathing(const LightLook &, double, double rounds)
{
    return scaled(hue(std::floor(rounds + 0.5) / 6), breath(rounds));
}

using Draw = QColor (*)(const LightLook &look, double place, double rounds);
constexpr std::array<Draw, LightTables::effects.size()> drawings = {nullptr, flow, breathing,
                                                                    steady,  neon, mixedBreathing};

Draw drawing(const LightLook &look)
{
    return look.effect < 0 || look.effect >= int(drawings.size()) ? nullptr : drawings[std::size_t(look.effect)];
}

} // namespace

bool LightPattern::isMoving(const LightLook &look) { return drawing(look) && drawing(look) != steady; }

QColor LightPattern::colourAt(const LightLook &look, double place, double seconds)
{
    const Draw draw = drawing(look);
    return draw ? scaled(draw(look, place, seconds * roundsPerSecond(look)), strength(look)) : QColor(Qt::black);
}
