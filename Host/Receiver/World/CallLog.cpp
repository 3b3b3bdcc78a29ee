#include "Host/Receiver/World/CallLog.h"

#include <utility>

#include <glib.h>

namespace Receiver {

const Call& CallLog::add(std::string method, std::string arguments, std::uint64_t milliseconds) {
    if (arguments.size() > ArgumentsLimit) {
        // Not in the middle of a character: the text goes over the bus, which takes UTF-8 only.
        const char* const text = arguments.c_str();
        arguments.resize(
            static_cast<std::size_t>(g_utf8_find_prev_char(text, text + ArgumentsLimit + 1) - text));
        arguments += "...";
    }
    if (m_calls.size() == Limit)
        m_calls.pop_front();
    return m_calls.emplace_back(Call{std::move(method), std::move(arguments), milliseconds});
}

}  // namespace Receiver
