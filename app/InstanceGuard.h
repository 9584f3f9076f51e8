#pragma once

#include <QSharedMemory>

/** Keeps a second copy of the program from running. Only the existence of the shared segment counts. */
class InstanceGuard
{
public:
    static InstanceGuard &instance();

    /** True if this process now holds the guard; false if another copy is running. */
    bool take();

private:
    InstanceGuard();
    bool isHeld();

    QSharedMemory segment;
};
