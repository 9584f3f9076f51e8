#pragma once

#include "portwire/link/UpgradeRun.h"
#include "portwire/portwire.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace portwire {

/**
 * Runs the upgrades that the program starts, one at a time, on a thread of its own.
 *
 * An upgrade works on the bus alone. It uses neither the report link nor the notice of changes on the bus, so the
 * program may end both meanwhile, or start them: a link on the device in question finds it gone and waits for it, and
 * what it couldn't write goes out when the device is back.
 *
 * A callback may stand still until another thread goes on that is waiting for the end of this object. So whoever ends
 * it waits for requests to devices, which take some 30 ms, and never for a callback. The thread then ends by itself,
 * when the callback comes back; what it works on must live as long. A device that is left in the middle stays in boot
 * mode, where the next upgrade finds it.
 */
class Upgrades : private UpgradeHost
{
public:
    explicit Upgrades(std::shared_ptr<Channels> onChannels);
    /** Ends, and waits for a callback that is running as well. */
    ~Upgrades() override;

    /** See UsbUpgrade_Start(). \param image whatever it says; copied */
    void start(const FirmwareImage &image, PortwireUpgradeCallback callback, std::chrono::milliseconds patience);

    /** Ends what is going on. No callback begins afterwards, and a start does nothing while one is still running. */
    void end();

private:
    struct Order
    {
        std::vector<std::uint8_t> image;
        PortwireUpgradeCallback callback;
        std::chrono::milliseconds patience;
    };

    void run();
    void callRefused(std::unique_lock<std::mutex> &lock);
    void call(std::unique_lock<std::mutex> &lock, PortwireUpgradeCallback callback, std::uint8_t kind,
              std::uint8_t value);

    void progressed(int percent) override;
    bool isEnding() override;
    void pause(std::chrono::milliseconds time) override;

    const std::shared_ptr<Channels> channels;
    std::mutex mutex;
    std::condition_variable changed;
    std::thread thread;
    std::optional<Order> next;
    bool isBusy = false; ///< until right before the message of the end, which may start the next one
    PortwireUpgradeCallback current = nullptr;
    std::vector<PortwireUpgradeCallback> refused; ///< starts while one was going on
    bool hasEnded = false;
    bool isInCallback = false;
    bool isThreadOver = false;
};

} // namespace portwire
