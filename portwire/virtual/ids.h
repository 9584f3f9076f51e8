#pragma once

#include <cstdint>
#include <string_view>

/**
 * The ids under which virtual devices show up. The vendor id is invented; the product file of the program holds the
 * same numbers.
 */
namespace portwire::ids {

constexpr std::string_view vendor = "F0A1";
constexpr std::uint8_t company = 18;

/** Of all virtual devices: the interface and collection that the program's finders ask for. */
constexpr int interfaceId = 1;
constexpr int deviceId = 5;

/** What a mouse on its cable gives as receiver class; no receiver has it. */
constexpr std::uint8_t cableClass = 2;

struct ReceiverIds
{
    std::string_view link; ///< name of the link in commands
    std::string_view product;
    std::uint8_t receiverClass;
    std::uint16_t version; ///< firmware, major high
};

constexpr ReceiverIds receivers[] = {
    {"1k", "0201", 0, 0x0105},
    {"2k", "0202", 4, 0x0105},
    {"4k", "0204", 1, 0x010C},
};

struct MouseIds
{
    std::string_view model; ///< name of the model in commands
    std::string_view cableProduct;
    std::uint8_t modelId;
    std::uint16_t version; ///< firmware, major high
};

constexpr MouseIds mice[] = {
    {"q1", "0101", 1, 0x0112},
    {"q2", "0102", 2, 0x0108},
    {"unknown", "01FE", 99, 0x0100},
};

/** \return nothing for a name that isn't in the table. */
constexpr const ReceiverIds *findReceiver(std::string_view link)
{
    for (const ReceiverIds &known : receivers) {
        if (known.link == link)
            return &known;
    }
    return nullptr;
}

/** \return nothing for a name that isn't in the table. */
constexpr const MouseIds *findMouse(std::string_view model)
{
    for (const MouseIds &known : mice) {
        if (known.model == model)
            return &known;
    }
    return nullptr;
}

} // namespace portwire::ids
