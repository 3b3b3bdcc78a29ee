// What has been recorded, of which the newest is kept, and the page that draws it. Entries are lines of JSON,
// as CSP/Inc/PCRecord.h describes them; whoever wrote them is not trusted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace Shell {

// Of something that has no duration, at a monotonic time in microseconds.
[[nodiscard]] std::string entryOf(const char* kind, std::int64_t time, const std::string& name,
                                  const std::string& text = {});

class Recording {
 public:
    explicit Recording(std::size_t mostEntries = 100'000, std::size_t mostBytes = 32 * 1024 * 1024)
        : m_mostEntries(mostEntries), m_mostBytes(mostBytes) {}

    void add(std::string line);

    // One page, which needs nothing else. The title is what was recorded.
    [[nodiscard]] std::string page(const std::string& title) const;

 private:
    std::size_t m_mostEntries;
    std::size_t m_mostBytes;
    std::size_t m_bytes = 0;
    std::size_t m_gone = 0;
    std::deque<std::string> m_lines;
};

}  // namespace Shell
