#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

/** One report as its handlers see it. Bytes beyond what arrived read as 0. */
struct Report
{
    const std::uint8_t *header;
    int headerLength;
    const std::uint8_t *payload;
    std::uint32_t payloadLength;
    unsigned generation; ///< of the link that it came in with
    unsigned since;      ///< changes of the working record after this one may be newer than the report

    std::uint8_t headerByte(int index) const { return header && index < headerLength ? header[index] : 0; }
    /** The beginning of the payload, filled up with zeros, for decoders that read a fixed number of bytes. */
    std::array<std::uint8_t, 64> padded() const
    {
        std::array<std::uint8_t, 64> bytes{};
        if (payload)
            std::memcpy(bytes.data(), payload, std::min<std::size_t>(payloadLength, bytes.size()));
        return bytes;
    }
};
