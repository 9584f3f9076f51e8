#pragma once

#include "portwire/link/Channels.h"
#include "portwire/link/FirmwareHeader.h"

namespace portwire {

/** What a device tells of its firmware. */
struct FirmwareInfo
{
    FirmwareHeader firmware{}; ///< version and what an image for it must say
    bool isInBoot = false;
    std::uint32_t unit = 0; ///< the same in both modes, and no other device's
};

/** A device that can be upgraded, where it is on the bus now. */
struct UpgradableDevice
{
    std::string path;
    FirmwareInfo info;

    bool isFor(const FirmwareHeader &image) const;
};

struct FirmwareSearch
{
    std::vector<UpgradableDevice> devices;
    bool isComplete = true; ///< false if a device didn't answer
};

/** On which nodes of the bus it is looked. */
enum class SearchIn { BootMode, BothModes };

/**
 * Asks the devices of the bus for their firmware. One that doesn't answer takes three times its answer time.
 * \param isEnding asked before each device; ends the search
 */
FirmwareSearch findUpgradable(Channels &channels, SearchIn where, const std::function<bool()> &isEnding = {});

} // namespace portwire
