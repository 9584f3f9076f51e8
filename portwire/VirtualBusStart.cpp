#include "portwire/VirtualBusStart.h"

#include "portwire/control/ControlServer.h"
#include "portwire/control/StateFolder.h"
#include "portwire/virtual/SceneKeeper.h"

#include <QCoreApplication>
#include <QDir>

namespace portwire {

namespace {

struct Attendants
{
    std::unique_ptr<SceneKeeper> keeper;
    std::unique_ptr<ControlServer> server;
};

// Pointers only: nothing here may be destroyed while the process ends.
Attendants *attendants = nullptr;

void endAttendants()
{
    delete attendants;
    attendants = nullptr;
}

} // namespace

std::shared_ptr<Channels> startVirtualBus()
{
    const auto bus = VirtualBus::create();
    auto channels = std::make_shared<Channels>(bus);
    attendants = new Attendants;
    attendants->keeper = std::make_unique<SceneKeeper>(bus, stateFolder());
    if (QCoreApplication::instance()) {
        QDir().mkpath(stateFolder());
        attendants->server = std::make_unique<ControlServer>(bus, channels, controlSocket());
        qAddPostRoutine(endAttendants);
    }
    return channels;
}

} // namespace portwire
