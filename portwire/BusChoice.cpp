#include "portwire/BusChoice.h"

#include "portwire/VirtualBusStart.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

namespace portwire {

namespace {

/** A bus on which nothing ever is. */
class EmptyBus : public Bus
{
public:
    std::vector<DeviceNode> enumerate() override { return {}; }
    std::unique_ptr<Endpoint> open(const std::string &) override { return nullptr; }
    void setChangeNotice(std::function<void()>) override {}
};

/** The file is read as lines: QSettings would unpack values of any type, with lengths that a damaged one makes up. */
QByteArray chosenName()
{
    constexpr qint64 most = 4096; // bytes; the file has three lines
    const QByteArray key("bus=");
    if (QCoreApplication::instance()) {
        QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/portwire.ini"));
        if (file.open(QIODevice::ReadOnly)) {
            const QList<QByteArray> lines = file.read(most).split('\n');
            for (const QByteArray &line : lines) {
                if (line.startsWith(key))
                    return line.mid(key.size()).trimmed();
            }
        }
    }
    return QByteArray("virtual");
}

} // namespace

std::shared_ptr<Channels> openChannelsOfChosenBus()
{
    const QByteArray name = chosenName();
    if (name == "virtual")
        return startVirtualBus();
    qWarning("portwire: there is no bus named '%s', so there are no devices", name.constData());
    return std::make_shared<Channels>(std::make_shared<EmptyBus>());
}

} // namespace portwire
