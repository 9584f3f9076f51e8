#include "portwire/link/FirmwareSearch.h"

#include <algorithm>

namespace portwire {

namespace {

/* Where devices speak the wire protocol. Whatever else is on the bus isn't asked: nobody knows what it would do. */
constexpr std::string_view vendor = "F0A1";
constexpr std::string_view bootProducts[] = {"01B0", "02B0"};

bool isBootNode(const DeviceNode &node)
{
    return node.vendorId == vendor && node.interfaceId == 0 && node.deviceId == 1 &&
           std::find(std::begin(bootProducts), std::end(bootProducts), node.productId) != std::end(bootProducts);
}

bool isNormalNode(const DeviceNode &node)
{
    return node.vendorId == vendor && node.interfaceId == 1 && node.deviceId == 5;
}

/* Addresses in the firmware info. */
constexpr std::size_t modeAt = 0;
constexpr std::size_t targetAt = 1;
constexpr std::size_t companyAt = 2;
constexpr std::size_t modelAt = 3;
constexpr std::size_t versionAt = 4;
constexpr std::size_t nameAt = 6;
constexpr std::size_t unitAt = 70;
constexpr std::size_t infoSize = 74;

FirmwareInfo infoIn(const std::vector<std::uint8_t> &bytes)
{
    FirmwareInfo info;
    info.isInBoot = bytes[modeAt] == 1;
    info.firmware.target = bytes[targetAt];
    info.firmware.companyId = bytes[companyAt];
    info.firmware.modelId = bytes[modelAt];
    info.firmware.version = static_cast<std::uint16_t>(bytes[versionAt] | bytes[versionAt + 1] << 8);
    std::copy_n(&bytes[nameAt], info.firmware.name.size(), info.firmware.name.begin());
    for (std::size_t i = 0; i < sizeof info.unit; ++i)
        info.unit |= static_cast<std::uint32_t>(bytes[unitAt + i]) << 8 * i;
    return info;
}

/** \param isComplete set to false if there is no answer; a refusal is one */
std::optional<FirmwareInfo> ask(Channels &channels, const std::string &path, bool &isComplete)
{
    std::vector<std::uint8_t> bytes;
    while (bytes.size() < infoSize) {
        const auto channel = channels.find(path);
        const auto length = static_cast<std::uint8_t>(std::min(infoSize - bytes.size(), maxPayload));
        const auto answer =
            channel ? channel->ask({ReportCode::FirmwareInfo, static_cast<std::uint16_t>(bytes.size()), 0, {length}})
                    : std::nullopt;
        if (!answer)
            isComplete = false;
        if (!answer || answer->flags != static_cast<std::uint8_t>(AnswerStatus::Done))
            return std::nullopt;
        bytes.insert(bytes.end(), answer->payload.begin(), answer->payload.begin() + length);
    }
    return infoIn(bytes);
}

} // namespace

bool UpgradableDevice::isFor(const FirmwareHeader &image) const
{
    const FirmwareHeader &own = info.firmware;
    return own.target == image.target && own.companyId == image.companyId && own.modelId == image.modelId &&
           own.name == image.name;
}

FirmwareSearch findUpgradable(Channels &channels, SearchIn where, const std::function<bool()> &isEnding)
{
    FirmwareSearch search;
    for (const DeviceNode &node : channels.bus().enumerate()) {
        const bool isBoot = isBootNode(node);
        if (!isBoot && (where == SearchIn::BootMode || !isNormalNode(node)))
            continue;
        if (isEnding && isEnding())
            break;
        const auto info = ask(channels, node.path, search.isComplete);
        // One that contradicts its node has changed its mode in this moment, or isn't what it says.
        if (info && info->isInBoot == isBoot)
            search.devices.push_back({node.path, *info});
        else if (info)
            search.isComplete = false;
    }
    return search;
}

} // namespace portwire
