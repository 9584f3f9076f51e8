// A program that ends in the way its first argument names, with the crash dump installed for the folder of the second.

#include "platform/CrashDump.h"

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>
#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace {

// Volatile: the compiler shall not draw conclusions.
volatile bool always = true;
volatile std::uintptr_t nowhere = 64; // in the first page, which is never mapped
void (*volatile ending)() = nullptr;

} // namespace

// Exported under a plain name, so that the stack trace can tell it. The write at its end keeps it a frame of its own.
#define KNOWN extern "C" __attribute__((noinline, visibility("default")))

KNOWN void deliberateFault()
{
    *reinterpret_cast<volatile int *>(nowhere) = 1;
    always = true;
}

KNOWN void deliberateCall()
{
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
    struct Way
    {
        const char *name;
        void (*end)();
    };
    constexpr Way ways[] = {
        {"fault", deliberateFault},
        {"nullCall", deliberateCall},
        {"thread", [] { std::thread(deliberateFault).join(); }},
        {"overflow", [] { deliberateOverflow(0); }},
        {"abort", [] { ending = std::abort, deliberateCall(); }},
        {"exception", [] { ending = [] { throw std::runtime_error("nobody catches"); }, deliberateCall(); }},
#ifdef SIGBUS
        {"bus", [] { ending = [] { std::raise(SIGBUS); }, deliberateCall(); }},
#endif
        {"illegal", [] { ending = [] { std::raise(SIGILL); }, deliberateCall(); }},
        {"division", [] { ending = [] { std::raise(SIGFPE); }, deliberateCall(); }},
    };
    if (argc != 3)
        return 2;
#ifndef _WIN32
    constexpr rlim_t megabyte = 1 << 20;
    const rlimit stackLimit = {megabyte, megabyte};
    setrlimit(RLIMIT_STACK, &stackLimit);
#endif
    platform::installCrashDump(argv[2]);
    for (const Way &way : ways) {
        if (!std::strcmp(argv[1], way.name))
            way.end();
    }
    return 0;
}
