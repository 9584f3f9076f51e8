#include "portwire/link/FirmwareHeader.h"

#include <algorithm>
#include <string_view>

namespace portwire {

namespace {

constexpr std::string_view mark = "PWIMAGE1";

/* Addresses in the header. */
constexpr std::size_t payloadLengthAt = 8;
constexpr std::size_t checksumAt = 12;
constexpr std::size_t versionAt = 16;
constexpr std::size_t targetAt = 20;
constexpr std::size_t companyAt = 21;
constexpr std::size_t modelAt = 22;
constexpr std::size_t nameAt = 87;

std::uint32_t numberAt(const std::uint8_t *bytes)
{
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 | static_cast<std::uint32_t>(bytes[2]) << 16 |
           static_cast<std::uint32_t>(bytes[3]) << 24;
}

/** Half a megabyte is summed up on the thread of the windows; by a table that takes some 2 ms, bit by bit eight times.
 */
constexpr std::array<std::uint32_t, 256> makeTable()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = value & 1 ? value >> 1 ^ 0xEDB88320 : value >> 1;
        table[i] = value;
    }
    return table;
}

/** Of the whole file, its own four bytes taken as 0. */
std::uint32_t checksum(const std::uint8_t *data, std::size_t length)
{
    static constexpr auto table = makeTable();
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < length; ++i) {
        const bool isOfChecksum = i >= checksumAt && i < versionAt;
        crc = crc >> 8 ^ table[(crc ^ (isOfChecksum ? 0 : data[i])) & 0xFF];
    }
    return ~crc;
}

} // namespace

std::optional<FirmwareHeader> readFirmware(const std::uint8_t *data, std::size_t length, const char *&reason)
{
    if (!data || length <= FirmwareHeader::size || length > mostFirmware)
        reason = "it is shorter than a header or longer than any device takes";
    else if (!std::equal(mark.begin(), mark.end(), data))
        reason = "it doesn't begin as an image does";
    else if (numberAt(data + payloadLengthAt) != length - FirmwareHeader::size)
        reason = "its length isn't the one that it tells";
    else if (numberAt(data + versionAt) > 0xFFFF)
        reason = "its version is out of range";
    else if (numberAt(data + checksumAt) != checksum(data, length))
        reason = "its checksum is wrong";
    else {
        FirmwareHeader header{static_cast<std::uint16_t>(numberAt(data + versionAt)), data[targetAt], data[companyAt],
                              data[modelAt]};
        std::copy_n(data + nameAt, header.name.size(), header.name.begin());
        return header;
    }
    return std::nullopt;
}

} // namespace portwire
