// The log macros of every module. A record begins with file, function and line; the text of information,
// warnings and errors is coloured so that a console can be skimmed.
#pragma once

#include "Platform/Inc/PlatformLog.h"

// The file's base name: the tail of __FILE__, found at compile time.
namespace HbbTVPlatform {
constexpr const char* BaseName(const char* path) {
    const char* name = path;
    for (const char* at = path; *at != '\0'; ++at) {
        if (*at == '/')
            name = at + 1;
    }
    return name;
}

inline bool LogShows(PlatformLogPriority priority) {
    return PlatformLogShows == nullptr || PlatformLogShows(priority);
}
}  // namespace HbbTVPlatform

// A record made on behalf of another place, such as the caller of a shared routine.
#define HBBTV_LOG_RECORD_AT(file, function, line, priority, colour, reset, format, ...)     \
    __dlog_print(0, priority, "HBBTV", "%s: %s(%d) > " colour format reset, file, function, \
                 line __VA_OPT__(, ) __VA_ARGS__)

#define HBBTV_LOG_RECORD(priority, colour, reset, format, ...)                        \
    do {                                                                              \
        static constexpr const char* pcLogFile = ::HbbTVPlatform::BaseName(__FILE__); \
        HBBTV_LOG_RECORD_AT(pcLogFile, __func__, __LINE__, priority, colour, reset,   \
                            format __VA_OPT__(, ) __VA_ARGS__);                       \
    } while (false)

// Its arguments, the text of whole messages among them, are only worked out for a line that is shown.
#define HBBTV_LOG_DEBUG(format, ...)                                                        \
    do {                                                                                    \
        if (::HbbTVPlatform::LogShows(kPlatformLogDebug))                                   \
            HBBTV_LOG_RECORD(kPlatformLogDebug, "", "", format __VA_OPT__(, ) __VA_ARGS__); \
    } while (false)
#define HBBTV_LOG_INFO(format, ...) \
    HBBTV_LOG_RECORD(kPlatformLogInfo, "\033[32m", "\033[0m", format __VA_OPT__(, ) __VA_ARGS__)
#define HBBTV_LOG_WARNING(format, ...) \
    HBBTV_LOG_RECORD(kPlatformLogWarning, "\033[33m", "\033[0m", format __VA_OPT__(, ) __VA_ARGS__)
#define HBBTV_LOG_ERROR(format, ...) \
    HBBTV_LOG_RECORD(kPlatformLogError, "\033[31m", "\033[0m", format __VA_OPT__(, ) __VA_ARGS__)

// Function-entry trace.
#define HBBTV_LOG_ENTRY() HBBTV_LOG_INFO("%s()", __func__)

// Records of the object modules carry a second prefix with the file, line and function.
// Usage: HBBTV_LOG_OBJECT(ERROR, "CFooImpl::%s failed", __func__)
#define HBBTV_LOG_OBJECT(level, format, ...)                                               \
    HBBTV_LOG_##level("[%s:%d] %s " format, ::HbbTVPlatform::BaseName(__FILE__), __LINE__, \
                      __func__ __VA_OPT__(, ) __VA_ARGS__)
