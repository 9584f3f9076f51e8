#pragma once

#include "portwire/virtual/VirtualMouse.h"
#include "portwire/virtual/VirtualReceiver.h"

#include <string>

namespace portwire {

/** All that is on the virtual bus, as it is kept over a restart. */
struct Scene
{
    struct Mouse
    {
        std::string id;
        std::string model;
        bool isCorded = false;
        int batteryPercent = 80;
        VirtualMouse::Stored stored{};
        BootLoader::Stored firmware{};
    };
    struct Receiver
    {
        std::string id;
        std::string model;
        std::string link;        ///< "1k", "2k" or "4k"
        std::string pairedMouse; ///< its id; empty for none
        bool isPlugged = true;
        VirtualReceiver::Stored stored{};
        BootLoader::Stored firmware{};
    };
    std::vector<Mouse> mice;
    std::vector<Receiver> receivers;
};

} // namespace portwire
