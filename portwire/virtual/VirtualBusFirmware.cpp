#include "portwire/virtual/VirtualBus.h"

// Devices in boot mode, and what their boot loaders make of them.

namespace portwire {

namespace {

const char noSuchDevice[] = "there is no device with this id";

const std::string bootPath = "virtual/boot/";

/** A number for life, so it follows from the id. No two devices share one. */
std::uint32_t unitOf(const std::string &id)
{
    std::uint32_t hash = 2166136261u;
    for (const char c : id)
        hash = (hash ^ static_cast<std::uint8_t>(c)) * 16777619u;
    return hash;
}

} // namespace

std::string VirtualBus::Mouse::path() const
{
    return (device.bootLoader().isActive() ? bootPath : "virtual/cable/") + id;
}

std::string_view VirtualBus::Mouse::product() const
{
    return device.bootLoader().isActive() ? bootMouseProduct : model->cableProduct;
}

std::string VirtualBus::Receiver::path() const
{
    return (device.bootLoader().isActive() ? bootPath : "virtual/receiver/") + id;
}

std::string_view VirtualBus::Receiver::product() const
{
    return device.bootLoader().isActive() ? bootReceiverProduct : model->product;
}

VirtualBus::Addressee VirtualBus::findDevice(const std::string &id)
{
    Mouse *const mouse = findMouse(id);
    return {mouse, mouse ? nullptr : findReceiver(id)};
}

/** Of the receiver, if the addressee has one: nothing for a boot loader goes over the air. */
BootLoader &VirtualBus::loaderOf(const Addressee &device)
{
    return device.receiver ? device.receiver->device.bootLoader() : device.mouse->device.bootLoader();
}

BootLoader::Identity VirtualBus::identityOf(const Addressee &of)
{
    if (const Receiver *const receiver = of.receiver)
        return {BootLoader::receiverTarget, receiver->mouseModel->modelId, receiver->model->firmwareName,
                unitOf(receiver->id)};
    return {BootLoader::mouseTarget, of.mouse->model->modelId, of.mouse->model->firmwareName, unitOf(of.mouse->id)};
}

/** \return whether another node is on the bus, or one less. */
bool VirtualBus::followLoader(const Addressee &of)
{
    const BootLoader::Next next = loaderOf(of).takeNext();
    if (next == BootLoader::Next::Stay)
        return false;
    if (next != BootLoader::Next::LosePower)
        restart(of, next == BootLoader::Next::EnterBoot);
    else if (of.receiver)
        plugReceiver(*of.receiver, false);
    else
        plugMouse(*of.mouse, false);
    noteChange();
    return true;
}

void VirtualBus::restart(const Addressee &device, bool isIntoBoot)
{
    if (device.receiver) {
        shut(device.receiver->path());
        device.receiver->device.restart(isIntoBoot);
    } else {
        shut(device.mouse->path());
        device.mouse->device.restart(isIntoBoot);
    }
}

std::string VirtualBus::setPowerLoss(const std::string &id, int percent)
{
    const std::lock_guard lock(mutex);
    const Addressee device = findDevice(id);
    if (!device.mouse && !device.receiver)
        return noSuchDevice;
    if (percent < 0 || percent > 100)
        return "the moment is not within 0 to 100 percent";
    loaderOf(device).setPowerLoss(percent);
    return {};
}

std::string VirtualBus::enterBoot(const std::string &id)
{
    {
        const std::lock_guard lock(mutex);
        const Addressee device = findDevice(id);
        if (!device.mouse && !device.receiver)
            return noSuchDevice;
        restart(device, true);
        noteChange();
    }
    notify();
    return {};
}

std::string VirtualBus::setFirmware(const std::string &id, int version)
{
    const std::lock_guard lock(mutex);
    const Addressee device = findDevice(id);
    if (!device.mouse && !device.receiver)
        return noSuchDevice;
    if (version < -1 || version > 0xFFFF)
        return "the version is not within 0.00 to 255.ff";
    if (version >= 0) {
        loaderOf(device).setVersion(static_cast<std::uint16_t>(version));
        noteChange();
    }
    return {};
}

} // namespace portwire
