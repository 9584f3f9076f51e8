#pragma once

#include <array>
#include <cstdint>

/** What the lighting page offers, as tables. */
namespace LightTables {

/** What a light effect lets the user set. */
struct Effect
{
    const char *key;         ///< element of the language file
    const char *defaultText; ///< stands until a language file was read
    bool hasBrightness;
    bool hasSpeed;
    bool hasColour;
};

/** The index is the effect's number in the mouse; 0 stands for a light that is off. */
constexpr std::array<Effect, 6> effects = {{
    {"LightMod", "关闭", false, false, false},
    {"LightMod1", "彩色流动", true, true, false},
    {"LightMod2", "单色呼吸", true, true, true},
    {"LightMod3", "混色常亮", true, false, true},
    {"LightMod4", "霓虹", true, true, false},
    {"LightMod5", "混彩呼吸", true, true, false},
}};

struct Colour
{
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
};

/** Colours of `toolButtonColorA` to `toolButtonColorN`. */
constexpr std::array<Colour, 14> presets = {{
    {255, 0, 0},
    {0, 255, 255},
    {0, 255, 0},
    {255, 0, 255},
    {255, 255, 0},
    {255, 80, 0},
    {0, 0, 255},
    {227, 0, 127},
    {46, 166, 223},
    {96, 25, 133},
    {255, 255, 255},
    {139, 178, 36},
    {255, 155, 51},
    {208, 113, 173},
}};

/** Elements of the language file for the items of the idle time, in the order of the list. */
constexpr std::array<const char *, 11> idleTimeKeys = {
    "StopCloseTime",  "StopCloseTime1", "StopCloseTime2", "StopCloseTime3", "StopCloseTime4",  "StopCloseTime5",
    "StopCloseTime6", "StopCloseTime7", "StopCloseTime8", "StopCloseTime9", "StopCloseTime10",
};

/** Brightness and speed are shown from 1; the mouse counts from 0. */
constexpr int lowestLevel = 1;
constexpr int highestLevel = 10;

/** What a factory reset leaves in the mouse. */
constexpr int resetEffect = 1;
constexpr int resetBrightness = 10;
constexpr int resetSpeed = 8;
constexpr int resetIdleTime = 2;

} // namespace LightTables
