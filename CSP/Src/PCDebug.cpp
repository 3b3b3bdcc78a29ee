#include "CSP/Inc/PCDebug.h"

#include <execinfo.h>
#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "CSP/Inc/PCThread.h"

namespace HbbTVPlatform {

unsigned long startLevel = 0;
unsigned long endLevel = 0xFFFFFFFFUL;
unsigned long lineCount = 0;

namespace {

// Threads and later destructors may still print while the process ends, when the lock is gone; those lines
// are dropped. Neither of the two has a destructor, so they can be asked to the very end.
std::atomic<bool> s_lockIsGone{false};
std::atomic<int> s_users{0};

// Keeps the lock in existence while it is true.
class LockUser {
 public:
    LockUser() { ++s_users; }
    ~LockUser() { --s_users; }
    LockUser(const LockUser&) = delete;
    LockUser& operator=(const LockUser&) = delete;

    explicit operator bool() const { return !s_lockIsGone; }
};

// To be called with the lock held.
__attribute__((format(printf, 2, 0))) void PrintLine(unsigned level, const char* format, va_list arguments) {
    std::printf("%lu (%u): ", lineCount++, level);
    std::vfprintf(stdout, format, arguments);
    std::fputc('\n', stdout);
}

}  // namespace

void _ASSERT(const char* expression, const char* file, unsigned long line) {
    std::fprintf(stderr, "Assertion failed: %s (%lu) - %s\n", file, line, expression);
    std::fprintf(stderr, "Debug information:\n");
    std::fprintf(stderr, "    Thread ID: 0x%08x\n", static_cast<unsigned>(pthread_self()));

    std::array<void*, 50> frames{};
    const int depth = backtrace(frames.data(), static_cast<int>(frames.size()));
    std::fprintf(stderr, "Call stack:\n");
    std::fflush(stderr);
    backtrace_symbols_fd(frames.data(), depth, STDERR_FILENO);

    PCThread::Sleep(100);  // for the output to reach the log before the process is gone
    std::abort();
}

PCRealDebug::Sync PCRealDebug::m_sync;

PCRealDebug::Sync::~Sync() {
    PC_ASSERT(FlagCreate() == true);
    s_lockIsGone = true;
    while (s_users > 0)
        sched_yield();
    Destroy();
    PC_ASSERT(FlagCreate() == false);
}

void PCRealDebug::SetLevel(unsigned start, unsigned end) {
    const LockUser user;
    if (!user)
        return;
    const std::lock_guard guard(m_sync);
    if (start > end)
        return;
    startLevel = start;
    endLevel = end;
}

void PCRealDebug::Print(unsigned level, const char* format, ...) {
    const LockUser user;
    if (!user)
        return;
    PC_ASSERT(m_sync.FlagCreate() == true);
    PC_ASSERT(format != NULL);
    const std::lock_guard guard(m_sync);
    if (level < startLevel || level > endLevel)
        return;
    va_list arguments;
    va_start(arguments, format);
    PrintLine(level, format, arguments);
    va_end(arguments);
}

void PCRealDebug::Print(const char* format, ...) {
    const LockUser user;
    if (!user)
        return;
    PC_ASSERT(m_sync.FlagCreate() == true);
    PC_ASSERT(format != NULL);
    const std::lock_guard guard(m_sync);
    if (startLevel != 0)
        return;
    va_list arguments;
    va_start(arguments, format);
    PrintLine(0, format, arguments);
    va_end(arguments);
}

}  // namespace HbbTVPlatform
