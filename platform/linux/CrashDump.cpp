#include "platform/CrashDump.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <execinfo.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

// All that runs from onFault() on keeps to async-signal-safe calls: the heap, the time zone tables or a lock may be
// what broke, or may be held by the thread that stands here.

namespace {

struct Fault
{
    int signal;
    const char *name;
};

constexpr Fault faults[] = {
    {SIGSEGV, "SIGSEGV"}, {SIGABRT, "SIGABRT"}, {SIGBUS, "SIGBUS"}, {SIGILL, "SIGILL"}, {SIGFPE, "SIGFPE"},
};

constexpr char fileNameForm[] = "/yyyy_MM_dd_hh_mm_ss.dmp";
constexpr std::size_t alternateStackSize =
    std::size_t{128} * 1024; // the unwinder takes some 10 KiB, sanitizers several times that
constexpr int maximumFrames = 128;
constexpr unsigned writeLimitSeconds = 5; // the symbol look-up takes the loader's lock, which may never come free

enum class Stage { Idle, StackTrace, Modules };

// Plain storage: it must stand until the very end of the process, after the destructors of static objects.
std::array<char, PATH_MAX> path; // of the dump; empty when the folder's path is longer than the system takes
std::size_t folderLength = 0;
long utcOffsetSeconds = 0; // of the moment of installing; a change to summer time is not followed
std::atomic<pid_t> faultingThread{0};
std::atomic<Stage> stage{Stage::Idle};
std::atomic<int> dumpFile{-1};
std::array<void *, maximumFrames> frames;

static_assert(std::atomic<pid_t>::is_always_lock_free && std::atomic<Stage>::is_always_lock_free);

pid_t currentThread() { return static_cast<pid_t>(syscall(SYS_gettid)); }

void writeBytes(const char *bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t written = write(dumpFile, bytes, count);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
}

void writeText(const char *text) { writeBytes(text, std::strlen(text)); }

void writeNumber(std::uint64_t number, unsigned base)
{
    char digits[24];
    char *first = digits + sizeof digits;
    do {
        *--first = "0123456789abcdef"[number % base];
        number /= base;
    } while (number > 0);
    writeBytes(first, static_cast<std::size_t>(digits + sizeof digits - first));
}

/** Overwrites `length` characters with the last decimal digits of `number`. */
void putDigits(char *target, int length, long number)
{
    for (int i = length - 1; i >= 0; --i, number /= 10)
        target[i] = static_cast<char>('0' + number % 10);
}

/** Puts the local time into the file name. The calendar is counted from 1 March of the year 0, so that a leap day is a
    year's last day. */
void putTime(char *name)
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const long seconds = now.tv_sec + utcOffsetSeconds;
    const long secondOfDay = seconds % 86400;
    const long days = seconds / 86400 + 719468; // days between 1 March of the year 0 and 1 January 1970
    const long era = days / 146097;             // of 400 years
    const long dayOfEra = days % 146097;
    const long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long monthFromMarch = (5 * dayOfYear + 2) / 153;
    const long month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    putDigits(name + 1, 4, era * 400 + yearOfEra + (month <= 2 ? 1 : 0));
    putDigits(name + 6, 2, month);
    putDigits(name + 9, 2, dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
    putDigits(name + 12, 2, secondOfDay / 3600);
    putDigits(name + 15, 2, secondOfDay / 60 % 60);
    putDigits(name + 18, 2, secondOfDay % 60);
}

/** Makes each folder on the way to the file; those that exist stay as they are. */
void makeFolders()
{
    for (std::size_t i = 1; i <= folderLength; ++i) {
        if (path[i] != '/')
            continue;
        path[i] = '\0';
        mkdir(path.data(), 0700);
        path[i] = '/';
    }
}

bool openDump()
{
    if (path[0] == '\0')
        return false;
    putTime(path.data() + folderLength);
    makeFolders();
    unlink(path.data());
    dumpFile = open(path.data(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    return dumpFile >= 0;
}

const char *nameOf(int signal)
{
    for (const Fault &fault : faults) {
        if (fault.signal == signal)
            return fault.name;
    }
    return "unknown";
}

/** Where the fault happened; after a call through a null pointer the place that it would have returned to. */
void *programCounter(const void *context)
{
    const auto &machine = static_cast<const ucontext_t *>(context)->uc_mcontext;
#if defined(__x86_64__)
    if (machine.gregs[REG_RIP] == 0)
        return *reinterpret_cast<void **>(machine.gregs[REG_RSP]);
    return reinterpret_cast<void *>(machine.gregs[REG_RIP]);
#elif defined(__aarch64__)
    return reinterpret_cast<void *>(machine.pc ? machine.pc : machine.regs[30]);
#else
    static_cast<void>(machine);
    return nullptr;
#endif
}

void writeReason(int signal, const siginfo_t *info)
{
    writeText("time    ");
    writeBytes(path.data() + folderLength + 1, std::strlen("yyyy_MM_dd_hh_mm_ss"));
    writeText("\nprocess ");
    writeNumber(static_cast<std::uint64_t>(getpid()), 10);
    writeText("\nthread  ");
    writeNumber(static_cast<std::uint64_t>(currentThread()), 10);
    writeText("\nsignal  ");
    writeText(nameOf(signal));
    writeText("\naddress 0x");
    writeNumber(reinterpret_cast<std::uintptr_t>(info->si_addr), 16);
    writeText("\n");
}

void writeStackTrace(const void *context)
{
    stage = Stage::StackTrace;
    writeText("\nat\n");
    void *counter = programCounter(context);
    backtrace_symbols_fd(&counter, 1, dumpFile);
    writeText("\nstack trace, this handler first\n");
    backtrace_symbols_fd(frames.data(), backtrace(frames.data(), maximumFrames), dumpFile);
}

void writeModules()
{
    stage = Stage::Modules;
    writeText("\nmodules\n");
    const int maps = open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    if (maps < 0)
        return;
    char block[4096];
    for (;;) {
        const ssize_t count = read(maps, block, sizeof block);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        writeBytes(block, static_cast<std::size_t>(count));
    }
    close(maps);
}

void endNow(int signal) { _exit(128 + signal); }

void limitTime()
{
    struct sigaction atLimit = {};
    atLimit.sa_handler = endNow;
    sigaction(SIGALRM, &atLimit, nullptr);
    sigset_t alarmOnly;
    sigemptyset(&alarmOnly);
    sigaddset(&alarmOnly, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &alarmOnly, nullptr);
    alarm(writeLimitSeconds);
}

void onFault(int signal, siginfo_t *info, void *context)
{
    pid_t nobody = 0;
    if (!faultingThread.compare_exchange_strong(nobody, currentThread())) {
        while (faultingThread != currentThread())
            pause(); // another thread is writing its dump, and ends the process
        // A fault while the dump was written. A stack too broken to be walked still leaves the list of modules.
        if (stage == Stage::StackTrace) {
            writeText("(the stack can't be followed further)\n");
            writeModules();
        }
        endNow(signal);
    }
    limitTime();
    if (openDump()) {
        writeReason(signal, info);
        writeStackTrace(context);
        writeModules();
    }
    endNow(signal);
}

/**
 * Gives the calling thread a stack for the handler, without which a stack overflow couldn't be handled. The system
 * keeps one for each thread: on other threads the handler runs on the thread's own stack, which serves every fault but
 * the overflow of that very stack; such a thread is ended by the system, without a dump.
 */
void provideAlternateStack()
{
    stack_t current = {};
    if (sigaltstack(nullptr, &current) == 0 && !(current.ss_flags & SS_DISABLE) &&
        current.ss_size >= alternateStackSize)
        return;
    void *memory =
        mmap(nullptr, alternateStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (memory == MAP_FAILED)
        return;
    stack_t alternate = {};
    alternate.ss_sp = memory;
    alternate.ss_size = alternateStackSize;
    if (sigaltstack(&alternate, nullptr) != 0)
        munmap(memory, alternateStackSize);
}

} // namespace

void platform::installCrashDump(const std::string &folder)
{
    std::error_code error;
    std::string absolute = std::filesystem::absolute(folder, error).lexically_normal().string();
    while (!absolute.empty() && absolute.back() == '/')
        absolute.pop_back();
    path[0] = '\0';
    if (!error && absolute.size() + sizeof fileNameForm <= path.size()) {
        folderLength = absolute.size();
        std::memcpy(path.data(), absolute.data(), folderLength);
        std::memcpy(path.data() + folderLength, fileNameForm, sizeof fileNameForm);
    }

    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    if (localtime_r(&now, &local))
        utcOffsetSeconds = local.tm_gmtoff;

    backtrace(frames.data(), maximumFrames); // its first call loads the unwinder, which takes memory
    provideAlternateStack();
    std::set_terminate(std::abort); // the library's own way out writes to standard error first

    struct sigaction action = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER; // not deferred: a second fault shall reach the handler
    sigemptyset(&action.sa_mask);
    for (const Fault &fault : faults)
        sigaction(fault.signal, &action, nullptr);
}
