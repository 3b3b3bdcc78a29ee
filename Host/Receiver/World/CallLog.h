// The calls that clients made, newest last; at most Limit are kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace Receiver {

struct Call {
    std::string method;              // "Interface.Method"
    std::string arguments;           // as GVariant text
    std::uint64_t milliseconds = 0;  // of the monotonic clock
};

class CallLog {
 public:
    static constexpr std::size_t Limit = 10000;
    static constexpr std::size_t ArgumentsLimit = 4096;

    // Arguments beyond the limit are cut and marked with "...".
    const Call& add(std::string method, std::string arguments, std::uint64_t milliseconds);
    void clear() { m_calls.clear(); }
    [[nodiscard]] const std::deque<Call>& calls() const { return m_calls; }

 private:
    std::deque<Call> m_calls;
};

}  // namespace Receiver
