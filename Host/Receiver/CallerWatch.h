// Who leaves the bus. A page whose process ends, with its view or in a crash, says nothing any more, and what
// it held must not stay.
#pragma once

#include <functional>
#include <string>

#include <gio/gio.h>

namespace Receiver {

class CallerWatch {
 public:
    // `left` hears of every client of the bus that goes, behind the last of its calls.
    CallerWatch(GDBusConnection* connection, std::function<void(const std::string& caller)> left);
    CallerWatch(const CallerWatch&) = delete;
    CallerWatch& operator=(const CallerWatch&) = delete;
    ~CallerWatch() { g_dbus_connection_signal_unsubscribe(m_connection, m_subscription); }

 private:
    GDBusConnection* m_connection;
    std::function<void(const std::string& caller)> m_left;
    unsigned m_subscription;
};

}  // namespace Receiver
