#include "app/hub/Wait.h"
#include "support/Program.h"
#include "support/TestHome.h"
#include "support/VirtualMice.h"

#include <windows.h>
// Wants what the other declares.
#include <psapi.h>

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
    double privateBytes = 0;
    DWORD handles = 0;
};

Use present()
{
    PROCESS_MEMORY_COUNTERS_EX memory{};
    Use use;
    if (!GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS *>(&memory),
                              sizeof memory) ||
        !GetProcessHandleCount(GetCurrentProcess(), &use.handles))
        qFatal("the system doesn't tell");
    use.privateBytes = static_cast<double>(memory.PrivateUsage);
    qInfo("%.0f KiB private, %lu handles", use.privateBytes / 1024, use.handles);
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
    QVERIFY(after.privateBytes <= before.privateBytes * 1.02);
}

HALVARION_TEST_MAIN(LongUseTest)
#include "tst_longuse_windows.moc"
