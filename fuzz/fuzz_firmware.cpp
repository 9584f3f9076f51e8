/**
 * A firmware image that anyone may have put into the folder, and a device that does what the input says while it gets
 * it: it answers or doesn't, lies, refuses, loses its power, falls into boot mode. Both sides judge the image alike,
 * and whatever a device did that doesn't lie, it takes in the end what is for it, and nothing else.
 */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "portwire/link/UpgradeRun.h"
#include "portwire/virtual/BootLoader.h"
#include "portwire/virtual/VirtualEndpoint.h"
#include "tools/FirmwareFile.h"

using namespace portwire;

namespace {

constexpr std::uint16_t oldVersion = 0x0112;
constexpr int mostLosses = 3; ///< the file is sent four times

const BootLoader::Identity identity{210, 1, "HALVARION-Q1", 0x12345678};

/** A bus with one device, whose node depends on its mode. */
class HostileBus : public Bus, public std::enable_shared_from_this<HostileBus>
{
public:
    HostileBus(const FuzzInput &behaviour, bool isInBoot) : input(behaviour)
    {
        if (isInBoot)
            loader.enter();
    }

    std::vector<DeviceNode> enumerate() override
    {
        const std::lock_guard lock(mutex);
        if (loader.isActive())
            return {{"boot", "F0A1", "01B0", 0, 1, 0}};
        return {{"normal", "F0A1", "0101", 1, 5, 0}};
    }
    void setChangeNotice(std::function<void()>) override {}
    std::unique_ptr<Endpoint> open(const std::string &path) override
    {
        const std::lock_guard lock(mutex);
        if (path != (loader.isActive() ? "boot" : "normal"))
            return nullptr;
        inbox = std::make_shared<Inbox>();
        return std::make_unique<Opened>(shared_from_this(), inbox);
    }

    BootLoader loader{oldVersion};
    bool hasLied = false;
    bool hasEntered = false; ///< boot mode, by a request
    bool hasStarted = false; ///< a new firmware; it may fall into boot mode right after
    int losses = 0;          ///< times that it forgot what it was doing

private:
    struct Opened : Endpoint
    {
        Opened(std::shared_ptr<HostileBus> ofBus, std::shared_ptr<Inbox> itsInbox)
            : bus(std::move(ofBus)), inbox(std::move(itsInbox))
        {
        }
        bool send(const Report &report) override { return !inbox->isShut() && bus->receive(report); }
        bool waitForReport() override { return inbox->wait(); }
        bool takeReport(Report &report) override { return inbox->take(report); }
        std::chrono::milliseconds answerTime() const override { return std::chrono::milliseconds(0); }
        void close() override { inbox->shut(); }
        const std::shared_ptr<HostileBus> bus;
        const std::shared_ptr<Inbox> inbox;
    };

    bool receive(const Report &report)
    {
        const std::lock_guard lock(mutex);
        enum Deed { Drop, ChangeData, ChangeStatus, LosePower, FallIntoBoot, deeds };
        const int deed = input.isEmpty() ? deeds : input.byte() % (2 * deeds);
        const auto request = FirmwarePacket::parse(report);
        require(request.has_value(), "a request is a whole report");
        auto answer = loader.answer(*request, identity);
        require(answer.has_value(), "nobody has planned a loss of power");
        if (deed == ChangeData)
            answer->data = input.bytes();
        if (deed == ChangeStatus)
            answer->flags = input.byte();
        hasLied = hasLied || deed == ChangeData || deed == ChangeStatus;
        if (deed != Drop)
            inbox->push(answer->build());
        const BootLoader::Next next = loader.takeNext();
        if (next == BootLoader::Next::LeaveBoot) {
            loader.leave();
            hasStarted = true;
        }
        if (next == BootLoader::Next::EnterBoot || deed == FallIntoBoot)
            loader.enter();
        hasEntered = hasEntered || next == BootLoader::Next::EnterBoot;
        if (deed == LosePower)
            loader.losePower();
        losses += deed == LosePower || deed == FallIntoBoot;
        if (next != BootLoader::Next::Stay || deed == LosePower || deed == FallIntoBoot)
            inbox->shut();
        return true;
    }

    std::mutex mutex;
    FuzzInput input;
    std::shared_ptr<Inbox> inbox;
};

/** In no time: it ends by a count of the steps, and doesn't wait. */
class Host : public UpgradeHost
{
public:
    void progressed(int percent) override { require(percent >= 0 && percent <= 100, "a percentage is one"); }
    bool isEnding() override { return --steps < 0; }
    void pause(std::chrono::milliseconds) override {}

private:
    int steps = 20000;
};

/** The device's own judgement, if it is sent everything. */
bool isTakenByDevice(const std::vector<std::uint8_t> &file)
{
    BootLoader loader(oldVersion);
    loader.enter();
    const auto ask = [&](std::uint8_t code, std::size_t block, std::vector<std::uint8_t> data) {
        return loader.answer({code, 1, static_cast<std::uint16_t>(block), 0, std::move(data)}, identity)->data;
    };
    std::vector<std::uint8_t> length;
    for (unsigned shift = 0; shift < 32; shift += 8)
        length.push_back(static_cast<std::uint8_t>(file.size() >> shift));
    ask(27, 0, length);
    constexpr std::size_t blockSize = 52;
    for (std::size_t at = 0; at < file.size(); at += blockSize) {
        const auto from = file.begin() + static_cast<std::ptrdiff_t>(at);
        ask(28, at / blockSize, {from, from + static_cast<std::ptrdiff_t>(std::min(blockSize, file.size() - at))});
    }
    return ask(29, 0, {}).at(0) == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzHome::instance();
    FuzzInput input(data, size);
    const std::uint8_t control = input.byte();
    auto file = firmwareFile({210, 18, 1, "HALVARION-Q1", 0x0120, 120});
    input.patch(file);
    if (control & 1)
        signFirmware(file);
    if (control & 2)
        file.resize(input.word() % (file.size() + 1));
    file.shrink_to_fit(); // so that a read behind the end is seen

    UpgradableDevice device{};
    device.info.firmware = {oldVersion, identity.target, 18, identity.modelId};
    std::copy(identity.name.begin(), identity.name.end(), device.info.firmware.name.begin());
    const char *reason = nullptr;
    const auto header = readFirmware(file.data(), file.size(), reason);
    require(header.has_value() == (reason == nullptr), "what is no image has a reason");
    const bool isFitting = header && device.isFor(*header);
    require(isFitting == isTakenByDevice(file), "both sides judge an image alike");

    const auto bus = std::make_shared<HostileBus>(input, (control & 4) != 0);
    Host host;
    const bool isDone = UpgradeRun(std::make_shared<Channels>(bus), file, std::chrono::milliseconds(60000), host).run();
    if (bus->hasLied)
        return 0;
    require(isFitting || (!isDone && !bus->hasEntered), "an image for something else leaves a device alone");
    require(!isDone || (bus->hasStarted && bus->loader.version() == header->version),
            "a device that is done has started the new firmware");
    require(isDone || !isFitting || bus->losses > mostLosses, "a device takes in the end what is for it");
    return 0;
}
