#include "portwire/control/ControlJson.h"

#include <algorithm>

namespace portwire {

namespace {

QString text(const std::string &value) { return QString::fromStdString(value); }

QJsonObject toJson(const LightState &light)
{
    return {{"on", light.isOn},
            {"mode", light.mode},
            {"red", light.red},
            {"green", light.green},
            {"blue", light.blue},
            {"speed", light.speed},
            {"brightness", light.brightness}};
}

QString versionText(std::uint16_t version)
{
    return QStringLiteral("%1.%2").arg(version >> 8).arg(version & 0xFF, 0, 16);
}

constexpr struct
{
    HidEvent::Type type;
    const char *name;
} eventNames[] = {
    {HidEvent::Type::MouseButton, "button"},
    {HidEvent::Type::Modifier, "modifier"},
    {HidEvent::Type::Key, "key"},
    {HidEvent::Type::Consumer, "consumer"},
    {HidEvent::Type::Wheel, "wheel"},
    {HidEvent::Type::Tilt, "tilt"},
    {HidEvent::Type::Dpi, "dpi"},
    {HidEvent::Type::ReportRate, "rate"},
    {HidEvent::Type::Light, "light"},
    {HidEvent::Type::Indicator, "indicator"},
    {HidEvent::Type::Profile, "profile"},
};

} // namespace

QJsonObject toJson(const DeviceDescription &device)
{
    const QByteArray address(reinterpret_cast<const char *>(device.address.data()),
                             static_cast<int>(device.address.size()));
    QJsonObject object{{"id", text(device.id)},
                       {"kind", device.isReceiver ? "receiver" : "mouse"},
                       {"model", text(device.model)},
                       {"mode", device.isInBoot ? "boot" : "normal"},
                       {"firmware", versionText(device.firmware)},
                       {"pid", text(device.product)},
                       {"path", text(device.path)},
                       {"plugged", device.isPlugged},
                       {"awake", device.isAwake},
                       {"corded", device.isCorded},
                       {"address", QString::fromLatin1(address.toHex())},
                       {"battery", device.batteryPercent},
                       {"charging", device.isCharging},
                       {"dpi", device.dpi},
                       {"rate", device.rateHz},
                       {"level", device.level},
                       {"profile", device.profile},
                       {"pairing", device.isPairing},
                       {"latency", static_cast<double>(device.latency.count()) / 1000}};
    if (device.isReceiver) {
        object["mouse"] = text(device.partner);
        object["light"] = QJsonObject{{"mode", device.receiverLightMode}};
        object["longRange"] = device.isLongRange;
    } else {
        object["receiver"] = text(device.partner);
        object["program"] = device.isProgramShown;
        object["curve"] = device.curveValues;
        object["light"] = toJson(device.light);
    }
    return object;
}

QJsonObject toJson(const HidEvent &event)
{
    const auto *const name = std::find_if(std::begin(eventNames), std::end(eventNames),
                                          [&](const auto &known) { return known.type == event.type; });
    const auto time = static_cast<double>(event.atMs);
    return {{"at", time},
            {"ms", time},
            {"type", name->name},
            {"action", event.isPress ? "press" : "release"},
            {"code", event.code}};
}

} // namespace portwire
