#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace portwire {

/** What a firmware image file says of itself: which devices it fits, and the version that they then have. */
struct FirmwareHeader
{
    static constexpr std::size_t size = 728; ///< bytes in front of the payload
    static constexpr std::size_t nameSize = 64;

    std::uint16_t version = 0; ///< major high
    std::uint8_t target = 0;   ///< 210 mouse, 211 receiver
    std::uint8_t companyId = 0;
    std::uint8_t modelId = 0;
    std::array<std::uint8_t, nameSize> name{}; ///< zeros behind its end
};

/** The longest image file, in bytes; no device has room for more. */
constexpr std::size_t mostFirmware = FirmwareHeader::size + 524288;

/**
 * Reads an image file and its checksum. \param data may be null
 * \param reason set when the file isn't an image, or isn't whole
 */
std::optional<FirmwareHeader> readFirmware(const std::uint8_t *data, std::size_t length, const char *&reason);

} // namespace portwire
