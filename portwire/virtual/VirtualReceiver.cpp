#include "portwire/virtual/VirtualReceiver.h"

#include <algorithm>
#include <utility>

namespace portwire {

bool VirtualReceiver::isAskedAlone(std::uint8_t code)
{
    constexpr std::uint8_t codes[] = {1, 3, 5, 6, 12, 20, 21, 22, 23, 24};
    return BootLoader::isAsked(code) || std::find(std::begin(codes), std::end(codes), code) != std::end(codes);
}

FirmwarePacket VirtualReceiver::answer(const FirmwarePacket &request)
{
    switch (request.code) {
    case 5:
        return enterPairing(request);
    case 6:
        return request.answer({pairingStatus});
    case 12:
        return leavePairing(request);
    case 20:
        return setLight(request);
    case 21:
        return light(request);
    case 22:
        return setLongRange(request);
    case 23:
        return request.answer({static_cast<std::uint8_t>(stored.isLongRange)});
    case 24:
        return request.answer(
            {static_cast<std::uint8_t>(loader.version() % 256), static_cast<std::uint8_t>(loader.version() / 256)});
    default:
        return request.refusal();
    }
}

FirmwarePacket VirtualReceiver::light(const FirmwarePacket &request) const
{
    if (!model.hasLight)
        return request.refusal();
    return request.answer({stored.light.begin(), stored.light.end()});
}

FirmwarePacket VirtualReceiver::setLight(const FirmwarePacket &request)
{
    if (!model.hasLight || request.data.size() < stored.light.size() || request.data[0] > 3)
        return request.refusal();
    std::copy_n(request.data.begin(), stored.light.size(), stored.light.begin());
    if (storedChanged)
        storedChanged();
    return request.answer();
}

FirmwarePacket VirtualReceiver::setLongRange(const FirmwarePacket &request)
{
    if (request.data.empty())
        return request.refusal();
    stored.isLongRange = request.data[0] != 0;
    if (storedChanged)
        storedChanged();
    return request.answer();
}

bool VirtualReceiver::changeLight(int mode)
{
    if (!model.hasLight || mode < 0 || mode > 3)
        return false;
    stored.light[0] = static_cast<std::uint8_t>(mode);
    if (storedChanged)
        storedChanged();
    if (announce)
        announce({21, 0, 0, 0, {stored.light.begin(), stored.light.end()}});
    return true;
}

void VirtualReceiver::changeLongRange(bool isOn)
{
    const bool wasOn = std::exchange(stored.isLongRange, isOn);
    if (storedChanged)
        storedChanged();
    if (wasOn && !isOn && announce)
        announce({23, 0, 0, 0, std::vector<std::uint8_t>(10)});
}

/** Asked again in the middle, it looks as long as the first time. */
FirmwarePacket VirtualReceiver::enterPairing(const FirmwarePacket &request)
{
    if (request.data.empty() || request.data[0] != companyId)
        return request.refusal();
    pairingUntil = now() + pairingTime;
    setPairingStatus(1);
    return request.answer();
}

/** Whoever says so knows it, so nothing is announced. */
FirmwarePacket VirtualReceiver::leavePairing(const FirmwarePacket &request)
{
    if (isPairing())
        pairingStatus = 0;
    return request.answer();
}

void VirtualReceiver::endPairing(bool isPaired) { setPairingStatus(isPaired ? 3 : 2); }

void VirtualReceiver::losePower()
{
    pairingStatus = 0;
    loader.losePower();
}

void VirtualReceiver::restart(bool isIntoBoot)
{
    losePower();
    if (isIntoBoot)
        loader.enter();
    else
        loader.leave();
}

void VirtualReceiver::setPairingStatus(std::uint8_t status)
{
    if (std::exchange(pairingStatus, status) != status && announce)
        announce({6, 0, 0, 0, {status}});
}

} // namespace portwire
