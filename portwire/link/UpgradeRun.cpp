#include "portwire/link/UpgradeRun.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace portwire {

namespace {

/** A device that restarts is off the bus for a second or so: often enough to lose nothing of it, seldom enough to leave
 * the bus alone. */
constexpr std::chrono::milliseconds lookPause{25};

/** Times that the file is sent. One that is begun again and again without an end is no progress. */
constexpr int mostTransfers = 4;

constexpr std::size_t blockSize = 52;

constexpr struct
{
    std::uint8_t reason;
    const char *text;
} reasons[] = {
    {1, "it isn't one"},
    {2, "it is for another kind of device"},
    {3, "it is of another company"},
    {4, "it is for another model"},
    {5, "it is for a device of another name"},
    {6, "its length is wrong"},
    {7, "its checksum is wrong"},
    {8, "its version is out of range"},
};
constexpr std::uint8_t wrongChecksum = 7;

bool isStatus(const Frame &answer, AnswerStatus status) { return answer.flags == static_cast<std::uint8_t>(status); }

} // namespace

UpgradeRun::UpgradeRun(std::shared_ptr<Channels> onChannels, std::vector<std::uint8_t> imageFile,
                       std::chrono::milliseconds longestWait, UpgradeHost &itsHost)
    : channels(std::move(onChannels)), image(std::move(imageFile)), patience(longestWait), host(itsHost)
{
}

bool UpgradeRun::run()
{
    const char *reason = "";
    const auto read = readFirmware(image.data(), image.size(), reason);
    if (!read) {
        qWarning("portwire: this is no firmware image: %s", reason);
        return false;
    }
    header = *read;
    noteProgress();
    if (!chooseDevice())
        return false;
    Step step = Step::GoOn;
    while (step == Step::GoOn || step == Step::Wait) {
        if (host.isEnding())
            return false;
        if (Clock::now() >= deadline)
            step = fail("nothing has gone on for too long");
        else if (step == Step::Wait)
            host.pause(lookPause);
        if (step != Step::Failed)
            step = doNext();
    }
    return step == Step::Succeeded;
}

/** A device that has just been plugged may not answer yet; only then it is looked again. */
bool UpgradeRun::chooseDevice()
{
    const auto isEnding = [this] { return host.isEnding(); };
    while (!isOver()) {
        const FirmwareSearch search = findUpgradable(*channels, SearchIn::BothModes, isEnding);
        std::vector<UpgradableDevice> fitting;
        std::copy_if(search.devices.begin(), search.devices.end(), std::back_inserter(fitting),
                     [this](const UpgradableDevice &device) { return device.isFor(header); });
        if (fitting.size() == 1) {
            unit = fitting.front().info.unit;
            return true;
        }
        if (fitting.size() > 1) {
            fail("several devices on the bus are what the image is for");
            return false;
        }
        if (search.isComplete)
            break;
        host.pause(lookPause);
    }
    if (!host.isEnding())
        fail("no device on the bus is what the image is for");
    return false;
}

std::optional<UpgradableDevice> UpgradeRun::look()
{
    const auto search = findUpgradable(*channels, SearchIn::BothModes, [this] { return host.isEnding(); });
    const auto found = std::find_if(search.devices.begin(), search.devices.end(), [this](const auto &device) {
        return device.info.unit == unit && device.isFor(header);
    });
    return found == search.devices.end() ? std::nullopt : std::optional(*found);
}

UpgradeRun::Step UpgradeRun::doNext()
{
    const auto device = look();
    if (!device)
        return Step::Wait;
    if (!device->info.isInBoot)
        return leaveNormalMode(*device);
    if (!wasInBoot)
        noteProgress();
    wasInBoot = true;
    const auto channel = channels->find(device->path);
    if (!channel)
        return Step::Wait;
    return isVerified ? restart(*channel) : transfer(*channel);
}

UpgradeRun::Step UpgradeRun::leaveNormalMode(const UpgradableDevice &device)
{
    if (!isVerified) {
        // From here on the device has no firmware; the answer may go under with the node.
        const auto channel = channels->find(device.path);
        const auto answer = channel ? channel->ask({ReportCode::EnterBoot}) : std::nullopt;
        return answer && isStatus(*answer, AnswerStatus::Refused) ? fail("the device has no boot mode") : Step::Wait;
    }
    return device.info.firmware.version == header.version ? Step::Succeeded
                                                          : fail("the device has started another firmware");
}

UpgradeRun::Step UpgradeRun::transfer(Channel &channel)
{
    if (++transfers > mostTransfers)
        return fail("the device never gets to the end of the image");
    const auto length = static_cast<std::uint32_t>(image.size());
    std::vector<std::uint8_t> lengthBytes;
    for (unsigned shift = 0; shift < 32; shift += 8)
        lengthBytes.push_back(static_cast<std::uint8_t>(length >> shift));
    tell(0);
    const auto answer = askUntilOver(channel, {ReportCode::UpgradeBegin, 0, 0, lengthBytes});
    if (!answer)
        return Step::Wait;
    if (!isStatus(*answer, AnswerStatus::Done))
        return fail("the device doesn't begin");
    if (answer->payload[0] != 0)
        return refused(answer->payload[0]);
    noteProgress();
    return sendBlocks(channel);
}

UpgradeRun::Step UpgradeRun::sendBlocks(Channel &channel)
{
    const std::size_t blocks = (image.size() + blockSize - 1) / blockSize;
    std::size_t furthest = 0;
    for (std::size_t next = 0; next < blocks;) {
        const auto from = image.begin() + static_cast<std::ptrdiff_t>(next * blockSize);
        const auto length = static_cast<std::ptrdiff_t>(std::min(blockSize, image.size() - next * blockSize));
        const auto answer = askUntilOver(
            channel, {ReportCode::UpgradeBlock, static_cast<std::uint16_t>(next), 0, {from, from + length}});
        if (!answer)
            return Step::Wait;
        if (isStatus(*answer, AnswerStatus::BatchLost))
            return Step::GoOn; // its power was away for a moment
        if (!isStatus(*answer, AnswerStatus::Done))
            return fail("the device refuses a block");
        if (answer->payload[2] != 0)
            return refused(answer->payload[2]);
        next = answer->payload[0] | static_cast<std::size_t>(answer->payload[1]) << 8;
        if (next > blocks)
            return fail("the device asks for a block that there isn't");
        if (next > furthest) {
            furthest = next;
            tell(next * 100 / blocks);
        } else if (isOver()) {
            return Step::Wait; // it answers, but takes nothing
        }
    }
    return verify(channel);
}

UpgradeRun::Step UpgradeRun::verify(Channel &channel)
{
    const auto answer = askUntilOver(channel, {ReportCode::UpgradeVerify});
    if (!answer)
        return Step::Wait;
    if (isStatus(*answer, AnswerStatus::BatchLost))
        return Step::GoOn;
    if (!isStatus(*answer, AnswerStatus::Done))
        return fail("the device doesn't verify what it has");
    // The file itself was found whole, so something went wrong on the way.
    if (answer->payload[0] == wrongChecksum)
        return Step::GoOn;
    if (answer->payload[0] != 0)
        return refused(answer->payload[0]);
    isVerified = true;
    noteProgress();
    return restart(channel);
}

/** Ends in normal mode; that is seen at the next look. */
UpgradeRun::Step UpgradeRun::restart(Channel &channel)
{
    const auto answer = channel.ask({ReportCode::Restart});
    // It lost its power between the two and knows nothing of an image.
    if (answer && !isStatus(*answer, AnswerStatus::Done))
        isVerified = false;
    return Step::Wait;
}

/** \return nothing once the device has gone, or it is over. */
std::optional<Frame> UpgradeRun::askUntilOver(Channel &channel, const Request &request)
{
    while (!isOver() && !channel.isGone()) {
        if (auto answer = channel.ask(request))
            return answer;
        // Spoiled answers come at once.
        host.pause(lookPause);
    }
    return std::nullopt;
}

UpgradeRun::Step UpgradeRun::fail(const char *what) const
{
    std::string name(header.name.begin(), std::find(header.name.begin(), header.name.end(), 0));
    // It comes from a file that may say anything.
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    qWarning("portwire: the upgrade for '%s' (target %d, company %d, model %d) has failed: %s", name.c_str(),
             int{header.target}, int{header.companyId}, int{header.modelId}, what);
    return Step::Failed;
}

UpgradeRun::Step UpgradeRun::refused(std::uint8_t reason) const
{
    const auto *const known =
        std::find_if(std::begin(reasons), std::end(reasons), [=](const auto &each) { return each.reason == reason; });
    const char *const text = known == std::end(reasons) ? "for a reason of its own" : known->text;
    return fail(qPrintable(QStringLiteral("the device refuses the image, %1").arg(QLatin1String(text))));
}

void UpgradeRun::noteProgress() { deadline = Clock::now() + patience; }

void UpgradeRun::tell(std::size_t percent)
{
    const int now = static_cast<int>(percent);
    if (std::exchange(toldPercent, now) != now)
        host.progressed(now);
    noteProgress(); // the time in which the program looks at it isn't the device's
}

bool UpgradeRun::isOver() { return host.isEnding() || Clock::now() >= deadline; }

} // namespace portwire
