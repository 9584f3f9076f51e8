#include "portwire/virtual/VirtualBus.h"

#include <algorithm>

// What hands do to the devices.

namespace portwire {

namespace {

const char noSuchMouse[] = "there is no mouse with this id";
const char noSuchDevice[] = "there is no device with this id";

/** The names of a table, for a message. */
template<typename Model, std::size_t count>
std::string namesOf(const Model (&models)[count], std::string_view Model::*name)
{
    std::string names;
    for (const Model &model : models)
        names.append(names.empty() ? "" : ", ").append(model.*name);
    return names;
}

} // namespace

std::string VirtualBus::add(std::string_view modelName, std::string_view linkName, std::string &id)
{
    const MouseModel *const mouseModel = findMouseModel(modelName);
    const ReceiverModel *const receiverModel = findReceiverModel(linkName);
    if (!mouseModel)
        return "the model is none of " + namesOf(mouseModels, &MouseModel::name);
    if (!receiverModel && linkName != "cable")
        return "the link is none of cable, " + namesOf(receiverModels, &ReceiverModel::link);
    {
        const std::lock_guard lock(mutex);
        id = modelName;
        for (int number = 2; !isIdFree(id); ++number)
            id = std::string(modelName) + "-" + std::to_string(number);
        Mouse &mouse = addMouse(id, *mouseModel);
        if (receiverModel)
            addReceiver(id + "-" + std::string(linkName), *mouseModel, *receiverModel).pairedMouse = id;
        else
            mouse.device.setCorded(true);
        noteChange();
    }
    notify();
    return {};
}

std::string VirtualBus::remove(const std::string &id)
{
    {
        const std::lock_guard lock(mutex);
        Mouse *const mouse = findMouse(id);
        Receiver *const receiver = mouse ? receiverOf(*mouse) : findReceiver(id);
        if (!mouse && !receiver)
            return noSuchDevice;
        if (mouse)
            shut(mouse->path());
        if (receiver)
            shut(receiver->path());
        mice.erase(std::remove_if(mice.begin(), mice.end(), [&](const auto &m) { return m.get() == mouse; }),
                   mice.end());
        receivers.erase(
            std::remove_if(receivers.begin(), receivers.end(), [&](const auto &r) { return r.get() == receiver; }),
            receivers.end());
        noteChange();
    }
    notify();
    return {};
}

std::string VirtualBus::setPlugged(const std::string &id, bool isNowPlugged)
{
    {
        const std::lock_guard lock(mutex);
        if (Mouse *const mouse = findMouse(id))
            plugMouse(*mouse, isNowPlugged);
        else if (Receiver *const receiver = findReceiver(id))
            plugReceiver(*receiver, isNowPlugged);
        else
            return noSuchDevice;
        noteChange();
    }
    notify();
    return {};
}

void VirtualBus::plugReceiver(Receiver &receiver, bool isNowPlugged)
{
    receiver.isPlugged = isNowPlugged;
    if (isNowPlugged)
        return;
    receiver.device.losePower();
    shut(receiver.path());
    if (Mouse *const mouse = reachedBy(receiver))
        mouse->device.connectionLost();
}

void VirtualBus::plugMouse(Mouse &mouse, bool isNowPlugged)
{
    if (!isNowPlugged)
        shut(mouse.path());
    mouse.device.setCorded(isNowPlugged);
}

template<typename Action>
std::string VirtualBus::onMouse(const std::string &id, Action action)
{
    const std::lock_guard lock(mutex);
    Mouse *const mouse = findMouse(id);
    return mouse ? action(*mouse) : noSuchMouse;
}

/** For what a hand does: in boot mode the mouse knows nothing of its buttons. */
template<typename Action>
std::string VirtualBus::onRunningMouse(const std::string &id, Action action)
{
    return onMouse(id, [&](Mouse &mouse) -> std::string {
        return mouse.device.bootLoader().isActive() ? "the mouse is in boot mode" : action(mouse);
    });
}

std::string VirtualBus::setAwake(const std::string &id, bool isNowAwake)
{
    return onRunningMouse(id, [&](Mouse &mouse) -> std::string {
        if (isNowAwake)
            mouse.device.wake();
        else
            mouse.device.sleep();
        return {};
    });
}

std::string VirtualBus::changeLevel(const std::string &id, int level)
{
    return onRunningMouse(id, [&](Mouse &mouse) -> std::string {
        return mouse.device.changeLevel(level) ? "" : "the mouse has no such level in use; the first is 0";
    });
}

std::string VirtualBus::changeRate(const std::string &id, int code)
{
    return onRunningMouse(id, [&](Mouse &mouse) -> std::string {
        const bool isByte = code >= 0 && code <= 255;
        return isByte && mouse.device.changeRate(static_cast<std::uint8_t>(code))
                   ? ""
                   : "the code is none of 8, 4, 2, 1, 16, 32 (125 to 4000 Hz)";
    });
}

std::string VirtualBus::changeProfile(const std::string &id, int index)
{
    return onRunningMouse(id, [&](Mouse &mouse) -> std::string {
        return mouse.device.changeProfile(index) ? "" : "the profile is none of 0, 1, 2, 3";
    });
}

std::string VirtualBus::setBattery(const std::string &id, int percent, bool isCharging)
{
    return onRunningMouse(id, [&](Mouse &mouse) -> std::string {
        if (!mouse.device.setBattery(percent, isCharging))
            return "the charge is not within 0 to 100 percent";
        noteChange();
        return {};
    });
}

std::string VirtualBus::play(const std::string &id, const std::vector<ButtonPress> &presses,
                             std::vector<HidEvent> &events)
{
    std::vector<ButtonPress> inOrder = presses;
    std::stable_sort(inOrder.begin(), inOrder.end(),
                     [](const ButtonPress &a, const ButtonPress &b) { return a.downMs < b.downMs; });
    std::array<std::int64_t, flash::slots> isFreeAt{};
    for (const ButtonPress &press : inOrder) {
        if (press.slot < 0 || press.slot >= static_cast<int>(flash::slots))
            return "the slot is not within 0 to 15";
        if (press.downMs < 0 || press.upMs < press.downMs)
            return "a button is let go after it was pressed, and pressed at 0 or later";
        std::int64_t &freeAt = isFreeAt[static_cast<std::size_t>(press.slot)];
        if (press.downMs < freeAt)
            return "a button that is down can't be pressed";
        freeAt = press.upMs;
    }
    return onRunningMouse(id, [&](Mouse &mouse) -> std::string {
        const Receiver *const receiver = receiverOf(mouse);
        const bool isWireless = receiver && !mouse.device.isCorded();
        const int mostHertz = isWireless ? receiver->model->mostHertz : cableMostHertz;
        events = ButtonPlayer(mouse.device, mostHertz).play(inOrder);
        return {};
    });
}

std::string VirtualBus::setRecord(const std::string &id, const std::vector<std::uint8_t> &bytes)
{
    std::array<std::uint8_t, FirmwareFlash::recordSize> whole{};
    if (bytes.size() != whole.size())
        return "a record has 10428 bytes";
    std::copy(bytes.begin(), bytes.end(), whole.begin());
    return onMouse(id, [&](Mouse &mouse) -> std::string {
        mouse.device.setRecord(whole);
        return {};
    });
}

Wire *VirtualBus::findWire(const std::string &id)
{
    Mouse *const mouse = findMouse(id);
    Receiver *const receiver = findReceiver(id);
    if (mouse)
        return &mouse->wire;
    return receiver ? &receiver->wire : nullptr;
}

std::string VirtualBus::setFault(const std::string &id, FaultKind kind, int count, int after, ReportClass reports)
{
    const std::lock_guard lock(mutex);
    Wire *const wire = findWire(id);
    if (!wire)
        return noSuchDevice;
    wire->fault(reports).set(kind, count, after);
    return {};
}

std::string VirtualBus::setLatency(const std::string &id, std::chrono::microseconds latency)
{
    const std::lock_guard lock(mutex);
    Wire *const wire = findWire(id);
    if (!wire)
        return noSuchDevice;
    if (latency < std::chrono::microseconds::zero() || latency > std::chrono::seconds(1))
        return "the latency is not within 0 to 1000 ms";
    wire->latency = latency;
    return {};
}

std::string VirtualBus::record(const std::string &id, std::vector<std::uint8_t> &bytes)
{
    return onMouse(id, [&](Mouse &mouse) -> std::string {
        bytes = mouse.device.flash().record();
        return {};
    });
}

} // namespace portwire
