#include "Host/Receiver/World/CallLog.h"

#include <utility>

namespace Receiver {

const Call& CallLog::add(std::string method, std::string arguments, std::uint64_t milliseconds) {
    if (arguments.size() > ArgumentsLimit) {
        auto end = ArgumentsLimit;
        // Not in the middle of a character: the text goes over the bus, which takes UTF-8 only.
        while (end > 0 && (static_cast<unsigned char>(arguments[end]) & 0xC0) == 0x80)
            --end;
        arguments.resize(end);
        arguments += "...";
    }
    if (m_calls.size() == Limit)
        m_calls.pop_front();
    return m_calls.emplace_back(Call{std::move(method), std::move(arguments), milliseconds});
}

}  // namespace Receiver
