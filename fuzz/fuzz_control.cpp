/** Lines of words for the virtual bus, as anyone who reaches its socket may send them. */
#include "FuzzHome.h"
#include "FuzzInput.h"
#include "Require.h"
#include "portwire/control/ControlCommands.h"
#include "portwire/virtual/VirtualBus.h"

using namespace portwire;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzHome::instance();
    FuzzInput input(data, size);
    const auto bus = VirtualBus::create();
    std::string id;
    bus->add("q1", "4k", id);
    bus->add("q2", "cable", id);
    ControlCommands commands(bus, std::make_shared<Channels>(bus));
    constexpr int most = 16;
    const QStringList lines = QString::fromUtf8(input.rest()).split(QLatin1Char('\n')).mid(0, most);
    for (const QString &line : lines) {
        const ControlResult result = commands.run(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        require(result.error.isEmpty() || result.output.isEmpty(), "a command does something or says why not");
    }
    for (const DeviceDescription &device : bus->describe())
        require(device.batteryPercent >= -1 && device.batteryPercent <= 100 && device.level >= 0 && device.level < 8,
                "a device is one");
    return 0;
}
