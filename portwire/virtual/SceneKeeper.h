#pragma once

#include "portwire/virtual/SceneStore.h"
#include "portwire/virtual/VirtualBus.h"

#include <thread>

namespace portwire {

/** Writes the scene of a bus soon after each change, on a thread of its own. */
class SceneKeeper
{
public:
    SceneKeeper(std::shared_ptr<VirtualBus> onBus, QString folder);
    /** Writes what is left and ends the thread. */
    ~SceneKeeper();

    /** Writes what has changed, before it returns. */
    void flush();

private:
    void run();
    void save();

    const std::shared_ptr<VirtualBus> bus;
    SceneStore store;
    std::mutex storeMutex;
    std::mutex mutex;
    std::condition_variable changed;
    bool isDirty = false;
    bool isEnding = false;
    std::thread thread;
};

} // namespace portwire
