#include "portwire/Library.h"

#include <QCoreApplication>
#include <QDebug>

#include <algorithm>
#include <atomic>

using namespace portwire;

namespace {

std::atomic<bool> endsWithApplication{false};

/** Behind the application nobody is there to be told, and the virtual bus writes its scene for the last time. */
void endUpgrades()
{
    endsWithApplication = false;
    Library::instance().upgrades().end();
}

} // namespace

void UsbUpgradeC_FindBootDevices(const struct FirmwareImage *image, int *out)
{
    if (!out)
        return;
    *out = 0;
    const char *reason = "";
    const auto header = readFirmware(image ? image->data : nullptr, image ? image->length : 0, reason);
    if (!header) {
        qWarning("portwire: this is no firmware image: %s", reason);
        return;
    }
    // A device that is missed on a busy computer would be told to the user as one that isn't there; and nothing in boot
    // mode has a reason to be silent.
    constexpr int mostLooks = 3;
    FirmwareSearch search{{}, false};
    for (int look = 0; look < mostLooks && !search.isComplete; ++look)
        search = findUpgradable(Library::instance().devices(), SearchIn::BootMode);
    *out = static_cast<int>(std::count_if(search.devices.begin(), search.devices.end(),
                                          [&](const UpgradableDevice &device) { return device.isFor(*header); }));
}

void UsbUpgrade_Start(const struct FirmwareImage *image, PortwireUpgradeCallback callback, int timeoutMs)
{
    Upgrades &upgrades = Library::instance().upgrades(); // the virtual bus is made before, and so ends after
    if (QCoreApplication::instance() && !endsWithApplication.exchange(true))
        qAddPostRoutine(endUpgrades);
    upgrades.start(image ? *image : FirmwareImage{}, callback, std::chrono::milliseconds(timeoutMs));
}
