#include "portwire/virtual/BootLoader.h"

#include "portwire/virtual/DeviceModels.h"

#include <algorithm>
#include <utility>

namespace portwire {

namespace {

constexpr std::string_view imageMark = "PWIMAGE1";
constexpr std::size_t nameSize = 64;

/* Addresses in the header. */
constexpr std::size_t payloadLengthAt = 8;
constexpr std::size_t checksumAt = 12;
constexpr std::size_t versionAt = 16;
constexpr std::size_t targetAt = 20;
constexpr std::size_t companyAt = 21;
constexpr std::size_t modelAt = 22;
constexpr std::size_t nameAt = 87;

std::uint32_t numberIn(const std::uint8_t *bytes)
{
    return bytes[0] + 256u * (bytes[1] + 256u * (bytes[2] + 256u * bytes[3]));
}

std::array<std::uint8_t, nameSize> nameField(std::string_view name)
{
    std::array<std::uint8_t, nameSize> field{};
    std::copy_n(name.begin(), std::min(name.size(), field.size()), field.begin());
    return field;
}

} // namespace

std::uint32_t BootLoader::Image::number(std::size_t at) const { return numberIn(&header[at]); }

std::optional<FirmwarePacket> BootLoader::answer(const FirmwarePacket &request, const Identity &identity)
{
    if (request.code == 25)
        return info(request, identity);
    if (!isActive()) {
        if (request.code != 26)
            return request.refusal();
        next = Next::EnterBoot;
        return request.answer();
    }
    switch (request.code) {
    case 27:
        return begin(request);
    case 28:
        return block(request, identity);
    case 29:
        return verify(request);
    case 30:
        if (!image.isVerified)
            return request.refusal();
        next = Next::LeaveBoot;
        return request.answer();
    default:
        return request.refusal();
    }
}

void BootLoader::leave()
{
    stored.isActive = false;
    image = {};
}

BootLoader::Next BootLoader::takeNext() { return std::exchange(next, Next::Stay); }

void BootLoader::enter()
{
    stored.isActive = true;
    image = {};
}

FirmwarePacket BootLoader::info(const FirmwarePacket &request, const Identity &identity) const
{
    std::vector<std::uint8_t> all{isActive(),
                                  identity.target,
                                  companyId,
                                  identity.modelId,
                                  static_cast<std::uint8_t>(stored.version % 256),
                                  static_cast<std::uint8_t>(stored.version / 256)};
    const auto name = nameField(identity.name);
    all.insert(all.end(), name.begin(), name.end());
    for (int shift = 0; shift < 32; shift += 8)
        all.push_back(static_cast<std::uint8_t>(identity.unit >> shift));
    const std::size_t length = request.data.empty() ? 0 : request.data[0];
    if (length == 0 || length > 54 || request.address + length > all.size())
        return request.refusal();
    const auto from = all.begin() + request.address;
    return request.answer({from, from + static_cast<long>(length)});
}

std::optional<FirmwarePacket> BootLoader::begin(const FirmwarePacket &request)
{
    if (request.data.size() != 4)
        return request.refusal();
    image = {};
    image.isBegun = true;
    image.length = numberIn(request.data.data());
    if (image.length <= headerSize || image.length > headerSize + mostPayload)
        image.reason = wrongLength;
    if (isPowerGone())
        return std::nullopt;
    return request.answer({image.reason});
}

std::optional<FirmwarePacket> BootLoader::block(const FirmwarePacket &request, const Identity &identity)
{
    if (!image.isBegun)
        return request.batchLost();
    const bool isAwaited = request.address == image.nextBlock() && image.taken < image.length;
    if (isAwaited && image.reason == fine) {
        if (request.data.size() != std::min(blockSize, image.length - image.taken))
            return request.refusal();
        for (const std::uint8_t byte : request.data)
            take(byte);
        if (image.taken == headerSize)
            image.reason = judgeHeader(identity);
        if (isPowerGone())
            return std::nullopt;
    }
    const std::uint16_t awaited = image.nextBlock();
    return request.answer(
        {static_cast<std::uint8_t>(awaited % 256), static_cast<std::uint8_t>(awaited / 256), image.reason});
}

FirmwarePacket BootLoader::verify(const FirmwarePacket &request)
{
    if (!image.isBegun)
        return request.batchLost();
    if (image.reason == fine && image.taken < image.length)
        image.reason = wrongLength;
    if (image.reason == fine && (image.crc ^ 0xFFFFFFFF) != image.number(checksumAt))
        image.reason = wrongChecksum;
    if (image.reason == fine) {
        image.isVerified = true;
        stored.version = static_cast<std::uint16_t>(image.number(versionAt));
    }
    return request.answer({image.reason});
}

BootLoader::Reason BootLoader::judgeHeader(const Identity &identity) const
{
    const auto &header = image.header;
    const auto name = nameField(identity.name);
    const std::pair<bool, Reason> faults[] = {
        {!std::equal(imageMark.begin(), imageMark.end(), header.begin()), notAnImage},
        {header[targetAt] != identity.target, wrongTarget},
        {header[companyAt] != companyId, wrongCompany},
        {header[modelAt] != identity.modelId, wrongModel},
        {!std::equal(name.begin(), name.end(), header.begin() + nameAt), wrongName},
        {image.number(payloadLengthAt) != image.length - headerSize, wrongLength},
        {image.number(versionAt) > 0xFFFF, wrongVersion},
    };
    const auto *const found =
        std::find_if(std::begin(faults), std::end(faults), [](const auto &each) { return each.first; });
    return found == std::end(faults) ? fine : found->second;
}

/** Bit by bit, as a small controller does it. The checksum counts for itself as zeros. */
void BootLoader::take(std::uint8_t byte)
{
    const bool isOfChecksum = image.taken >= checksumAt && image.taken < checksumAt + 4;
    image.crc ^= isOfChecksum ? 0 : byte;
    for (int bit = 0; bit < 8; ++bit)
        image.crc = image.crc & 1 ? image.crc >> 1 ^ 0xEDB88320 : image.crc >> 1;
    if (image.taken < headerSize)
        image.header[image.taken] = byte;
    ++image.taken;
}

/** Once, when the upgrade has come so far. */
bool BootLoader::isPowerGone()
{
    const std::uint64_t hundredths = std::uint64_t{image.taken} * 100;
    if (powerLossPercent < 0 || hundredths < static_cast<std::uint64_t>(powerLossPercent) * image.length)
        return false;
    powerLossPercent = -1;
    next = Next::LosePower;
    return true;
}

} // namespace portwire
