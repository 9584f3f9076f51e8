#include "portwire/virtual/VirtualBus.h"

#include <algorithm>

// What happens to receivers: how they and mice find each other, and what another program sets.

namespace portwire {

std::string VirtualBus::addReceiver(std::string_view linkName, std::string_view modelName, std::string &id)
{
    const ReceiverModel *const model = findReceiverModel(linkName);
    const MouseModel *const mouseModel = findMouseModel(modelName);
    if (!model || !mouseModel)
        return "there is no such class of receiver or no such model";
    {
        const std::lock_guard lock(mutex);
        const std::string base = std::string(modelName) + "-" + std::string(linkName);
        id = base;
        for (int number = 2; !isIdFree(id); ++number)
            id = base + "-" + std::to_string(number);
        addReceiver(id, *mouseModel, *model);
        noteChange();
    }
    notify();
    return {};
}

std::string VirtualBus::startPairing(const std::string &id, std::chrono::seconds patience)
{
    const std::lock_guard lock(mutex);
    Mouse *const mouse = findMouse(id);
    if (!mouse)
        return "there is no mouse with this id";
    if (mouse->device.bootLoader().isActive())
        return "the mouse is in boot mode";
    if (!mouse->device.lookForReceiver(patience))
        return "a mouse on its cable looks for no receiver";
    settlePairings();
    return {};
}

std::string VirtualBus::resetByHand(const std::string &id)
{
    const std::lock_guard lock(mutex);
    Mouse *const mouse = findMouse(id);
    if (!mouse)
        return "there is no mouse with this id";
    if (mouse->device.bootLoader().isActive())
        return "the mouse is in boot mode";
    mouse->device.resetByHand();
    return {};
}

std::string VirtualBus::changeReceiverLight(const std::string &id, int mode)
{
    const std::lock_guard lock(mutex);
    Receiver *const receiver = findReceiver(id);
    return receiver && receiver->device.changeLight(mode) ? "" : "there is no receiver with this light";
}

std::string VirtualBus::changeLongRange(const std::string &id, bool isOn)
{
    const std::lock_guard lock(mutex);
    Receiver *const receiver = findReceiver(id);
    if (!receiver)
        return "there is no receiver with this id";
    receiver->device.changeLongRange(isOn);
    return {};
}

/** Looked at whenever anything happens on the bus; a receiver that nobody asks need not know that its time is up. */
void VirtualBus::settlePairings()
{
    for (const auto &receiver : receivers) {
        if (!receiver->isPlugged || !receiver->device.isPairing())
            continue;
        const auto found =
            std::find_if(mice.begin(), mice.end(), [](const auto &mouse) { return mouse->device.isLooking(); });
        if (receiver->device.isPairingOver())
            receiver->device.endPairing(false);
        else if (found != mice.end())
            pair(*receiver, **found);
    }
}

/** The mouse forgets the receiver before, and the receiver its mouse before, which hears nothing of it. */
void VirtualBus::pair(Receiver &receiver, Mouse &mouse)
{
    if (Receiver *const before = receiverOf(mouse))
        before->pairedMouse.clear();
    receiver.pairedMouse = mouse.id;
    receiver.mouseModel = mouse.model;
    receiver.device.endPairing(true);
    mouse.device.receiverFound();
    noteChange();
}

} // namespace portwire
