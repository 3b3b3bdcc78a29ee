#include "Host/Receiver/CallerWatch.h"

namespace Receiver {

CallerWatch::CallerWatch(GDBusConnection* connection, std::function<void(const std::string& caller)> left)
    : m_connection(connection), m_left(std::move(left)) {
    const auto changed = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                            GVariant* change, gpointer self) {
        const char* name = nullptr;
        const char* owner = nullptr;
        g_variant_get(change, "(&s&s&s)", &name, nullptr, &owner);
        if (g_dbus_is_unique_name(name) != FALSE && *owner == 0)
            static_cast<CallerWatch*>(self)->m_left(name);
    };
    m_subscription = g_dbus_connection_signal_subscribe(
        connection, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
        "/org/freedesktop/DBus", nullptr, G_DBUS_SIGNAL_FLAGS_NONE, changed, this, nullptr);
}

}  // namespace Receiver
