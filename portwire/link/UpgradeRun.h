#pragma once

#include "portwire/link/FirmwareSearch.h"

#include <chrono>

namespace portwire {

/** Whoever runs an upgrade, on the thread on which it runs. */
class UpgradeHost
{
public:
    virtual ~UpgradeHost() = default;
    /** \param percent of the file that the device has, 0 to 100 */
    virtual void progressed(int percent) = 0;
    /** True once the upgrade must end where it is. Asked between any two requests. */
    virtual bool isEnding() = 0;
    /** Waits, unless it is ending. */
    virtual void pause(std::chrono::milliseconds time) = 0;
};

/**
 * Brings one image into one device. Each step looks anew where the device is on the bus and in which mode, and does
 * what is next from there. So it makes no difference how the device came there: by a request, by itself or by a hand.
 */
class UpgradeRun
{
public:
    /** \param patience how long nothing may go on until it fails */
    UpgradeRun(std::shared_ptr<Channels> onChannels, std::vector<std::uint8_t> imageFile,
               std::chrono::milliseconds patience, UpgradeHost &itsHost);

    /** \return true when the device runs the new firmware; the reason of a failure is in the log. */
    bool run();

private:
    using Clock = std::chrono::steady_clock;
    enum class Step { Wait, GoOn, Succeeded, Failed };

    bool chooseDevice();
    std::optional<UpgradableDevice> look();
    Step doNext();
    Step leaveNormalMode(const UpgradableDevice &device);
    Step transfer(Channel &channel);
    Step sendBlocks(Channel &channel);
    Step verify(Channel &channel);
    Step restart(Channel &channel);

    std::optional<Frame> askUntilOver(Channel &channel, const Request &request);
    Step fail(const char *what) const;
    Step refused(std::uint8_t reason) const;
    void noteProgress();
    void tell(std::size_t percent);
    bool isOver();

    const std::shared_ptr<Channels> channels;
    const std::vector<std::uint8_t> image;
    const std::chrono::milliseconds patience;
    UpgradeHost &host;

    FirmwareHeader header{};
    std::uint32_t unit = 0;
    Clock::time_point deadline{};
    bool wasInBoot = false;
    bool isVerified = false;
    int transfers = 0;
    int toldPercent = -1;
};

} // namespace portwire
