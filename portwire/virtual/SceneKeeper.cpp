#include "portwire/virtual/SceneKeeper.h"

namespace portwire {

namespace {

/** A slider changes the flash many times a second; the file follows at this distance. */
constexpr std::chrono::milliseconds settleTime{50};

/** A Q1 on a 4K receiver and a Q2 on a 1K receiver. */
void setDefaultScene(VirtualBus &bus)
{
    std::string id;
    bus.setScene({});
    bus.add("q1", "4k", id);
    bus.add("q2", "1k", id);
}

} // namespace

SceneKeeper::SceneKeeper(std::shared_ptr<VirtualBus> onBus, QString folder)
    : bus(std::move(onBus)), store(std::move(folder))
{
    if (const auto kept = store.load())
        bus->setScene(*kept);
    else
        setDefaultScene(*bus);
    bus->setSceneNotice([this] {
        const std::lock_guard lock(mutex);
        isDirty = true;
        changed.notify_one();
    });
    save();
    thread = std::thread([this] { run(); });
}

SceneKeeper::~SceneKeeper()
{
    bus->setSceneNotice({});
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
        changed.notify_one();
    }
    thread.join();
    save();
}

void SceneKeeper::run()
{
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return isDirty || isEnding; });
        if (!isEnding)
            changed.wait_for(lock, settleTime, [this] { return isEnding; });
        if (isEnding)
            return;
        isDirty = false;
        lock.unlock();
        save();
        lock.lock();
    }
}

void SceneKeeper::flush() { save(); }

void SceneKeeper::save()
{
    const std::lock_guard lock(storeMutex);
    store.save(bus->scene());
}

} // namespace portwire
