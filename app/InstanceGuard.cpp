#include "app/InstanceGuard.h"

#include <QDebug>

InstanceGuard &InstanceGuard::instance()
{
    static InstanceGuard guard;
    return guard;
}

InstanceGuard::InstanceGuard() : segment(QStringLiteral("Single_myexe_App")) {}

bool InstanceGuard::take()
{
    // Where shared memory outlives a killed process, the segment may be nobody's: the last one to detach removes it, so
    // that attaching and detaching once leaves it only if somebody still holds it. On Windows the two do nothing.
    if (segment.attach(QSharedMemory::ReadWrite))
        segment.detach();
    if (segment.attach(QSharedMemory::ReadWrite)) {
        segment.detach();
        return false;
    }
    if (!segment.create(1, QSharedMemory::ReadWrite))
        qWarning() << "the instance guard could not be made:" << segment.errorString();
    return true;
}
