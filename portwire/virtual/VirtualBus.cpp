#include "portwire/virtual/VirtualBus.h"

#include <algorithm>

namespace portwire {

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

std::shared_ptr<VirtualBus> VirtualBus::create(VirtualMouse::Clock time)
{
    return std::shared_ptr<VirtualBus>(new VirtualBus(std::move(time)));
}

std::vector<DeviceNode> VirtualBus::enumerate()
{
    const std::lock_guard lock(mutex);
    return nodes();
}

std::vector<DeviceNode> VirtualBus::nodes() const
{
    std::vector<DeviceNode> all;
    const auto add = [&](const auto &device, std::uint16_t version, const HidInterface &hid) {
        all.push_back({device.path() + std::string(hid.pathEnd), std::string(vendorId), std::string(device.product()),
                       hid.interfaceId, hid.collectionId, version});
    };
    const auto addAll = [&](const auto &device) {
        if (device.device.bootLoader().isActive())
            return add(device, bootUsbVersion, bootInterface);
        // New firmware tells its own version on the bus, too.
        const std::uint16_t firmware = device.device.bootLoader().version();
        const std::uint16_t version = firmware == device.model->version ? device.model->usbVersion : firmware;
        for (const HidInterface &hid : hidInterfaces)
            add(device, version, hid);
    };
    for (const auto &mouse : mice) {
        if (mouse->device.isCorded())
            addAll(*mouse);
    }
    for (const auto &receiver : receivers) {
        if (receiver->isPlugged)
            addAll(*receiver);
    }
    return all;
}

std::unique_ptr<Endpoint> VirtualBus::open(const std::string &path)
{
    const std::lock_guard lock(mutex);
    const std::vector<DeviceNode> all = nodes();
    if (std::none_of(all.begin(), all.end(), [&](const DeviceNode &node) { return node.path == path; }))
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
    const auto sent = FirmwarePacket::parse(report);
    if (!sent)
        return;
    bool isBusChanged = false;
    {
        const std::lock_guard lock(mutex);
        settlePairings();
        const Addressee to = addressee(path, sent->code);
        if (!to.mouse && !to.receiver)
            return;
        for (const Report &arriving : wireOf(to).requests.pass(report)) {
            const auto request = FirmwarePacket::parse(arriving);
            if (!request)
                continue;
            // One that was held up may be for somebody else than the one that it comes with, or have restarted it.
            const Addressee answering = addressee(path, request->code);
            if (!answering.mouse && !answering.receiver)
                break;
            Wire &wire = wireOf(answering);
            if (const auto given = answerOf(answering, *request)) {
                for (Report &answer : wire.answers.pass(given->build()))
                    inbox.push(std::move(answer), wire.latency);
            }
            if (followLoader(answering))
                isBusChanged = true;
        }
    }
    if (isBusChanged)
        notify();
}

std::chrono::milliseconds VirtualBus::latency(const std::string &path)
{
    constexpr std::chrono::milliseconds most{40}; // whoever is slower counts as one that doesn't answer
    constexpr std::uint8_t forMouse = 8;
    const std::lock_guard lock(mutex);
    const Addressee to = addressee(path, forMouse);
    auto longest = to.mouse ? to.mouse->wire.latency : std::chrono::microseconds(0);
    if (to.receiver)
        longest = std::max(longest, to.receiver->wire.latency);
    return std::min(most, std::chrono::ceil<std::chrono::milliseconds>(longest));
}

/** Who answers a request that comes in at this path: what isn't for the receiver goes over the air. */
VirtualBus::Addressee VirtualBus::addressee(const std::string &path, std::uint8_t code)
{
    for (const auto &mouse : mice) {
        if (mouse->device.isCorded() && mouse->path() == path)
            return {mouse.get(), nullptr};
    }
    for (const auto &receiver : receivers) {
        if (receiver->isPlugged && receiver->path() == path)
            return {VirtualReceiver::isAskedAlone(code) ? nullptr : reachedBy(*receiver), receiver.get()};
    }
    return {};
}

Wire &VirtualBus::wireOf(const Addressee &to) { return to.mouse ? to.mouse->wire : to.receiver->wire; }

std::optional<FirmwarePacket> VirtualBus::answerOf(const Addressee &to, const FirmwarePacket &request)
{
    BootLoader &loader = loaderOf(to);
    if (loader.isActive() || BootLoader::isAsked(request.code))
        return loader.answer(request, identityOf(to));
    if (!to.receiver)
        return answerAtCable(*to.mouse, request);
    return to.mouse ? to.mouse->device.answer(request) : answerAtReceiver(*to.receiver, request);
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

FirmwarePacket VirtualBus::answerAtReceiver(Receiver &receiver, const FirmwarePacket &request)
{
    switch (request.code) {
    case 1:
        return request.answer({companyId, receiver.mouseModel->modelId, receiver.model->receiverClass});
    case 3: {
        const Mouse *const paired = findMouse(receiver.pairedMouse);
        const auto address = paired ? paired->address() : std::array<std::uint8_t, 3>{};
        const bool isOnline = reachedBy(receiver) != nullptr;
        return request.answer({static_cast<std::uint8_t>(isOnline), address[0], address[1], address[2]});
    }
    default:
        return VirtualReceiver::isAskedAlone(request.code) ? receiver.device.answer(request) : request.offline();
    }
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
    const bool isReached = mouse && !receiver.device.bootLoader().isActive() && !mouse->device.isCorded() &&
                           mouse->device.isAwake() && !mouse->device.isLooking();
    return isReached ? mouse : nullptr;
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
            announce(mouse->path(), packet, mouse->wire);
        else if (receiver)
            announce(receiver->path(), packet, mouse->wire);
    };
    return *mouse;
}

VirtualBus::Receiver &VirtualBus::addReceiver(const std::string &id, const MouseModel &mouseModel,
                                              const ReceiverModel &model)
{
    receivers.push_back(
        std::unique_ptr<Receiver>(new Receiver{id, &mouseModel, &model, VirtualReceiver(model, clock)}));
    Receiver *const receiver = receivers.back().get();
    receiver->device.storedChanged = [this] { noteChange(); };
    receiver->device.announce = [this, receiver](const FirmwarePacket &packet) {
        announce(receiver->path(), packet, receiver->wire);
    };
    return *receiver;
}

void VirtualBus::announce(const std::string &path, const FirmwarePacket &packet, Wire &wire)
{
    for (const Report &report : wire.announcements.pass(packet.build())) {
        for (const Opened &each : opened) {
            const auto inbox = each.path == path ? each.inbox.lock() : nullptr;
            if (inbox)
                inbox->push(report, wire.latency);
        }
    }
}

void VirtualBus::shut(const std::string &path)
{
    for (const Opened &each : opened) {
        const bool isOfDevice =
            std::any_of(std::begin(hidInterfaces), std::end(hidInterfaces),
                        [&](const HidInterface &hid) { return each.path == path + std::string(hid.pathEnd); });
        const auto inbox = isOfDevice ? each.inbox.lock() : nullptr;
        if (inbox)
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
