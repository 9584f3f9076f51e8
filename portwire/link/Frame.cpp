#include "portwire/link/Frame.h"

#include <algorithm>

namespace portwire {

namespace {

constexpr std::uint8_t reportId = 0x05;
constexpr std::size_t checksumAt = headerSize + maxPayload;
static_assert(checksumAt + 2 == reportSize, "the checksum ends the report");

constexpr std::array<std::uint16_t, 256> makeChecksumTable()
{
    std::array<std::uint16_t, 256> table{};
    for (unsigned value = 0; value < table.size(); ++value) {
        unsigned rest = value << 8;
        for (int bit = 0; bit < 8; ++bit)
            rest = (rest & 0x8000u) ? (rest << 1) ^ 0x1021u : rest << 1;
        table[value] = static_cast<std::uint16_t>(rest);
    }
    return table;
}

constexpr auto checksumTable = makeChecksumTable();

/** CRC-16 with polynomial 0x1021 and start value 0xFFFF over all bytes in front of it. */
std::uint16_t checksum(const Report &report)
{
    std::uint16_t sum = 0xFFFF;
    for (std::size_t i = 0; i < checksumAt; ++i) {
        const auto index = static_cast<std::uint8_t>((sum >> 8) ^ report[i]);
        sum = static_cast<std::uint16_t>((sum << 8) ^ checksumTable[index]);
    }
    return sum;
}

} // namespace

std::array<std::uint8_t, headerSize> Frame::header() const
{
    return {reportId,
            static_cast<std::uint8_t>(code),
            sequence,
            static_cast<std::uint8_t>(selector >> 8),
            static_cast<std::uint8_t>(selector & 0xFF),
            flags,
            static_cast<std::uint8_t>(std::min(payload.size(), maxPayload)),
            0};
}

Report encodeFrame(const Frame &frame)
{
    Report report(reportSize, 0);
    const auto header = frame.header();
    std::copy(header.begin(), header.end(), report.begin());
    const std::size_t length = header[6];
    std::copy_n(frame.payload.begin(), length, report.begin() + headerSize);
    const std::uint16_t sum = checksum(report);
    report[checksumAt] = static_cast<std::uint8_t>(sum >> 8);
    report[checksumAt + 1] = static_cast<std::uint8_t>(sum & 0xFF);
    return report;
}

std::optional<Frame> decodeFrame(const Report &report)
{
    if (report.size() != reportSize || report[0] != reportId || report[6] > maxPayload)
        return std::nullopt;
    const std::uint16_t sum = checksum(report);
    if (report[checksumAt] != (sum >> 8) || report[checksumAt + 1] != (sum & 0xFF))
        return std::nullopt;
    Frame frame;
    frame.code = static_cast<ReportCode>(report[1]);
    frame.sequence = report[2];
    frame.selector = static_cast<std::uint16_t>(report[3] << 8 | report[4]);
    frame.flags = report[5];
    frame.payload.assign(report.begin() + headerSize, report.begin() + headerSize + report[6]);
    return frame;
}

} // namespace portwire
