#include "portwire/virtual/VirtualBus.h"

// What the devices look like.

namespace portwire {

std::vector<DeviceDescription> VirtualBus::describe()
{
    const std::lock_guard lock(mutex);
    std::vector<DeviceDescription> all;
    for (const auto &mouse : mice)
        all.push_back(describe(*mouse));
    for (const auto &receiver : receivers)
        all.push_back(describe(*receiver));
    return all;
}

DeviceDescription VirtualBus::describe(Mouse &mouse)
{
    const Receiver *const receiver = receiverOf(mouse);
    const FirmwareFlash &flash = mouse.device.flash();
    DeviceDescription device{};
    device.id = mouse.id;
    device.model = mouse.model->name;
    const BootLoader &loader = mouse.device.bootLoader();
    device.product = mouse.product();
    device.path = mouse.path();
    device.isInBoot = loader.isActive();
    device.firmware = loader.version();
    device.isPlugged = device.isCorded = mouse.device.isCorded();
    device.isAwake = mouse.device.isAwake();
    device.isProgramShown = mouse.device.isProgramShown();
    device.curveValues = mouse.device.curveValues();
    device.partner = receiver ? receiver->id : std::string();
    device.address = mouse.address();
    device.batteryPercent = mouse.device.batteryPercent();
    device.isCharging = mouse.device.isCharging();
    device.dpi = flash.dpi(mouse.device.sensor());
    device.rateHz = flash.rateHz();
    device.level = flash.currentLevel();
    device.profile = mouse.device.activeProfile();
    device.light = flash.light();
    device.isPairing = mouse.device.isLooking();
    device.latency = mouse.wire.latency;
    return device;
}

DeviceDescription VirtualBus::describe(Receiver &receiver)
{
    Mouse *const mouse = findMouse(receiver.pairedMouse);
    DeviceDescription device{};
    if (mouse)
        device = describe(*mouse);
    else
        device.batteryPercent = -1;
    device.id = receiver.id;
    device.model = receiver.mouseModel->name;
    device.isReceiver = true;
    const BootLoader &loader = receiver.device.bootLoader();
    device.product = receiver.product();
    device.path = receiver.path();
    device.isInBoot = loader.isActive();
    device.firmware = loader.version();
    device.isPlugged = receiver.isPlugged;
    device.isCorded = false;
    device.partner = mouse ? mouse->id : std::string();
    device.isPairing = receiver.device.isPairing() && !receiver.device.isPairingOver();
    device.latency = receiver.wire.latency;
    device.receiverLightMode = receiver.device.content().light[0];
    device.isLongRange = receiver.device.content().isLongRange;
    return device;
}

} // namespace portwire
