#pragma once

#include <atomic>
#include <cstdint>

namespace portwire {

/** What crossed the wire since the library was loaded, over all devices. */
struct Statistics
{
    std::atomic<std::uint64_t> sent{0};     ///< reports to devices, repeats included
    std::atomic<std::uint64_t> written{0};  ///< those of `sent` that write flash
    std::atomic<std::uint64_t> received{0}; ///< reports from devices
    std::atomic<std::uint64_t> repeated{0}; ///< requests sent again, because no good answer came
    std::atomic<std::uint64_t> dropped{0};  ///< received, but damaged or awaited by nobody
};

} // namespace portwire
