#pragma once

#include <cstdint>
#include <string>
#include <vector>

/** What a firmware image for a virtual device says of itself. The defaults are those of a Q1 mouse. */
struct FirmwareDescription
{
    std::uint8_t target = 210; ///< 210 mouse, 211 receiver
    std::uint8_t companyId = 18;
    std::uint8_t modelId = 1;
    std::string name = "HALVARION-Q1"; ///< cut at 64 bytes
    std::uint32_t version = 0x0120;    ///< minor in the low byte
    std::uint32_t payload = 65536;     ///< bytes
};

/** The image file. The payload are bytes without a meaning, other ones for another version. */
std::vector<std::uint8_t> firmwareFile(const FirmwareDescription &description);

/** Puts the checksum in that the bytes have now. \param file 728 bytes at least */
void signFirmware(std::vector<std::uint8_t> &file);
