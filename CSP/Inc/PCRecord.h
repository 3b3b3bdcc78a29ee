// What happens in this process, for whoever draws it: an entry a line, in the file or pipe that the
// environment variable HBBTV_RECORD names. An entry is a JSON array
//
//   [kind, process, serial, start, duration, name, arguments, result, error]
//
// with monotonic times in microseconds. An entry that has begun and is not over has no duration (null); one
// of the same process and serial follows when it is. A file takes 32 MiB, of all processes that ever wrote to
// it.
#pragma once

#include <atomic>
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
        if (HasBegun())
            End();
    }

    // An entry lies within those of its thread that have begun and are not over. The kind has to stand for as
    // long.
    void Begin(const char* kind, std::string name, std::string arguments);
    // Written at once, with those around it: something that may never be over.
    void BeginLong(const char* kind, std::string name, std::string arguments);
    [[nodiscard]] bool HasBegun() const { return m_entry != nullptr; }

    // Of what has begun; of what has not they do nothing. What comes after the first of them takes no time of
    // the entry's.
    void StopClock();
    void SetResult(std::string text);
    void SetError(std::string text);

 private:
    struct Entry;

    void End();

    static inline std::atomic<int> s_file = -1;

    Entry* m_entry = nullptr;  // Nothing is made where nothing is recorded.
};

}  // namespace HbbTVPlatform
