#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace portwire {

/**
 * The device image: what the mouse's flash holds of one profile. 256 bytes of settings, 16 key sequences of 32 bytes,
 * 16 macros of 384 bytes.
 */
constexpr std::size_t imageSize = 6912;
using DeviceImage = std::array<std::uint8_t, imageSize>;

namespace ImageLayout {

constexpr std::size_t settingsSize = 256;
constexpr std::size_t reportRate = 0;
constexpr std::size_t dpiLevelCount = 1;
constexpr std::size_t dpiCurrentLevel = 4;
/** The levels follow the count so closely that a change of several of them fits one write report. */
constexpr std::size_t dpiLevels = 5;
constexpr std::size_t dpiIndicator = 76;
constexpr std::size_t dpiIndicatorSize = 8;
constexpr std::size_t keyFunctions = 96;
constexpr std::size_t gap = 144;
constexpr std::size_t light = 160;
constexpr std::size_t lightSize = 9;

constexpr std::size_t slots = 16;
constexpr std::size_t eventSize = 5;

constexpr std::size_t keySequences = settingsSize;
constexpr std::size_t keySequenceSize = 32;
constexpr std::size_t keySequenceEvents = 1; ///< within the sequence, behind the count

constexpr std::size_t macros = keySequences + slots * keySequenceSize;
constexpr std::size_t macroSize = 384;
constexpr std::size_t macroName = 1; ///< within the macro, behind the length
constexpr std::size_t macroEventCount = 31;
constexpr std::size_t macroEvents = 32;

static_assert(macros + slots * macroSize == imageSize, "the three regions fill the image");

} // namespace ImageLayout

} // namespace portwire
