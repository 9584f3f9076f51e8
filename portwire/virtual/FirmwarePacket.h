#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace portwire {

/**
 * A report as the firmware models see it. They have their own reading of the wire format, apart from that of the link,
 * so that a mistake on one side shows.
 */
struct FirmwarePacket
{
    std::uint8_t code = 0;
    std::uint8_t sequence = 0;
    std::uint16_t address = 0;
    std::uint8_t flags = 0; ///< status in an answer: 0 done, 1 mouse offline, 2 refused, 3 batch lost
    std::vector<std::uint8_t> data{};

    /** \return nothing for a report that isn't whole. */
    static std::optional<FirmwarePacket> parse(const std::vector<std::uint8_t> &report);
    std::vector<std::uint8_t> build() const;

    /** The answer to this request. */
    FirmwarePacket answer(std::vector<std::uint8_t> answerData = {}) const;
    FirmwarePacket offline() const;
    FirmwarePacket refusal() const;
    FirmwarePacket batchLost() const;
};

} // namespace portwire
