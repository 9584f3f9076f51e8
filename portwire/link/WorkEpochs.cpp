/**
 * Where one epoch of a Work ends and the next one begins, and whether what is queued is meant for what comes then.
 */
#include "portwire/link/StatusPayload.h"
#include "portwire/link/Work.h"

#include <QDebug>

#include <utility>

namespace portwire {

namespace {

/** In the payload of a report on pairing: the receiver still looks; another mouse is paired now. */
constexpr std::uint8_t stillPairing = 1;
constexpr std::uint8_t paired = 3;

/** The queue of the next epoch with what is queued in this one, to be sent or dropped when that is known. */
std::shared_ptr<WriteQueue> successorOf(const WriteQueue &queue)
{
    auto next = std::make_shared<WriteQueue>(queue);
    next->forget();
    return next;
}

} // namespace

void Work::opened(const std::shared_ptr<Channel> &channel)
{
    const std::lock_guard lock(mutex);
    const bool isFirst = !hasOpened;
    const bool isAnew = hasOpened && lastChannel.lock() != channel;
    hasOpened = true;
    lastChannel = channel;
    if (isFirst || isAnew)
        doubt(Job::Kind::AskAddress);
    if (!isAnew)
        return;
    pairingUntil.reset();
    // What was changed on the mouse meanwhile was announced to nobody.
    begin(successorOf(*epoch));
    epoch->setGiven(false);
    if (profile)
        doubt(Job::Kind::AskProfile);
    if (!jobs.has(Job::Kind::WholeRecord))
        jobs.add(Job::wholeRecord());
}

void Work::reported(const Frame &frame)
{
    const std::lock_guard lock(mutex);
    const std::uint8_t first = frame.payload.empty() ? 0 : frame.payload[0];
    if (frame.code == ReportCode::PairingStatus)
        pairingIs(first);
    if (frame.code != ReportCode::StatusChanged)
        return;
    ++changeCount;
    if (!(first & anotherProfile))
        return;
    // Also after an order of the program's own, so the mouse is asked which one it is.
    hasChangedItself = true;
    begin(successorOf(*epoch));
    doubt(Job::Kind::AskProfile);
}

/**
 * A receiver that looks for a mouse may have another one at any moment, and tells it only afterwards. So nothing is
 * said to its mouse from the order to pair on until the receiver looks no more and it is known whose it is.
 */
void Work::pairingIs(std::uint8_t status)
{
    if (status == stillPairing)
        return;
    if (status == paired)
        doubt(Job::Kind::AskAddress);
    pairingUntil.reset();
}

void Work::doubt(Job::Kind check)
{
    doubtedUpTo = jobs.lastNumber();
    jobs.add({check, {check == Job::Kind::AskAddress ? ReportCode::Online : ReportCode::CurrentConfig}});
}

/** \param told nothing if there is no mouse, or the device doesn't say */
void Work::addressIs(const std::optional<Address> &told)
{
    const bool isForeign = owner ? told != owner : isInherited;
    if (isForeign) {
        logDropped(epoch->size(), jobs.dropOrders(doubtedUpTo), "another mouse is there");
        begin(std::make_shared<WriteQueue>());
        // Of a link that goes on, the program doesn't know that it leads to another mouse.
        isOutdated = !isInherited;
        if (isOutdated)
            jobs.add(Job::wholeRecord());
        profile.reset();
    }
    owner = told;
    isInherited = false;
}

/** \param told nothing if the mouse doesn't say */
void Work::profileIs(std::optional<std::uint8_t> told)
{
    const bool isKnown = told && profile;
    if (isKnown ? told != profile : hasChangedItself) {
        logDropped(epoch->size(), jobs.dropResets(), "the mouse has another profile active");
        begin(std::make_shared<WriteQueue>());
        isOutdated = true;
        // The program reads anew by itself only if the last time is long enough ago, and profile buttons are pressed
        // several times in a row.
        jobs.add(Job::wholeRecord());
    }
    profile = told;
    if (!jobs.front(JobOrder::Checks))
        hasChangedItself = false;
}

void Work::begin(std::shared_ptr<WriteQueue> next)
{
    epoch = std::move(next);
    ++changeCount;
    batchesIgnored = 0;
    isRefusalLogged = false;
}

void Work::logDropped(std::size_t bytes, std::size_t orders, const char *reason) const
{
    if (bytes > 0 || orders > 0)
        qWarning("portwire: %d bytes of settings and %d orders for %s are dropped: %s", static_cast<int>(bytes),
                 static_cast<int>(orders), devicePath.c_str(), reason);
}

} // namespace portwire
