// Stand-in for the platform's log service: standard error, from the priority that HBBTV_LOG_LEVEL names.

#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Platform/Inc/PlatformLog.h"

namespace {

// The lowest priority that is shown. Warnings and errors, unless HBBTV_LOG_LEVEL says otherwise.
int ThresholdFromEnvironment() {
    const char* level = std::getenv("HBBTV_LOG_LEVEL");
    if (level == nullptr || *level == '\0')
        return kPlatformLogWarning;
    static constexpr struct {
        const char* name;
        int priority;
    } kLevels[] = {
        {"debug", kPlatformLogDebug}, {"info", kPlatformLogInfo},      {"warning", kPlatformLogWarning},
        {"error", kPlatformLogError}, {"none", kPlatformLogError + 1},
    };
    for (const auto& known : kLevels) {
        if (std::strcmp(level, known.name) == 0)
            return known.priority;
    }
    std::fprintf(stderr,
                 "HBBTV_LOG_LEVEL: \"%s\" is none of debug, info, warning, error, none; warning is used\n",
                 level);
    return kPlatformLogWarning;
}

int Threshold() {
    static const int threshold = ThresholdFromEnvironment();
    return threshold;
}

}  // namespace

extern "C" bool PlatformLogShows(int priority) {
    return priority >= Threshold();
}

extern "C" int __dlog_print(int /*logId*/, int priority, const char* tag, const char* format,
                            ...) {  // NOLINT
    if (!PlatformLogShows(priority))
        return 0;

    va_list arguments;
    va_start(arguments, format);
    char buffer[1024];
    va_list again;
    va_copy(again, arguments);
    int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    std::string line = std::string(tag) + ": ";
    if (length >= 0 && static_cast<size_t>(length) < sizeof buffer) {
        line.append(buffer, static_cast<size_t>(length));
    } else if (length > 0) {
        std::string text(static_cast<size_t>(length) + 1, '\0');
        std::vsnprintf(text.data(), text.size(), format, again);
        text.pop_back();
        line += text;
    }
    va_end(again);
    line += '\n';
    // One write per record, so that records of the browser's processes do not mix within a line.
    return write(STDERR_FILENO, line.data(), line.size()) < 0 ? -1 : length;
}
