#pragma once

#include <cstdint>

namespace portwire {

/** Bit in the payload of a status report: another profile is active. */
constexpr std::uint8_t anotherProfile = 1U << 2;

/** Percent, cut to 100; 1 while charging, else 0; two reserved zero bytes. */
void decodeBattery(const std::uint8_t *payload, std::uint8_t *out4);

/** One byte, 0 or 1, for each of the seven lower bits of the payload's byte. */
void decodeChangedFlags(const std::uint8_t *payload, std::uint8_t *out7);

} // namespace portwire
