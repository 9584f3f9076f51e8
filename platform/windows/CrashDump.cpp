#include "platform/CrashDump.h"

#include "WideText.h"

#include <array>
#include <cwchar>
#include <dbghelp.h>

namespace {

constexpr ULONG overflowReserve = 64 * 1024; // bytes of stack left for the filter after a stack overflow

constexpr std::size_t longestPath = 32768; // characters, the system's limit

// Plain storage: a crash may come after the destructors of static objects, or when the stack is used up.
std::array<wchar_t, longestPath> dumpFolder;
std::array<wchar_t, longestPath> dumpFile;

void writeDump(EXCEPTION_POINTERS *exception)
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
    information.ThreadId = GetCurrentThreadId();
    information.ExceptionPointers = exception;
    information.ClientPointers = TRUE;
    MiniDumpWriteDump(GetCurrentProcess(), GetCurrentProcessId(), dump, MiniDumpNormal, &information, nullptr, nullptr);
    CloseHandle(dump);
}

LONG WINAPI onFault(EXCEPTION_POINTERS *exception)
{
    writeDump(exception);
    return EXCEPTION_EXECUTE_HANDLER; // ends the process without the system's own message
}

} // namespace

void platform::installCrashDump(const std::string &folder)
{
    const std::wstring wide = wideText(folder);
    dumpFolder[wide.copy(dumpFolder.data(), dumpFolder.size() - 1)] = L'\0';
    ULONG reserve = overflowReserve;
    SetThreadStackGuarantee(&reserve);
    SetUnhandledExceptionFilter(onFault);
}
