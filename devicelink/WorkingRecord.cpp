#include "devicelink/WorkingRecord.h"

#include "portwire/portwire.h"

WorkingRecord &WorkingRecord::instance()
{
    static auto *const record = new WorkingRecord;
    return *record;
}

FlashDataMap WorkingRecord::copy() const
{
    const QMutexLocker locker(&mutex);
    return record;
}

void WorkingRecord::sendAgain()
{
    const QMutexLocker order(&handOver);
    send();
}

void WorkingRecord::send() const
{
    const FlashDataMap sent = copy();
    ProtocolDataUpdate(&sent);
}
