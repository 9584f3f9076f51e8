#include "portwire/virtual/VirtualBus.h"

namespace portwire {

Scene VirtualBus::scene()
{
    const std::lock_guard lock(mutex);
    Scene all;
    for (const auto &mouse : mice) {
        all.mice.push_back({mouse->id, std::string(mouse->kind->model), mouse->device.isCorded(),
                            mouse->device.batteryPercent(), mouse->device.content()});
    }
    for (const auto &receiver : receivers) {
        all.receivers.push_back({receiver->id, std::string(receiver->mouseKind->model),
                                 std::string(receiver->kind->link), receiver->pairedMouse, receiver->isPlugged,
                                 receiver->device.content()});
    }
    return all;
}

void VirtualBus::setScene(const Scene &scene)
{
    {
        const std::lock_guard lock(mutex);
        for (const Opened &each : opened)
            shut(each.path);
        mice.clear();
        receivers.clear();
        for (const Scene::Mouse &kept : scene.mice) {
            const ids::MouseIds *const kind = ids::findMouse(kept.model);
            if (!kind || !isIdFree(kept.id))
                continue;
            Mouse &mouse = addMouse(kept.id, *kind);
            mouse.device.setContent(kept.stored);
            mouse.device.setCorded(kept.isCorded);
            mouse.device.setBattery(kept.batteryPercent, kept.isCorded);
        }
        for (const Scene::Receiver &kept : scene.receivers) {
            const ids::MouseIds *const mouseKind = ids::findMouse(kept.model);
            const ids::ReceiverIds *const kind = ids::findReceiver(kept.link);
            if (!mouseKind || !kind || !isIdFree(kept.id))
                continue;
            Receiver &receiver = addReceiver(kept.id, *mouseKind, *kind);
            receiver.device.setContent(kept.stored);
            receiver.pairedMouse = kept.pairedMouse;
            receiver.isPlugged = kept.isPlugged;
        }
    }
    notify();
}

void VirtualBus::setSceneNotice(std::function<void()> notice)
{
    const std::lock_guard lock(mutex);
    sceneNotice = std::move(notice);
}

} // namespace portwire
