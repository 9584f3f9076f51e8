#include "platform/CrashDump.h"

#include "WideText.h"

#include <array>
#include <csignal>
#include <cwchar>
#include <dbghelp.h>

namespace {

constexpr ULONG overflowReserve = 64 * 1024; // bytes of stack left for the filter after a stack overflow
constexpr DWORD patience = 60000;            // ms for the dump; a program that hangs would be worse than one without

constexpr std::size_t longestPath = 32768; // characters, the system's limit

// Plain storage: a crash may come after the destructors of static objects, or when the stack is used up.
std::array<wchar_t, longestPath> dumpFolder;
std::array<wchar_t, longestPath> dumpFile;

// The dump is written by a thread that waits for nothing else: what dbghelp needs of the stack is more than a fault may
// have left, and a thread made at that moment might have to wait for a lock that the faulting one holds.
struct Fault
{
    EXCEPTION_POINTERS *exception = nullptr;
    DWORD thread = 0;
};
Fault fault;
HANDLE asked = nullptr;
HANDLE written = nullptr;
volatile LONG faults = 0;

void writeDump()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    CreateDirectoryW(dumpFolder.data(), nullptr);
    const int length =
        std::swprintf(dumpFile.data(), dumpFile.size(), L"%ls/%04d_%02d_%02d_%02d_%02d_%02d.dmp", dumpFolder.data(),
                      now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond);
    if (length < 0)
        return;
    const HANDLE dump =
        CreateFileW(dumpFile.data(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (dump == INVALID_HANDLE_VALUE)
        return;
    MINIDUMP_EXCEPTION_INFORMATION information = {};
    information.ThreadId = fault.thread;
    information.ExceptionPointers = fault.exception;
    information.ClientPointers = TRUE;
    MiniDumpWriteDump(GetCurrentProcess(), GetCurrentProcessId(), dump, MiniDumpNormal, &information, nullptr, nullptr);
    CloseHandle(dump);
}

DWORD WINAPI writeWhenAsked(void *)
{
    WaitForSingleObject(asked, INFINITE);
    writeDump();
    SetEvent(written);
    return 0;
}

LONG WINAPI onFault(EXCEPTION_POINTERS *exception)
{
    // Of several threads the first one counts; the others stand still until it has ended the process.
    if (InterlockedIncrement(&faults) == 1) {
        fault = {exception, GetCurrentThreadId()};
        SetEvent(asked);
    }
    WaitForSingleObject(written, patience);
    return EXCEPTION_EXECUTE_HANDLER; // ends the process without the system's own message
}

/** An exception that nobody catches and a fatal message of Qt end in abort(), which is no fault to the system. */
void onAbort(int)
{
    constexpr DWORD appExit = 0x40000015; // STATUS_FATAL_APP_EXIT, as the system's own runtime library names it
    RaiseException(appExit, EXCEPTION_NONCONTINUABLE, 0, nullptr);
}

} // namespace

void platform::installCrashDump(const std::string &folder)
{
    const std::wstring wide = wideText(folder);
    dumpFolder[wide.copy(dumpFolder.data(), dumpFolder.size() - 1)] = L'\0';
    ULONG reserve = overflowReserve;
    SetThreadStackGuarantee(&reserve);
    if (asked)
        return; // all of it stands, for another folder now
    asked = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    written = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const HANDLE writer = CreateThread(nullptr, 0, writeWhenAsked, nullptr, 0, nullptr);
    if (!writer)
        return; // without it there would be nothing but the wait
    CloseHandle(writer);
    SetUnhandledExceptionFilter(onFault);
    std::signal(SIGABRT, onAbort);
}
