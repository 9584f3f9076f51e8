#include "portwire/virtual/FirmwarePacket.h"

namespace portwire {

namespace {

/** Bit by bit, as a small controller does it. */
unsigned crc(const std::vector<std::uint8_t> &report)
{
    unsigned value = 0xFFFF;
    for (std::size_t i = 0; i < 62; ++i) {
        value ^= static_cast<unsigned>(report[i]) << 8;
        for (int bit = 0; bit < 8; ++bit)
            value = ((value << 1) ^ ((value & 0x8000) ? 0x1021u : 0u)) & 0xFFFF;
    }
    return value;
}

} // namespace

std::optional<FirmwarePacket> FirmwarePacket::parse(const std::vector<std::uint8_t> &report)
{
    if (report.size() != 64 || report[0] != 5 || report[6] > 54)
        return std::nullopt;
    if (crc(report) != (static_cast<unsigned>(report[62]) << 8 | report[63]))
        return std::nullopt;
    FirmwarePacket packet;
    packet.code = report[1];
    packet.sequence = report[2];
    packet.address = static_cast<std::uint16_t>(report[3] * 256 + report[4]);
    packet.flags = report[5];
    packet.data.assign(report.begin() + 8, report.begin() + 8 + report[6]);
    return packet;
}

std::vector<std::uint8_t> FirmwarePacket::build() const
{
    std::vector<std::uint8_t> report(64, 0);
    report[0] = 5;
    report[1] = code;
    report[2] = sequence;
    report[3] = static_cast<std::uint8_t>(address / 256);
    report[4] = static_cast<std::uint8_t>(address % 256);
    report[5] = flags;
    report[6] = static_cast<std::uint8_t>(data.size() < 54 ? data.size() : 54);
    for (std::size_t i = 0; i < report[6]; ++i)
        report[8 + i] = data[i];
    const unsigned value = crc(report);
    report[62] = static_cast<std::uint8_t>(value / 256);
    report[63] = static_cast<std::uint8_t>(value % 256);
    return report;
}

FirmwarePacket FirmwarePacket::answer(std::vector<std::uint8_t> answerData) const
{
    return {code, sequence, address, 0, std::move(answerData)};
}

FirmwarePacket FirmwarePacket::offline() const { return {code, sequence, address, 1, {}}; }

FirmwarePacket FirmwarePacket::refusal() const { return {code, sequence, address, 2, {}}; }

FirmwarePacket FirmwarePacket::batchLost() const { return {code, sequence, address, 3, {}}; }

} // namespace portwire
