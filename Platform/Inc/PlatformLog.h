// The television platform's log service. Where the platform has none, Platform/Src/LogSink.cpp stands in.
#pragma once

// Priorities of the service. The text of a line is coloured by priority, see CSP/Inc/PCLog.h.
enum PlatformLogPriority : int {
    kPlatformLogDebug = 2,
    kPlatformLogInfo = 4,
    kPlatformLogWarning = 8,
    kPlatformLogError = 16,
};

extern "C" {

// Writes one record; the result is of no use to a caller and is ignored everywhere.
int __dlog_print(int logId, int priority, const char* tag, const char* format, ...)  // NOLINT
    __attribute__((format(printf, 4, 5)));

// Whether records of this priority are shown. Only the stand-in for the service has it: where it is null, all
// are.
bool PlatformLogShows(int priority) __attribute__((weak));
}
