// Assertions, and a console printer with a level range. What goes to the platform's log is in PCLog.h.
#pragma once

#include "CSP/Inc/PCMutex.h"

// A broken invariant of the support library ends the process: there is no way on from it.
#define PC_ASSERT(expression) \
    ((expression) ? static_cast<void>(0) : ::HbbTVPlatform::_ASSERT(#expression, __FILE__, __LINE__))

namespace HbbTVPlatform {

// Prints the expression, the thread and the call stack to standard error, and aborts.
[[noreturn]] void _ASSERT(const char* expression, const char* file, unsigned long line);

// The console printer's levels, both ends included, and how many lines it has printed.
extern unsigned long startLevel;
extern unsigned long endLevel;
extern unsigned long lineCount;

class PCRealDebug {
 public:
    PCRealDebug() = delete;

    // A reversed pair is ignored.
    static void SetLevel(unsigned start, unsigned end);

    // One line on standard output: "<line count> (<level>): <text>".
    static void Print(unsigned level, const char* format, ...) __attribute__((format(printf, 2, 3)));
    // The same at level 0, which any start level above 0 silences.
    static void Print(const char* format, ...) __attribute__((format(printf, 1, 2)));

 private:
    class Sync : public PCMutex {
     public:
        Sync() = default;
        ~Sync();
    };

    static Sync m_sync;
};

}  // namespace HbbTVPlatform
