#include "portwire/virtual/VirtualMouse.h"

#include "portwire/virtual/ReportRates.h"

#include <algorithm>
#include <utility>

namespace portwire {

VirtualMouse::VirtualMouse(const MouseModel &ofModel, Clock clock)
    : model(ofModel), now(std::move(clock)), loader(ofModel.version), lastUse(now())
{
    stored.profiles.fill(FirmwareFlash::factory(model));
}

FirmwarePacket VirtualMouse::answer(const FirmwarePacket &request)
{
    switch (request.code) {
    case 2:
        programShown = !request.data.empty() && request.data[0] != 0;
        return request.answer();
    case 4:
        return request.answer({static_cast<std::uint8_t>(percent), static_cast<std::uint8_t>(charging), 0, 0});
    case 7:
        return write(request);
    case 8:
        return read(request);
    case 9:
        active() = FirmwareFlash::factory(model);
        changed();
        return request.answer();
    case 11:
        batteryCurve = request.data;
        return request.answer();
    case 14:
        return request.answer({stored.activeProfile});
    case 15:
        return selectProfile(request);
    case 18:
        return request.answer(
            {static_cast<std::uint8_t>(loader.version() % 256), static_cast<std::uint8_t>(loader.version() / 256)});
    default:
        return request.refusal();
    }
}

FirmwarePacket VirtualMouse::read(const FirmwarePacket &request) const
{
    const std::size_t length = request.data.empty() ? 0 : request.data[0];
    if (length == 0 || length > 54 || request.address + length > FirmwareFlash::size)
        return request.refusal();
    const auto from = flash().bytes.begin() + request.address;
    return request.answer({from, from + static_cast<long>(length)});
}

FirmwarePacket VirtualMouse::write(const FirmwarePacket &request)
{
    if (request.data.empty() || request.address + request.data.size() > FirmwareFlash::size)
        return request.refusal();
    if (request.flags & 0x01)
        staged.clear();
    else if (staged.empty())
        return request.batchLost(); // sleep or another profile came in between
    staged.push_back(request);
    if (request.flags & 0x02) {
        for (const FirmwarePacket &part : staged)
            std::copy(part.data.begin(), part.data.end(), active().bytes.begin() + part.address);
        staged.clear();
        touched();
        changed();
    }
    return request.answer();
}

FirmwarePacket VirtualMouse::selectProfile(const FirmwarePacket &request)
{
    if (request.data.empty() || request.data[0] >= profileCount)
        return request.refusal();
    changeProfile(request.data[0]);
    return request.answer({stored.activeProfile});
}

void VirtualMouse::connectionLost() { staged.clear(); }

bool VirtualMouse::isAwake()
{
    if (loader.isActive())
        return false;
    const int idle = flash().idleSeconds();
    if (awake && !corded && idle > 0 && now() - lastUse >= std::chrono::seconds(idle))
        sleep();
    return awake;
}

void VirtualMouse::sleep()
{
    awake = false;
    staged.clear();
    programShown = false;
    lookingUntil = {};
}

void VirtualMouse::wake()
{
    const bool wasAwake = isAwake();
    awake = true;
    touched();
    // The charge has changed meanwhile, so that is what a mouse that comes back has to tell.
    if (!wasAwake)
        tell(batteryChanged);
}

void VirtualMouse::setCorded(bool isNowCorded)
{
    if (corded == isNowCorded)
        return;
    connectionLost();
    loader.losePower(); // or its link, which is the same to it
    corded = isNowCorded;
    charging = isNowCorded;
    awake = true;
    touched();
    // What it announced on the cable went to a program that may never have opened it there.
    tell(batteryChanged | std::exchange(changedOnCable, std::uint8_t{0}));
}

void VirtualMouse::restart(bool isIntoBoot)
{
    sleep();
    if (isIntoBoot)
        return loader.enter();
    loader.leave();
    wake();
}

bool VirtualMouse::lookForReceiver(std::chrono::seconds patience)
{
    if (corded)
        return false;
    wake();
    connectionLost();
    lookingUntil = now() + patience;
    return true;
}

void VirtualMouse::receiverFound()
{
    lookingUntil = {};
    connectionLost();
    programShown = false;
    tell(batteryChanged);
}

void VirtualMouse::resetByHand()
{
    wake();
    staged.clear();
    active() = FirmwareFlash::factory(model);
    changed();
    tell(wholeRecordChanged);
}

bool VirtualMouse::changeLevel(int level)
{
    if (level < 0 || level >= flash().levelCount())
        return false;
    wake();
    active().bytes[flash::currentLevel] = static_cast<std::uint8_t>(level);
    changed();
    tell(dpiLevelChanged);
    return true;
}

bool VirtualMouse::changeRate(std::uint8_t code)
{
    if (hertzOfCode(code) == 0)
        return false;
    wake();
    active().bytes[flash::reportRate] = code;
    changed();
    tell(reportRateChanged);
    return true;
}

bool VirtualMouse::changeProfile(int index)
{
    if (index < 0 || index >= static_cast<int>(profileCount))
        return false;
    wake();
    if (index == stored.activeProfile)
        return true;
    staged.clear();
    stored.activeProfile = static_cast<std::uint8_t>(index);
    changed();
    tell(wholeRecordChanged);
    return true;
}

void VirtualMouse::changeLight(bool isOn, int mode)
{
    active().bytes[flash::light] = static_cast<std::uint8_t>(mode);
    active().bytes[flash::lightOn] = isOn ? 1 : 0;
    changed();
    tell(lightChanged);
}

void VirtualMouse::changeIndicator(bool isOn)
{
    active().bytes[flash::indicatorOn] = isOn ? 1 : 0;
    changed();
    tell(indicatorChanged);
}

bool VirtualMouse::setBattery(int newPercent, bool isNowCharging)
{
    if (newPercent < 0 || newPercent > 100)
        return false;
    percent = newPercent;
    charging = isNowCharging;
    if (isAwake())
        tell(batteryChanged);
    return true;
}

void VirtualMouse::setRecord(const std::array<std::uint8_t, FirmwareFlash::recordSize> &record)
{
    active().setRecord(record);
    touched();
    changed();
}

void VirtualMouse::setContent(const Stored &content)
{
    stored = content;
    stored.activeProfile = std::min<std::uint8_t>(stored.activeProfile, profileCount - 1);
}

void VirtualMouse::tell(std::uint8_t statusFlags)
{
    if (corded)
        changedOnCable |= statusFlags;
    if (announce && !loader.isActive())
        announce({10, 0, 0, 0, {statusFlags}});
}

void VirtualMouse::touched() { lastUse = now(); }

void VirtualMouse::changed()
{
    if (storedChanged)
        storedChanged();
}

} // namespace portwire
