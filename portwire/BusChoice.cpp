#include "portwire/BusChoice.h"

#include "portwire/virtual/VirtualWorld.h"

#include <QCoreApplication>
#include <QDebug>
#include <QSettings>

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

QString chosenName()
{
    const QString usual = QStringLiteral("virtual");
    if (!QCoreApplication::instance())
        return usual;
    const QString file = QCoreApplication::applicationDirPath() + QStringLiteral("/portwire.ini");
    return QSettings(file, QSettings::IniFormat).value(QStringLiteral("bus"), usual).toString();
}

} // namespace

std::shared_ptr<Channels> openChannelsOfChosenBus()
{
    const QString name = chosenName();
    if (name == QLatin1String("virtual"))
        return VirtualWorld::open();
    qWarning("portwire: there is no bus named '%s', so there are no devices", qPrintable(name));
    return std::make_shared<Channels>(std::make_shared<EmptyBus>());
}

} // namespace portwire
