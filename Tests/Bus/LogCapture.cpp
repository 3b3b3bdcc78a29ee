#include "Tests/Bus/LogCapture.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>

#include "Platform/Inc/PlatformLog.h"

namespace {

// Never destroyed: clients log while the program exits.
auto& s_mutex = *new std::mutex;
auto& s_records = *new std::vector<LogCapture::Record>;

// "file: function(line) > \033[31mtext\033[0m" without all but the text.
std::string TextOf(std::string_view record) {
    constexpr std::string_view kStart = " > ", kColour = "\033[31m", kReset = "\033[0m";
    record.remove_prefix(record.find(kStart) + kStart.size());
    if (record.ends_with(kReset)) {
        record.remove_suffix(kReset.size());
        record.remove_prefix(kColour.size());
    }
    return std::string(record);
}

}  // namespace

void LogCapture::Clear() {
    const std::lock_guard guard(s_mutex);
    s_records.clear();
}

std::vector<LogCapture::Record> LogCapture::Records() {
    const std::lock_guard guard(s_mutex);
    return s_records;
}

int LogCapture::Count(std::string_view text) {
    const auto records = Records();
    return static_cast<int>(std::ranges::count(records, text, &Record::text));
}

int LogCapture::Errors() {
    const auto records = Records();
    return static_cast<int>(std::ranges::count(records, int{kPlatformLogError}, &Record::priority));
}

extern "C" int __dlog_print(int /*logId*/, int priority, const char* tag, const char* format,
                            ...) {  // NOLINT
    char buffer[4096];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);

    const std::lock_guard guard(s_mutex);
    s_records.push_back({priority, TextOf(buffer), tag, buffer});
    return length;
}
