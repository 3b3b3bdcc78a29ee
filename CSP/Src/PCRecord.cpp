#include "CSP/Inc/PCRecord.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace HbbTVPlatform {

namespace {

// Bytes of a text as it is written. A whole line is shorter than what a pipe takes in one piece, so that
// those of several processes do not mix.
constexpr size_t kLongestName = 200;
constexpr size_t kLongestText = 1150;

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

thread_local PCRecord* PCRecord::s_innermost = nullptr;

void PCRecord::Open() {
    const char* path = std::getenv("HBBTV_RECORD");
    if (path == nullptr || *path == '\0' || IsOn())
        return;
    s_file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (!IsOn())
        std::perror(path);
}

void PCRecord::Begin(const char* kind, std::string name, std::string arguments) {
    m_hasBegun = true;
    m_kind = kind;
    m_name = std::move(name);
    m_arguments = std::move(arguments);
    m_around = std::exchange(s_innermost, this);
    m_serial = ++s_lastSerial;
    m_start = Now();
}

void PCRecord::BeginLong(const char* kind, std::string name, std::string arguments) {
    Begin(kind, std::move(name), std::move(arguments));
    Announce();
    m_start = Now();
}

void PCRecord::Announce() {
    if (std::exchange(m_isAnnounced, true))
        return;
    if (m_around != nullptr)
        m_around->Announce();
    Write(false);
}

void PCRecord::StopClock() {
    if (m_end == 0)
        m_end = Now();
}

void PCRecord::End() {
    StopClock();
    s_innermost = m_around;
    Write(true);
}

void PCRecord::Write(bool isOver) const {
    std::string line = "[\"";
    line += m_kind;
    line += "\"," + std::to_string(getpid()) + ',' + std::to_string(m_serial) + ',' +
            std::to_string(m_start) + ',' + (isOver ? std::to_string(m_end - m_start) : "null");
    AppendText(line, m_name, kLongestName);
    AppendText(line, m_arguments, kLongestText);
    AppendText(line, m_result, kLongestText);
    AppendText(line, m_error, kLongestText);
    line += "]\n";
    // Who reads may have gone; the entry is lost then.
    [[maybe_unused]] const ssize_t written = write(s_file, line.data(), line.size());
}

}  // namespace HbbTVPlatform
