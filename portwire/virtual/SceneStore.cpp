#include "portwire/virtual/SceneStore.h"

#include <QDataStream>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>

namespace portwire {

namespace {

const char sceneFile[] = "scene.json";

/** In front of the profiles: a mark with the version of the format, then the checksum of what follows. */
const char flashMark[] = "PWFLASH1";
constexpr int markSize = sizeof flashMark - 1;
constexpr int flashFileSize = markSize + 2 + 1 + static_cast<int>(VirtualMouse::profileCount * FirmwareFlash::size);

/** Far more than anyone plugs in; each mouse takes 27 KB of memory and of the folder. */
constexpr std::size_t mostMice = 32;
constexpr std::size_t mostReceivers = 32;

/** An id is part of a file name, so nothing but this is taken from the file. */
bool isGoodId(const QString &id)
{
    static const QRegularExpression form(QStringLiteral("\\A[a-z0-9][a-z0-9-]{0,31}\\z"));
    return form.match(id).hasMatch();
}

QString flashFile(const std::string &id) { return QStringLiteral("flash-%1.bin").arg(QString::fromStdString(id)); }

QByteArray flashContent(const VirtualMouse::Stored &stored)
{
    QByteArray body(1, static_cast<char>(stored.activeProfile));
    for (const FirmwareFlash &profile : stored.profiles)
        body.append(reinterpret_cast<const char *>(profile.bytes.data()), static_cast<int>(profile.bytes.size()));
    QByteArray sum;
    QDataStream(&sum, QIODevice::WriteOnly) << qChecksum(body.constData(), static_cast<uint>(body.size()));
    return flashMark + sum + body;
}

bool readFlash(const QByteArray &content, VirtualMouse::Stored &stored)
{
    if (content.size() != flashFileSize || !content.startsWith(flashMark))
        return false;
    const QByteArray body = content.mid(markSize + 2);
    quint16 sum = 0;
    QDataStream(content.mid(markSize, 2)) >> sum;
    if (sum != qChecksum(body.constData(), static_cast<uint>(body.size())))
        return false;
    stored.activeProfile = static_cast<std::uint8_t>(body[0]);
    const char *from = body.constData() + 1;
    for (FirmwareFlash &profile : stored.profiles) {
        std::copy_n(from, profile.bytes.size(), reinterpret_cast<char *>(profile.bytes.data()));
        from += profile.bytes.size();
    }
    return stored.activeProfile < VirtualMouse::profileCount;
}

QString text(const std::string &value) { return QString::fromStdString(value); }

QJsonObject toJson(const Scene::Mouse &mouse)
{
    return {{"id", text(mouse.id)},
            {"model", text(mouse.model)},
            {"corded", mouse.isCorded},
            {"battery", mouse.batteryPercent},
            {"firmware", mouse.firmware.version},
            {"boot", mouse.firmware.isActive}};
}

QJsonObject toJson(const Scene::Receiver &receiver)
{
    QJsonArray light;
    for (const std::uint8_t byte : receiver.stored.light)
        light.append(byte);
    return {{"id", text(receiver.id)},
            {"model", text(receiver.model)},
            {"link", text(receiver.link)},
            {"mouse", text(receiver.pairedMouse)},
            {"plugged", receiver.isPlugged},
            {"light", light},
            {"longRange", receiver.stored.isLongRange},
            {"firmware", receiver.firmware.version},
            {"boot", receiver.firmware.isActive}};
}

std::string idIn(const QJsonObject &object, const char *key)
{
    const QString id = object.value(QLatin1String(key)).toString();
    return isGoodId(id) ? id.toStdString() : std::string();
}

/** \param version that of the factory, for a scene without one */
BootLoader::Stored firmwareIn(const QJsonObject &object, std::uint16_t version)
{
    const int kept = object.value(QLatin1String("firmware")).toInt(version);
    const bool isVersion = kept >= 0 && kept <= 0xFFFF;
    return {isVersion ? static_cast<std::uint16_t>(kept) : version, object.value(QLatin1String("boot")).toBool()};
}

Scene::Mouse mouseFrom(const QJsonObject &object)
{
    Scene::Mouse mouse;
    mouse.id = idIn(object, "id");
    mouse.model = idIn(object, "model");
    mouse.isCorded = object.value(QLatin1String("corded")).toBool();
    mouse.batteryPercent = object.value(QLatin1String("battery")).toInt(mouse.batteryPercent);
    if (const MouseModel *const model = findMouseModel(mouse.model))
        mouse.firmware = firmwareIn(object, model->version);
    return mouse;
}

Scene::Receiver receiverFrom(const QJsonObject &object)
{
    Scene::Receiver receiver;
    receiver.id = idIn(object, "id");
    receiver.model = idIn(object, "model");
    receiver.link = idIn(object, "link");
    receiver.pairedMouse = idIn(object, "mouse");
    receiver.isPlugged = object.value(QLatin1String("plugged")).toBool(true);
    receiver.stored.isLongRange = object.value(QLatin1String("longRange")).toBool();
    if (const ReceiverModel *const model = findReceiverModel(receiver.link))
        receiver.firmware = firmwareIn(object, model->version);
    const QJsonArray light = object.value(QLatin1String("light")).toArray();
    for (int i = 0; i < light.size() && i < static_cast<int>(receiver.stored.light.size()); ++i)
        receiver.stored.light[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(light[i].toInt());
    return receiver;
}

} // namespace

SceneStore::SceneStore(QString folder) : path(std::move(folder)) {}

std::optional<Scene> SceneStore::load()
{
    const QByteArray content = read(QLatin1String(sceneFile));
    if (content.isNull())
        return std::nullopt;
    written[QLatin1String(sceneFile)] = content;
    const QJsonObject root = QJsonDocument::fromJson(content).object();
    if (!root.value(QLatin1String("mice")).isArray() || !root.value(QLatin1String("receivers")).isArray()) {
        putAside(QLatin1String(sceneFile), "it isn't a scene");
        return std::nullopt;
    }
    Scene scene;
    for (const auto &value : root.value(QLatin1String("mice")).toArray()) {
        Scene::Mouse mouse = mouseFrom(value.toObject());
        if (mouse.id.empty() || scene.mice.size() == mostMice)
            continue;
        if (const MouseModel *const model = findMouseModel(mouse.model))
            mouse.stored.profiles.fill(FirmwareFlash::factory(*model));
        loadFlash(mouse);
        scene.mice.push_back(std::move(mouse));
    }
    for (const auto &value : root.value(QLatin1String("receivers")).toArray()) {
        Scene::Receiver receiver = receiverFrom(value.toObject());
        if (!receiver.id.empty() && scene.receivers.size() < mostReceivers)
            scene.receivers.push_back(std::move(receiver));
    }
    return scene;
}

void SceneStore::loadFlash(Scene::Mouse &mouse)
{
    const QString name = flashFile(mouse.id);
    const QByteArray content = read(name);
    if (content.isNull())
        return;
    written[name] = content;
    VirtualMouse::Stored stored;
    if (readFlash(content, stored))
        mouse.stored = stored;
    else
        putAside(name, "its length or checksum is wrong");
}

void SceneStore::save(const Scene &scene)
{
    QJsonArray mice;
    QJsonArray receivers;
    for (const Scene::Mouse &mouse : scene.mice) {
        mice.append(toJson(mouse));
        write(flashFile(mouse.id), flashContent(mouse.stored));
    }
    for (const Scene::Receiver &receiver : scene.receivers)
        receivers.append(toJson(receiver));
    write(QLatin1String(sceneFile), QJsonDocument(QJsonObject{{"mice", mice}, {"receivers", receivers}}).toJson());
    // A mouse that was taken away leaves no flash behind for the next one with its id.
    for (auto file = written.begin(); file != written.end();) {
        const bool isOfMouse = std::any_of(scene.mice.begin(), scene.mice.end(), [&](const Scene::Mouse &mouse) {
            return flashFile(mouse.id) == file->first;
        });
        if (isOfMouse || file->first == QLatin1String(sceneFile)) {
            ++file;
        } else {
            QFile::remove(path + QLatin1Char('/') + file->first);
            file = written.erase(file);
        }
    }
}

/** \return a null array if there is no such file. */
QByteArray SceneStore::read(const QString &name) const
{
    // Ten times the largest file that is ever written: what is bigger isn't of this store.
    constexpr qint64 most = qint64{10} * flashFileSize;
    QFile file(path + QLatin1Char('/') + name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.read(most);
    return content.isNull() ? QByteArray("") : content;
}

void SceneStore::write(const QString &name, const QByteArray &content)
{
    const auto known = written.find(name);
    if (known != written.end() && known->second == content)
        return;
    QDir().mkpath(path);
    QSaveFile file(path + QLatin1Char('/') + name);
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() && file.commit()) {
        written[name] = content;
        isComplaintMade = false;
    } else if (!isComplaintMade) {
        isComplaintMade = true;
        qWarning("portwire: can't write %s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    }
}

void SceneStore::putAside(const QString &name, const char *reason)
{
    written.erase(name);
    const QString from = path + QLatin1Char('/') + name;
    const QString to = from + QStringLiteral(".damaged");
    QFile::remove(to);
    const bool isMoved = QFile::rename(from, to);
    qWarning("portwire: %s can't be used, %s; %s", qPrintable(from), reason,
             isMoved ? "it is put aside as .damaged" : "it can't be put aside either");
}

} // namespace portwire
