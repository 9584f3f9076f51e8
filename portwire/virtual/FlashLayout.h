#pragma once

#include <cstddef>

/** Where a mouse keeps what in the image of a stored profile; numbers of bytes. */
namespace portwire::flash {

constexpr std::size_t imageSize = 6912;

constexpr std::size_t reportRate = 0;
constexpr std::size_t levelCount = 1;
constexpr std::size_t reserved = 2; ///< two bytes that the firmware has no use for
constexpr std::size_t currentLevel = 4;
constexpr std::size_t levels = 5; ///< code X, code Y, flags, red, green, blue
constexpr std::size_t levelSize = 6;
constexpr std::size_t mostLevels = 8;
constexpr std::size_t sensorSwitches = 53; ///< ten bytes, the lift-off distance to the sensor mode
constexpr std::size_t debounceTime = 54;   ///< in ms
constexpr std::size_t idleTime = 56;       ///< until the mouse sleeps, in units of 10 s

constexpr std::size_t indicator = 76; ///< mode, brightness, speed, on
constexpr std::size_t indicatorOn = 79;

constexpr std::size_t slots = 16; ///< buttons, and as many key sequences and macros
constexpr std::size_t keyFunctions = 96;
constexpr std::size_t keyFunctionSize = 3; ///< type and two parameters

constexpr std::size_t light = 160; ///< mode, red, green, blue, speed, brightness, on
constexpr std::size_t lightOn = 166;

constexpr std::size_t eventSize = 5;

/** Number of events, then the events. */
constexpr std::size_t keySequences = 256;
constexpr std::size_t keySequenceSize = 32;
constexpr std::size_t sequenceEvents = 1;
constexpr std::size_t mostSequenceEvents = 6;

/** Length of the name, the name, number of events, the events. */
constexpr std::size_t macros = 768;
constexpr std::size_t macroSize = 384;
constexpr std::size_t macroName = 1;
constexpr std::size_t longestName = 30;
constexpr std::size_t macroEventCount = 31;
constexpr std::size_t macroEvents = 32;
constexpr std::size_t mostMacroEvents = 70;

} // namespace portwire::flash
