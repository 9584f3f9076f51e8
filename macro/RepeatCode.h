#pragma once

/**
 * How a macro repeats, as one number that travels in the first line of a macro file, in an export file and in the
 * second parameter of a macro button: 1 to 250 is the number of times that it plays.
 */
namespace RepeatCode {

constexpr int once = 1;
constexpr int mostTimes = 250;
constexpr int untilAnyButton = 253; ///< until any button of the mouse is pressed
constexpr int untilReleased = 254;  ///< while the button is held
constexpr int untilPressedAgain = 255;

/** What a number read from outside counts as: itself if it is one of these, else once. */
constexpr int normalised(int code)
{
    const bool isCount = code >= once && code <= mostTimes;
    return isCount || (code >= untilAnyButton && code <= untilPressedAgain) ? code : once;
}

} // namespace RepeatCode
