#include "maintenance/PairingState.h"

#include "app/hub/PostMsg.h"
#include "devicelink/DeviceFlags.h"

namespace {

QMutex &guard()
{
    static auto *const mutex = new QMutex;
    return *mutex;
}

// With the lock held.
PairingState::State PairState = PairingState::Idle;
bool PairRunning = false;
bool PairRestoreLink = false; ///< `DeviceWindowOpen` was taken down for this pairing

constexpr std::uint8_t pairingStatus = 6;

/** What a receiver says of a pairing. */
enum Status : std::uint8_t {
    GoesOn = 1,
    HasFailed = 2,
    IsPaired = 3,
};

/** With the lock held. */
void restoreLink(bool isWanted)
{
    if (PairRestoreLink && isWanted && DeviceEntered)
        DeviceWindowOpen = true;
    PairRestoreLink = false;
}

} // namespace

void PairingState::reset()
{
    const QMutexLocker locker(&guard());
    PairState = Idle;
    PairRunning = false;
    restoreLink(true);
}

bool PairingState::begin()
{
    const QMutexLocker locker(&guard());
    PairState = Pairing;
    if (DeviceWindowOpen.exchange(false)) {
        PairRestoreLink = true;
        PairRunning = false;
    }
    return !PairRunning;
}

void PairingState::listen()
{
    const QMutexLocker locker(&guard());
    PairRunning = true;
}

bool PairingState::end(State result, bool isGone)
{
    const QMutexLocker locker(&guard());
    if (!std::exchange(PairRunning, false))
        return false;
    PairState = result;
    restoreLink(!isGone);
    return true;
}

PairingState::State PairingState::state()
{
    const QMutexLocker locker(&guard());
    return PairState;
}

bool PairingState::isRunning()
{
    const QMutexLocker locker(&guard());
    return PairRunning;
}

void PairingState::onReport(const std::uint8_t *header, int headerLength, const std::uint8_t *payload,
                            std::uint32_t payloadLength)
{
    const std::uint8_t code = header && headerLength >= 2 ? header[1] : 0;
    const std::uint8_t status = payload && payloadLength > 0 ? payload[0] : 0;
    if (code != pairingStatus || (status != HasFailed && status != IsPaired))
        return;
    if (!end(status == IsPaired ? Success : Failed))
        return; // it was given up, or this is said twice: by the receiver and in answer to a question
    postMsg()->post(&PostMsg::SigTimerStop);
    postMsg()->post(&PostMsg::SigButtonEnable, status == IsPaired ? 1 : 0);
}
