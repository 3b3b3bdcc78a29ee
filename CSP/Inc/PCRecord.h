// What happens in this process, for whoever draws it: an entry a line, in the file or pipe that the
// environment variable HBBTV_RECORD names. An entry is a JSON array
//
//   [kind, process, serial, start, duration, name, arguments, result, error]
//
// with monotonic times in microseconds. An entry that has begun and is not over has no duration (null); one
// of the same process and serial follows when it is.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace HbbTVPlatform {

class PCRecord {
 public:
    // Looks for the variable. Until then, and without it, nothing is recorded.
    static void Open();
    [[nodiscard]] static bool IsOn() { return s_file.load(std::memory_order_relaxed) >= 0; }

    PCRecord() = default;
    PCRecord(const PCRecord&) = delete;
    PCRecord& operator=(const PCRecord&) = delete;
    // The entry is over.
    ~PCRecord() {
        if (m_hasBegun)
            End();
    }

    // An entry lies within those of its thread that have begun and are not over. The kind has to stand for as
    // long.
    void Begin(const char* kind, std::string name, std::string arguments);
    // Written at once, with those around it: something that may never be over.
    void BeginLong(const char* kind, std::string name, std::string arguments);
    [[nodiscard]] bool HasBegun() const { return m_hasBegun; }
    // What comes later takes no time of the entry's.
    void StopClock();
    void SetResult(std::string text) { m_result = std::move(text); }
    void SetError(std::string text) { m_error = std::move(text); }

 private:
    void Announce();
    void End();
    void Write(bool isOver) const;

    static inline std::atomic<int> s_file = -1;
    static thread_local PCRecord* s_innermost;

    bool m_hasBegun = false;
    bool m_isAnnounced = false;
    const char* m_kind = nullptr;
    uint64_t m_serial = 0;
    int64_t m_start = 0;
    int64_t m_end = 0;
    std::string m_name;
    std::string m_arguments;
    std::string m_result;
    std::string m_error;
    PCRecord* m_around = nullptr;
};

}  // namespace HbbTVPlatform
