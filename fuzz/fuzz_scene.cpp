/** The folder in which the virtual bus keeps its state: any scene, any flash, then buttons pressed on what came of it.
 */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "portwire/virtual/SceneStore.h"
#include "portwire/virtual/VirtualBus.h"

#include <QDataStream>

#include <utility>

using namespace portwire;

namespace {

constexpr int profilesAt = 11; ///< behind the mark, the checksum and the number of the active profile
constexpr int flashFileSize = profilesAt + 4 * static_cast<int>(FirmwareFlash::size);

/** A flash file as the store writes it, with some bytes changed, and perhaps a checksum that agrees. */
QByteArray flashFile(FuzzInput &input)
{
    QByteArray content("PWFLASH1");
    content.append(flashFileSize - content.size(), '\0');
    const bool isSigned = input.byte() % 4 != 0;
    input.patch(content);
    if (isSigned) {
        QByteArray sum;
        QDataStream(&sum, QIODevice::WriteOnly)
            << qChecksum(content.constData() + profilesAt - 1, static_cast<uint>(content.size() - profilesAt + 1));
        content.replace(8, 2, sum);
    }
    return content;
}

/** Buttons one after the other and at the same time; one of them is held for long. */
std::vector<ButtonPress> pressesFrom(FuzzInput &input)
{
    const int first = input.byte() % 16;
    return {{first, 0, 50},
            {(first + 1) % 16, input.byte(), 300},
            {first, 60, 60 + input.byte()},
            {(first + 2) % 16, 400, 1000000},
            {first, 500, 500 + input.byte()}};
}

void use(VirtualBus &bus, const std::vector<ButtonPress> &presses)
{
    for (const DeviceDescription &device : bus.describe()) {
        if (device.isReceiver)
            continue;
        if (device.isInBoot) {
            std::vector<HidEvent> none;
            require(!bus.play(device.id, presses, none).empty() && none.empty(), "a mouse in boot mode has no buttons");
            continue;
        }
        std::vector<std::uint8_t> record;
        require(bus.record(device.id, record).empty() && record.size() == 10428, "a mouse has a record");
        std::vector<HidEvent> events;
        require(bus.play(device.id, presses, events).empty(), "buttons can be pressed");
        require(events.size() < ButtonPlayer::mostSteps + 500, "a play has an end");
        std::int64_t before = 0;
        for (const HidEvent &event : events)
            require(event.atMs >= std::exchange(before, event.atMs) && event.code >= -1, "an event is one");
        require(bus.setRecord(device.id, record).empty(), "a record can be written");
        std::vector<std::uint8_t> again;
        bus.record(device.id, again);
        require(again == record, "a record that was written is the one that is read");
    }
    bus.enumerate();
}

bool isSame(const BootLoader::Stored &one, const BootLoader::Stored &other)
{
    return one.version == other.version && one.isActive == other.isActive;
}

bool isSame(const Scene &one, const Scene &other)
{
    const auto sameMouse = [](const Scene::Mouse &a, const Scene::Mouse &b) {
        return a.id == b.id && a.model == b.model && a.isCorded == b.isCorded && a.batteryPercent == b.batteryPercent &&
               isSame(a.firmware, b.firmware) && a.stored.activeProfile == b.stored.activeProfile &&
               std::equal(a.stored.profiles.begin(), a.stored.profiles.end(), b.stored.profiles.begin(),
                          [](const FirmwareFlash &x, const FirmwareFlash &y) { return x.bytes == y.bytes; });
    };
    const auto sameReceiver = [](const Scene::Receiver &a, const Scene::Receiver &b) {
        return a.id == b.id && a.model == b.model && a.link == b.link && a.pairedMouse == b.pairedMouse &&
               a.isPlugged == b.isPlugged && a.stored.light == b.stored.light &&
               a.stored.isLongRange == b.stored.isLongRange && isSame(a.firmware, b.firmware);
    };
    return std::equal(one.mice.begin(), one.mice.end(), other.mice.begin(), other.mice.end(), sameMouse) &&
           std::equal(one.receivers.begin(), one.receivers.end(), other.receivers.begin(), other.receivers.end(),
                      sameReceiver);
}

} // namespace

/** Qt's JSON reader loses an array whose key stands twice in an object. */
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer calls it by this name.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions()
{
    return "leak:libQt5Core";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const QString folder = FuzzHome::instance().path("scene");
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    const std::vector<ButtonPress> presses = pressesFrom(input);
    FuzzHome::write(folder + "/flash-q1.bin", flashFile(input));
    FuzzHome::write(folder + "/scene.json", input.rest());

    SceneStore store(folder);
    const auto kept = store.load();
    if (!kept)
        return 0;
    require(kept->mice.size() + kept->receivers.size() <= 64, "a bus has few devices");
    const auto bus = VirtualBus::create();
    bus->setScene(*kept);
    use(*bus, presses);
    const Scene now = bus->scene();
    store.save(now);
    const auto again = SceneStore(folder).load();
    require(again && isSame(*again, now), "what was saved is loaded");
    require(QDir(FuzzHome::instance().path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size() == 1,
            "nothing is written beside the folder");
    return 0;
}
