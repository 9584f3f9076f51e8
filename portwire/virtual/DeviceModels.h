#pragma once

#include "portwire/virtual/Sensor.h"

#include <string_view>

/**
 * The models of virtual mice and receivers, a row each: the ids under which they show up, their versions and what they
 * come with from the factory. The vendor id is invented; the product file of the program holds the same numbers.
 */
namespace portwire {

constexpr std::string_view vendorId = "F0A1";
constexpr std::uint8_t companyId = 18;

/**
 * One HID interface of a device. The wire protocol is spoken on one of them; the others are what makes the device a
 * mouse to the operating system, and whoever opens one hears nothing. Each shares one of the two numbers with the
 * first, so that a finder has to look at both.
 */
struct HidInterface
{
    int interfaceId;
    int collectionId;
    std::string_view pathEnd;
};

constexpr HidInterface hidInterfaces[] = {{0, 5, "/mouse"}, {1, 5, ""}, {1, 1, "/keys"}};

/** The one interface of a device in boot mode. */
constexpr HidInterface bootInterface{0, 1, ""};
constexpr std::string_view bootMouseProduct = "01B0";
constexpr std::string_view bootReceiverProduct = "02B0";
constexpr std::uint16_t bootUsbVersion = 0x0100;

/** What a mouse on its cable gives as receiver class; no receiver has it. */
constexpr std::uint8_t cableClass = 2;
constexpr int cableMostHertz = 1000;

struct ReceiverModel
{
    std::string_view link; ///< name of the link in commands
    std::string_view product;
    std::uint8_t receiverClass;
    int mostHertz;         ///< what it can carry
    bool hasLight;         ///< one that the program may set
    std::uint16_t version; ///< firmware, major high
    std::uint16_t usbVersion;
    std::string_view firmwareName; ///< as in the images for it
};

constexpr ReceiverModel receiverModels[] = {
    {"1k", "0201", 0, 1000, false, 0x0105, 0x0120, "HALVARION-R1"},
    {"2k", "0202", 4, 2000, false, 0x0106, 0x0131, "HALVARION-R2"},
    {"4k", "0204", 1, 4000, true, 0x010C, 0x0142, "HALVARION-R4"},
};

struct FactoryLevel
{
    int dpi;
    std::uint8_t red, green, blue;
};

struct MouseModel
{
    std::string_view name; ///< in commands
    std::string_view cableProduct;
    std::uint8_t modelId;
    std::uint16_t version;    ///< firmware, major high
    std::uint16_t usbVersion; ///< of its cable
    std::string_view firmwareName;
    Sensor sensor;
    std::uint8_t levelsInUse;
    FactoryLevel levels[8];
};

constexpr MouseModel mouseModels[] = {
    {"q1",
     "0101",
     1,
     0x0112,
     0x0201,
     "HALVARION-Q1",
     Sensor::Sensor3395,
     6,
     {{400, 255, 0, 0},
      {800, 0, 0, 255},
      {1600, 0, 255, 0},
      {3200, 255, 255, 0},
      {6400, 0, 255, 255},
      {26000, 255, 0, 255},
      {12000, 159, 0, 0},
      {18000, 0, 212, 252}}},
    {"q2",
     "0102",
     2,
     0x0108,
     0x0204,
     "HALVARION-Q2",
     Sensor::Sensor3311,
     5,
     {{400, 255, 0, 0},
      {800, 0, 0, 255},
      {1600, 0, 255, 0},
      {3200, 255, 255, 0},
      {6400, 0, 255, 255},
      {8000, 255, 0, 255},
      {10000, 159, 0, 0},
      {12400, 0, 212, 252}}},
    // The program has no data for this one.
    {"unknown",
     "01FE",
     99,
     0x0100,
     0x0200,
     "HALVARION-UNKNOWN",
     Sensor::Unknown,
     4,
     {{400, 255, 0, 0},
      {800, 0, 0, 255},
      {1600, 0, 255, 0},
      {3200, 255, 255, 0},
      {3200, 0, 255, 255},
      {3200, 255, 0, 255},
      {3200, 159, 0, 0},
      {3200, 0, 212, 252}}},
};

/** \return nothing for a name that isn't in the table. */
constexpr const ReceiverModel *findReceiverModel(std::string_view link)
{
    for (const ReceiverModel &known : receiverModels) {
        if (known.link == link)
            return &known;
    }
    return nullptr;
}

/** \return nothing for a name that isn't in the table. */
constexpr const MouseModel *findMouseModel(std::string_view name)
{
    for (const MouseModel &known : mouseModels) {
        if (known.name == name)
            return &known;
    }
    return nullptr;
}

} // namespace portwire
