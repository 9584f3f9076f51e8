#include "app/InstanceGuard.h"

#include <QDebug>
#include <QRandomGenerator>
#include <QThread>

namespace {

/** Looks for another copy before this one gives way; they take some 40 ms together. */
constexpr int looks = 6;

} // namespace

InstanceGuard &InstanceGuard::instance()
{
    static InstanceGuard guard;
    return guard;
}

InstanceGuard::InstanceGuard() : segment(QStringLiteral("Single_myexe_App")) {}

bool InstanceGuard::take()
{
    // Two copies started at the same moment look at the same moment: each may take the other's look for a copy that
    // runs, and only one of two creations succeeds. A copy that runs is still there at the next look, one that looks
    // isn't, unless the two keep step; hence the pauses of random length.
    for (int look = 0; look < looks && !segment.isAttached(); ++look) {
        if (look > 0)
            QThread::msleep(QRandomGenerator::global()->bounded(2U, 12U));
        if (isHeld())
            continue;
        if (segment.create(1, QSharedMemory::ReadWrite))
            return true;
        if (segment.error() == QSharedMemory::AlreadyExists)
            continue;
        // A system that gives no shared memory must not keep the user from the program.
        qWarning() << "the instance guard could not be made:" << segment.errorString();
        return true;
    }
    return segment.isAttached();
}

/**
 * Where shared memory outlives a killed process, the segment may be nobody's: the last one to detach removes it, so
 * that attaching and detaching once leaves it only if somebody still holds it. On Windows the two do nothing.
 */
bool InstanceGuard::isHeld()
{
    if (segment.attach(QSharedMemory::ReadWrite))
        segment.detach();
    if (!segment.attach(QSharedMemory::ReadWrite))
        return false;
    segment.detach();
    return true;
}
