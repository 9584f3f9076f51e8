#include "support/Program.h"
#include "support/TestHome.h"

#include <windows.h>
#include <winternl.h>

/** What the system's own counters say of this process after many connects. */
class LongUseTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void connects();
};

namespace {

struct Use
{
    double memory = 0; ///< bytes that this process has for itself alone
    ULONG handles = 0;
};

/** Region by region: Wine keeps no count of its own. */
double privateMemory()
{
    double bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char *at = nullptr; VirtualQuery(at, &region, sizeof region) > 0;
         at = static_cast<const char *>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE)
            bytes += static_cast<double>(region.RegionSize);
    }
    return bytes;
}

/** From the list of all processes: Wine tells a process nothing of its own. */
ULONG handleCount()
{
    constexpr int tooShort = 0xC0000004;
    QByteArray list(1 << 16, '\0');
    while (NtQuerySystemInformation(SystemProcessInformation, list.data(), ULONG(list.size()), nullptr) == tooShort)
        list.resize(2 * list.size());
    const auto *process = reinterpret_cast<const SYSTEM_PROCESS_INFORMATION *>(list.constData());
    while (process->UniqueProcessId != reinterpret_cast<HANDLE>(quintptr(GetCurrentProcessId()))) {
        if (process->NextEntryOffset == 0)
            qFatal("this process isn't in the list");
        process = reinterpret_cast<const SYSTEM_PROCESS_INFORMATION *>(reinterpret_cast<const char *>(process) +
                                                                       process->NextEntryOffset);
    }
    return process->HandleCount;
}

Use present()
{
    const Use use{privateMemory(), handleCount()};
    qInfo("%.0f KiB, %lu handles", use.memory / 1024, use.handles);
    return use;
}

} // namespace

void LongUseTest::connects()
{
    constexpr int settled = 20; // what is made at first use has been made
    constexpr int all = 200;
    VirtualMice::restoreScene();
    Program program;
    Use before;
    for (int number = 1; number <= all; ++number) {
        QVERIFY2(program.connectMouse(number % 2 ? "q1" : "q2"), qPrintable(QString::number(number)));
        program.click("UpArrow");
        QTRY_VERIFY(!program.isDeviceWindowShown());
        if (number == settled)
            before = present();
    }
    const Use after = present();
    QVERIFY(before.handles > 0 && after.handles <= before.handles + 5);
    QVERIFY(before.memory > 0 && after.memory <= before.memory * 1.02);
}

HALVARION_TEST_MAIN(LongUseTest)
#include "tst_longuse_windows.moc"
