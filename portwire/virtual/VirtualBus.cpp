#include "portwire/virtual/VirtualBus.h"

#include <algorithm>

namespace portwire {

std::string VirtualBus::Mouse::path() const { return "virtual/cable/" + id; }

/** A mouse keeps its address for life, so it follows from its id. */
std::array<std::uint8_t, 3> VirtualBus::Mouse::address() const
{
    std::uint32_t hash = 2166136261u;
    for (const char c : id)
        hash = (hash ^ static_cast<std::uint8_t>(c)) * 16777619u;
    // The first byte is never 0: an address of zeros means that there is none.
    return {static_cast<std::uint8_t>(hash >> 16 | 1), static_cast<std::uint8_t>(hash >> 8),
            static_cast<std::uint8_t>(hash)};
}

std::string VirtualBus::Receiver::path() const { return "virtual/receiver/" + id; }

std::shared_ptr<VirtualBus> VirtualBus::create(VirtualMouse::Clock time)
{
    return std::shared_ptr<VirtualBus>(new VirtualBus(std::move(time)));
}

std::vector<DeviceNode> VirtualBus::enumerate()
{
    const std::lock_guard lock(mutex);
    const auto node = [](std::string path, std::string_view product, std::uint16_t version) {
        return DeviceNode{std::move(path), std::string(vendorId), std::string(product),
                          wireInterface,   wireCollection,        version};
    };
    std::vector<DeviceNode> nodes;
    for (const auto &mouse : mice) {
        if (mouse->device.isCorded())
            nodes.push_back(node(mouse->path(), mouse->model->cableProduct, mouse->model->version));
    }
    for (const auto &receiver : receivers) {
        if (receiver->isPlugged)
            nodes.push_back(node(receiver->path(), receiver->model->product, receiver->model->version));
    }
    return nodes;
}

std::unique_ptr<Endpoint> VirtualBus::open(const std::string &path)
{
    const std::lock_guard lock(mutex);
    const bool isMouse = std::any_of(
        mice.begin(), mice.end(), [&](const auto &mouse) { return mouse->device.isCorded() && mouse->path() == path; });
    const bool isReceiver = std::any_of(receivers.begin(), receivers.end(), [&](const auto &receiver) {
        return receiver->isPlugged && receiver->path() == path;
    });
    if (!isMouse && !isReceiver)
        return nullptr;
    const auto inbox = std::make_shared<Inbox>();
    opened.erase(std::remove_if(opened.begin(), opened.end(), [](const Opened &o) { return o.inbox.expired(); }),
                 opened.end());
    opened.push_back({path, inbox});
    return std::make_unique<VirtualEndpoint>(shared_from_this(), path, inbox);
}

void VirtualBus::setChangeNotice(std::function<void()> notice)
{
    const std::lock_guard lock(noticeMutex);
    changeNotice = std::move(notice);
}

void VirtualBus::receive(const std::string &path, const Report &report, Inbox &inbox)
{
    const auto request = FirmwarePacket::parse(report);
    if (!request)
        return;
    const std::lock_guard lock(mutex);
    Fault *fault = nullptr;
    FirmwarePacket answer;
    for (const auto &mouse : mice) {
        if (mouse->device.isCorded() && mouse->path() == path) {
            fault = &mouse->fault;
            answer = answerAtCable(*mouse, *request);
        }
    }
    for (const auto &receiver : receivers) {
        if (receiver->isPlugged && receiver->path() == path) {
            fault = &receiver->fault;
            answer = answerAtReceiver(*receiver, *request, fault);
        }
    }
    if (!fault)
        return;
    for (Report &arriving : fault->pass(answer.build()))
        inbox.push(std::move(arriving));
}

/** The USB side of a mouse on its cable answers for it where it can, also while the mouse sleeps. */
FirmwarePacket VirtualBus::answerAtCable(Mouse &mouse, const FirmwarePacket &request)
{
    switch (request.code) {
    case 1:
        return request.answer({companyId, mouse.model->modelId, cableClass});
    case 3: {
        const auto address = mouse.address();
        return request.answer({static_cast<std::uint8_t>(mouse.device.isAwake()), address[0], address[1], address[2]});
    }
    default:
        return mouse.device.isAwake() ? mouse.device.answer(request) : request.offline();
    }
}

/** What the receiver doesn't answer itself goes over the air. \param fault becomes that of whoever answers */
FirmwarePacket VirtualBus::answerAtReceiver(Receiver &receiver, const FirmwarePacket &request, Fault *&fault)
{
    Mouse *const mouse = reachedBy(receiver);
    if (request.code == 1)
        return request.answer({companyId, receiver.mouseModel->modelId, receiver.model->receiverClass});
    if (request.code == 3) {
        const Mouse *const paired = findMouse(receiver.pairedMouse);
        const auto address = paired ? paired->address() : std::array<std::uint8_t, 3>{};
        return request.answer({static_cast<std::uint8_t>(mouse != nullptr), address[0], address[1], address[2]});
    }
    if (auto answer = receiver.device.answer(request))
        return *answer;
    if (!mouse)
        return request.offline();
    fault = &mouse->fault;
    return mouse->device.answer(request);
}

VirtualBus::Mouse *VirtualBus::findMouse(const std::string &id)
{
    const auto found = std::find_if(mice.begin(), mice.end(), [&](const auto &mouse) { return mouse->id == id; });
    return found == mice.end() ? nullptr : found->get();
}

VirtualBus::Receiver *VirtualBus::findReceiver(const std::string &id)
{
    const auto found =
        std::find_if(receivers.begin(), receivers.end(), [&](const auto &receiver) { return receiver->id == id; });
    return found == receivers.end() ? nullptr : found->get();
}

VirtualBus::Receiver *VirtualBus::receiverOf(const Mouse &mouse)
{
    const auto found = std::find_if(receivers.begin(), receivers.end(),
                                    [&](const auto &receiver) { return receiver->pairedMouse == mouse.id; });
    return found == receivers.end() ? nullptr : found->get();
}

/** The paired mouse, if it listens: on its cable it doesn't. */
VirtualBus::Mouse *VirtualBus::reachedBy(const Receiver &receiver)
{
    Mouse *const mouse = findMouse(receiver.pairedMouse);
    return mouse && !mouse->device.isCorded() && mouse->device.isAwake() ? mouse : nullptr;
}

bool VirtualBus::isIdFree(const std::string &id) { return !findMouse(id) && !findReceiver(id); }

VirtualBus::Mouse &VirtualBus::addMouse(const std::string &id, const MouseModel &model)
{
    mice.push_back(std::unique_ptr<Mouse>(new Mouse{id, &model, VirtualMouse(model, clock)}));
    Mouse *const mouse = mice.back().get();
    mouse->device.storedChanged = [this] { noteChange(); };
    mouse->device.announce = [this, mouse](const FirmwarePacket &packet) {
        const Receiver *const receiver = receiverOf(*mouse);
        if (mouse->device.isCorded())
            announce(mouse->path(), packet);
        else if (receiver)
            announce(receiver->path(), packet);
    };
    return *mouse;
}

VirtualBus::Receiver &VirtualBus::addReceiver(const std::string &id, const MouseModel &mouseModel,
                                              const ReceiverModel &model)
{
    receivers.push_back(
        std::unique_ptr<Receiver>(new Receiver{id, &mouseModel, &model, VirtualReceiver(model.version)}));
    Receiver *const receiver = receivers.back().get();
    receiver->device.storedChanged = [this] { noteChange(); };
    receiver->device.announce = [this, receiver](const FirmwarePacket &packet) { announce(receiver->path(), packet); };
    return *receiver;
}

void VirtualBus::announce(const std::string &path, const FirmwarePacket &packet)
{
    for (const Opened &each : opened) {
        if (each.path != path)
            continue;
        if (const auto inbox = each.inbox.lock())
            inbox->push(packet.build());
    }
}

void VirtualBus::shut(const std::string &path)
{
    for (const Opened &each : opened) {
        if (each.path != path)
            continue;
        if (const auto inbox = each.inbox.lock())
            inbox->shut();
    }
}

void VirtualBus::noteChange()
{
    if (sceneNotice)
        sceneNotice();
}

void VirtualBus::notify()
{
    // Called with the bus free, so that whoever is told may look at it at once.
    std::function<void()> notice;
    {
        const std::lock_guard lock(noticeMutex);
        notice = changeNotice;
    }
    if (notice)
        notice();
}

} // namespace portwire
