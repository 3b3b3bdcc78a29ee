#include "CSP/Inc/PCRecord.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "CSP/Inc/PCLog.h"

namespace HbbTVPlatform {

namespace {

// Bytes of a text as it is written. A whole line is shorter than what a pipe takes in one piece, so that
// those of several processes do not mix.
constexpr size_t kLongestName = 200;
constexpr size_t kLongestText = 1150;

constexpr off_t kLongestFile = 32 * 1024 * 1024;

std::atomic<uint64_t> s_lastSerial = 0;

int64_t Now() {
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

void AppendText(std::string& line, std::string_view text, size_t most) {
    line += ",\"";
    const size_t start = line.size();
    size_t whole = start;  // Where the last character ends.
    bool isCut = false;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0) != 0x80)
            whole = line.size();
        if (byte < 0x20) {
            char escaped[7];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", byte);
            line += escaped;
        } else {
            if (c == '"' || c == '\\')
                line += '\\';
            line += c;
        }
        if (line.size() - start > most) {
            isCut = true;
            break;
        }
    }
    if (isCut) {
        line.resize(whole);
        line += "\u2026";
    }
    line += '"';
}

}  // namespace

struct PCRecord::Entry {
    void Announce();
    void Write(bool isOver) const;

    const char* kind;
    std::string name;
    std::string arguments;
    Entry* around;
    uint64_t serial = ++s_lastSerial;
    int64_t start = Now();
    int64_t end = 0;
    std::string result = {};
    std::string error = {};
    bool isAnnounced = false;

    static thread_local Entry* s_innermost;
};

thread_local PCRecord::Entry* PCRecord::Entry::s_innermost = nullptr;

void PCRecord::Open() {
    const char* path = std::getenv("HBBTV_RECORD");
    if (path == nullptr || *path == '\0' || IsOn())
        return;
    s_file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (!IsOn())
        std::perror(path);
}

void PCRecord::Begin(const char* kind, std::string name, std::string arguments) {
    m_entry = new Entry{kind, std::move(name), std::move(arguments), Entry::s_innermost};
    Entry::s_innermost = m_entry;
}

void PCRecord::BeginLong(const char* kind, std::string name, std::string arguments) {
    Begin(kind, std::move(name), std::move(arguments));
    m_entry->Announce();
    m_entry->start = Now();
}

void PCRecord::StopClock() {
    if (HasBegun() && m_entry->end == 0)
        m_entry->end = Now();
}

void PCRecord::SetResult(std::string text) {
    StopClock();
    if (HasBegun())
        m_entry->result = std::move(text);
}

void PCRecord::SetError(std::string text) {
    StopClock();
    if (HasBegun())
        m_entry->error = std::move(text);
}

void PCRecord::End() {
    StopClock();
    const std::unique_ptr<Entry> entry(m_entry);
    Entry::s_innermost = entry->around;
    entry->Write(true);
}

void PCRecord::Entry::Announce() {
    if (std::exchange(isAnnounced, true))
        return;
    if (around != nullptr)
        around->Announce();
    Write(false);
}

void PCRecord::Entry::Write(bool isOver) const {
    std::string line = "[\"";
    line += kind;
    line += "\"," + std::to_string(getpid()) + ',' + std::to_string(serial) + ',' + std::to_string(start) +
            ',' + (isOver ? std::to_string(end - start) : "null");
    AppendText(line, name, kLongestName);
    AppendText(line, arguments, kLongestText);
    AppendText(line, result, kLongestText);
    AppendText(line, error, kLongestText);
    line += "]\n";
    // Of a pipe there is no position.
    if (lseek(s_file, 0, SEEK_END) + static_cast<off_t>(line.size()) > kLongestFile) {
        s_file = -1;
        HBBTV_LOG_WARNING("HBBTV_RECORD: the file is full, nothing more is recorded");
        return;
    }
    // Who reads may have gone; the entry is lost then.
    [[maybe_unused]] const ssize_t written = write(s_file, line.data(), line.size());
}

}  // namespace HbbTVPlatform
