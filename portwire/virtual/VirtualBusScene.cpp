#include "portwire/virtual/VirtualBus.h"

namespace portwire {

Scene VirtualBus::scene()
{
    const std::lock_guard lock(mutex);
    Scene all;
    for (const auto &mouse : mice) {
        all.mice.push_back({mouse->id, std::string(mouse->model->name), mouse->device.isCorded(),
                            mouse->device.batteryPercent(), mouse->device.content(),
                            mouse->device.bootLoader().content()});
    }
    for (const auto &receiver : receivers) {
        all.receivers.push_back({receiver->id, std::string(receiver->mouseModel->name),
                                 std::string(receiver->model->link), receiver->pairedMouse, receiver->isPlugged,
                                 receiver->device.content(), receiver->device.bootLoader().content()});
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
            const MouseModel *const model = findMouseModel(kept.model);
            if (!model || !isIdFree(kept.id))
                continue;
            Mouse &mouse = addMouse(kept.id, *model);
            mouse.device.setContent(kept.stored);
            mouse.device.bootLoader().setContent(kept.firmware);
            mouse.device.setCorded(kept.isCorded);
            mouse.device.setBattery(kept.batteryPercent, kept.isCorded);
        }
        for (const Scene::Receiver &kept : scene.receivers) {
            const MouseModel *const mouseModel = findMouseModel(kept.model);
            const ReceiverModel *const model = findReceiverModel(kept.link);
            if (!mouseModel || !model || !isIdFree(kept.id))
                continue;
            Receiver &receiver = addReceiver(kept.id, *mouseModel, *model);
            receiver.device.setContent(kept.stored);
            receiver.device.bootLoader().setContent(kept.firmware);
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
