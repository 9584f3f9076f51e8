#include "maintenance/FirmwareTransfer.h"

#include "app/hub/PostMsg.h"
#include "app/hub/Wait.h"
#include "devicelink/DeviceFlags.h"
#include "devicelink/Snapshot.h"
#include "portwire/portwire.h"
#include "productdata/FirmwareImages.h"
#include "productdata/ModelData.h"

#include <QDeadlineTimer>
#include <QDebug>

#include <algorithm>

namespace {

/** How long a device may get no further until its update has failed, in ms. */
constexpr int patience = 10000;

/**
 * Progress is told no more often than that, in ms. A step costs the windows up to some ms, and from a device that
 * answers at once a hundred would come without a pause: nobody could see them, and nothing else would be served.
 */
constexpr int tellInterval = 40;

constexpr int partCount = 4;

/** What the library says of a transfer. */
struct Message
{
    bool isEnd = false;
    int value = 0; ///< percent; at the end 1 for success
};

std::optional<Message> readMessage(const std::uint8_t *message, int length)
{
    constexpr std::uint8_t upgrade = 7;
    constexpr std::uint8_t progress = 1;
    constexpr std::uint8_t end = 2;
    if (!message || length < 3 || message[0] != upgrade || (message[1] != progress && message[1] != end))
        return std::nullopt;
    return Message{message[1] == end, message[1] == end ? message[2] : std::min<int>(message[2], 100)};
}

/** Whether this step is told; both ends always are. On the thread of the library, which takes one transfer at a time.
 */
bool isTold(int percent)
{
    static std::atomic<qint64> next{0};
    const qint64 now = QDeadlineTimer::current().deadline();
    if (percent > 0 && percent < 100 && now < next)
        return false;
    next = now + Wait::scaled(tellInterval);
    return true;
}

/** What is written now. Never destroyed: the library may end a transfer when the program has ended. */
struct Current
{
    FirmwareTransfer::Subject subject;
    std::uint32_t version = 0; ///< of the image
};
Snapshot<Current> &current()
{
    static auto *const held = new Snapshot<Current>;
    return *held;
}

void start(const QByteArray &image, const FirmwareTransfer::Subject &subject, PortwireUpgradeCallback callback)
{
    const auto header = FirmwareImages::readHeader(image);
    current().set({subject, header ? header->version : 0});
    ModelData::storeUpdateFailInfo(subject.text());
    FirmwareUnderWay = true;
    const FirmwareImage bytes{reinterpret_cast<const std::uint8_t *>(image.constData()),
                              static_cast<std::uint32_t>(image.size())};
    UsbUpgrade_Start(&bytes, callback, Wait::scaled(patience));
}

void endRun(std::atomic<int> &state, bool isGood)
{
    const Current done = current().get();
    const bool isMouse = &state == &FirmwareTransfer::MouseUpdate;
    FirmwareUnderWay = false;
    if (isGood) {
        const QString version = FirmwareImages::versionText(done.version);
        ModelData::storeUpdateFailInfo({});
        if (isMouse)
            ModelData::storeMouseVersion(done.subject.modelIndex(), version);
        state = FirmwareTransfer::Success;
        postMsg()->post(&PostMsg::SigProgress, 0, 2);
        postMsg()->post(&PostMsg::SigLabelText, isMouse ? 1 : 0, version);
        return;
    }
    qWarning() << "a firmware update has failed:" << done.subject.text();
    MouseUpdateAvailable = false;
    DongleUpdateAvailable = false;
    ModelData::storeUpdateFailInfo(done.subject.text());
    state = FirmwareTransfer::Failure;
    postMsg()->post(&PostMsg::SigProgress, 0, 1);
}

void onRunMessage(const std::uint8_t *bytes, int length)
{
    const auto message = readMessage(bytes, length);
    std::atomic<int> *running = nullptr;
    for (std::atomic<int> *state : {&FirmwareTransfer::MouseUpdate, &FirmwareTransfer::DongleUpdate}) {
        if (*state == FirmwareTransfer::Running)
            running = state;
    }
    if (!message || !running)
        return;
    if (message->isEnd)
        endRun(*running, message->value == 1);
    else if (isTold(message->value))
        postMsg()->post(&PostMsg::SigProgress, message->value, 0);
}

void onRepairMessage(const std::uint8_t *bytes, int length)
{
    const auto message = readMessage(bytes, length);
    if (!message || !FirmwareUnderWay)
        return;
    if (!message->isEnd) {
        if (isTold(message->value))
            postMsg()->post(&PostMsg::SigAutoRepairProgress, message->value);
        return;
    }
    const FirmwareTransfer::Subject subject = current().get().subject;
    const bool isGood = message->value == 1;
    if (!isGood)
        qWarning() << "the repair of a firmware update has failed:" << subject.text();
    ModelData::storeUpdateFailInfo(isGood ? QString() : subject.text());
    FirmwareUnderWay = false;
    HotplugWatchEnabled = true;
    postMsg()->post(&PostMsg::SigAutoRepair, isGood ? 0 : 1);
    postMsg()->post(&PostMsg::SigUpDateButton, isGood);
}

} // namespace

QString FirmwareTransfer::Subject::text() const
{
    return QStringLiteral("%1,%2,%3,%4").arg(target).arg(updateClass).arg(cid).arg(mid);
}

std::optional<FirmwareTransfer::Subject> FirmwareTransfer::Subject::fromText(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != partCount)
        return std::nullopt;
    return Subject{parts[0].toInt(), parts[1].toInt(), parts[2].toInt(), parts[3].toInt()};
}

int FirmwareTransfer::Subject::modelIndex() const { return ModelData::modelIndexOf(mid); }

void FirmwareTransfer::startRun(const QByteArray &image, const Subject &subject)
{
    // Before the library knows of it: it may fail at once, and an end that finds nothing running would be lost.
    (subject.target == FirmwareImages::MouseTarget ? MouseUpdate : DongleUpdate) = Running;
    start(image, subject, onRunMessage);
}

void FirmwareTransfer::startRepair(const QByteArray &image, const Subject &subject)
{
    HotplugWatchEnabled = false;
    start(image, subject, onRepairMessage);
}

int FirmwareTransfer::bootDevices(const QByteArray &image)
{
    const FirmwareImage bytes{reinterpret_cast<const std::uint8_t *>(image.constData()),
                              static_cast<std::uint32_t>(image.size())};
    int count = 5; // as many as a desk can hold
    UsbUpgradeC_FindBootDevices(&bytes, &count);
    return count;
}
