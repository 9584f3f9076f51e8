#include "tools/FirmwareFile.h"

#include <algorithm>
#include <random>

namespace {

constexpr std::size_t headerSize = 728;

void put(std::vector<std::uint8_t> &file, std::size_t at, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        file[at + i] = static_cast<std::uint8_t>(value >> 8 * i);
}

} // namespace

std::vector<std::uint8_t> firmwareFile(const FirmwareDescription &description)
{
    constexpr std::size_t nameSize = 64;
    constexpr char mark[] = "PWIMAGE1";
    std::vector<std::uint8_t> file(headerSize + description.payload);
    std::copy(std::begin(mark), std::end(mark) - 1, file.begin());
    put(file, 8, description.payload);
    put(file, 16, description.version);
    file[20] = description.target;
    file[21] = description.companyId;
    file[22] = description.modelId;
    std::copy_n(description.name.begin(), std::min(description.name.size(), nameSize), file.begin() + 87);
    std::mt19937 random(description.version);
    std::generate(file.begin() + headerSize, file.end(), [&] { return static_cast<std::uint8_t>(random()); });
    signFirmware(file);
    return file;
}

void signFirmware(std::vector<std::uint8_t> &file)
{
    constexpr std::size_t checksumAt = 12;
    put(file, checksumAt, 0);
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : file) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    put(file, checksumAt, ~crc);
}
