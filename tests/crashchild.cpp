// A program that ends in the way its first argument names, with the crash dump installed for the folder of the second.

#include "platform/CrashDump.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <sys/resource.h>
#include <thread>

namespace {

// Volatile: the compiler shall not draw conclusions.
volatile bool always = true;
volatile std::uintptr_t nowhere = 64; // in the first page, which is never mapped
void (*volatile ending)() = nullptr;

} // namespace

// Exported under a plain name, so that the stack trace can tell it.
#define KNOWN extern "C" __attribute__((noinline, visibility("default")))

KNOWN void deliberateFault()
{
    *reinterpret_cast<volatile int *>(nowhere) = 1;
    always = true;
}

KNOWN void deliberateAbort()
{
    ending = std::abort;
    ending();
    always = true;
}

KNOWN void deliberateNullCall()
{
    ending();
    always = true;
}

KNOWN void deliberateSignal(int number)
{
    std::raise(number);
    always = true;
}

KNOWN void deliberateException()
{
    ending = [] { throw std::runtime_error("nobody catches this"); };
    ending();
    always = true;
}

KNOWN int deliberateOverflow(int depth)
{
    volatile char room[4096];
    room[0] = static_cast<char>(depth);
    return always ? deliberateOverflow(depth + 1) + room[0] : 0;
}

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    constexpr rlim_t megabyte = 1 << 20;
    const rlimit stackLimit = {megabyte, megabyte};
    setrlimit(RLIMIT_STACK, &stackLimit);
    platform::installCrashDump(argv[2]);
    const char *way = argv[1];
    if (!std::strcmp(way, "fault"))
        deliberateFault();
    else if (!std::strcmp(way, "thread"))
        std::thread(deliberateFault).join();
    else if (!std::strcmp(way, "abort"))
        deliberateAbort();
    else if (!std::strcmp(way, "nullCall"))
        deliberateNullCall();
    else if (!std::strcmp(way, "exception"))
        deliberateException();
    else if (!std::strcmp(way, "overflow"))
        deliberateOverflow(0);
    else if (!std::strcmp(way, "bus"))
        deliberateSignal(SIGBUS);
    else if (!std::strcmp(way, "illegal"))
        deliberateSignal(SIGILL);
    else if (!std::strcmp(way, "division"))
        deliberateSignal(SIGFPE);
    return 0;
}
