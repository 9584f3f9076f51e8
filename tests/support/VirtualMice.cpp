#include "support/VirtualMice.h"

#include "app/hub/Wait.h"
#include "portwire/control/ControlClient.h"
#include "portwire/portwire.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <random>

QByteArray VirtualMice::tell(const QStringList &words)
{
    // The library makes its bus, and the socket with it, at the first call.
    int count = 0;
    UsbFinderC_FindHidDevicesByDefaultDeviceId("", "", &count);
    const portwire::ControlClient::Reply reply = portwire::ControlClient().call(words);
    if (!reply.isGood())
        qFatal("%s: %s", qPrintable(words.join(' ')), qPrintable(reply.error));
    return reply.output;
}

int VirtualMice::count(const char *what)
{
    return QJsonDocument::fromJson(tell({"stats"})).object()[QLatin1String(what)].toInt();
}

QList<QJsonObject> VirtualMice::devices()
{
    QList<QJsonObject> list;
    const QJsonArray all = QJsonDocument::fromJson(tell({"devices"})).array();
    for (const QJsonValue &value : all)
        list << value.toObject();
    return list;
}

QJsonObject VirtualMice::device(const QString &id)
{
    const QList<QJsonObject> all = devices();
    for (const QJsonObject &device : all) {
        if (device["id"].toString() == id)
            return device;
    }
    return {};
}

QString VirtualMice::receiverOf(const QString &mouse) { return device(mouse)["receiver"].toString(); }

FlashDataMap VirtualMice::record(const QString &id)
{
    const QByteArray bytes = tell({"record", id});
    if (bytes.size() != static_cast<int>(flashDataMapSize))
        qFatal("the record of %s has %d bytes", qPrintable(id), bytes.size());
    FlashDataMap record{};
    std::memcpy(&record, bytes.constData(), flashDataMapSize);
    return record;
}

void VirtualMice::flash(const QString &id, const FlashDataMap &record)
{
    tell({"flash", id, QString::fromLatin1(bytesOf(record).toBase64())});
}

QList<QJsonObject> VirtualMice::press(const QString &id, int slot)
{
    QList<QJsonObject> events;
    const QList<QByteArray> lines = tell({"press", id, QString::number(slot)}).split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty())
            events << QJsonDocument::fromJson(line).object();
    }
    return events;
}

QString VirtualMice::add(const QString &model, const QString &link)
{
    return QJsonDocument::fromJson(tell({"add", model, link})).object()["id"].toString();
}

namespace {

/**
 * A real device takes 0.2 to 4 ms to answer, and each another time. That is in the time of the program, whose waits a
 * test cuts: with the one cut and the other not, no connect would end within its grace time. HALVARION_SEED repeats a
 * run.
 */
double someLatency()
{
    static std::mt19937 random = [] {
        bool isGiven = false;
        const int given = qEnvironmentVariableIntValue("HALVARION_SEED", &isGiven);
        const unsigned seed = isGiven ? static_cast<unsigned>(given) : std::random_device()();
        qInfo("latencies of the virtual mice from seed %d (HALVARION_SEED)", static_cast<int>(seed));
        return std::mt19937(seed);
    }();
    const double scale = Wait::scaled(100000) / 100000.0;
    return scale * std::uniform_real_distribution<double>(0.2, 4)(random);
}

} // namespace

void VirtualMice::restoreScene()
{
    const QList<QJsonObject> all = devices();
    for (const QJsonObject &device : all) {
        // A receiver may have gone with its mouse, or the mouse with it.
        if (!VirtualMice::device(device["id"].toString()).isEmpty())
            tell({"remove", device["id"].toString()});
    }
    if (add("q1", "4k") != QLatin1String("q1") || add("q2", "1k") != QLatin1String("q2"))
        qFatal("the scene could not be restored");
    for (const QJsonObject &device : devices())
        tell({"latency", device["id"].toString(), QString::number(someLatency())});
}
