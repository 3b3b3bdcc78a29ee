#include "IPC/DBUS/Src/DBusUtils.h"

#include <chrono>
#include <mutex>
#include <utility>

#include "CSP/Inc/PCLog.h"
#include "CSP/Inc/PCThread.h"

namespace {

constexpr int kAttempts = 10;
constexpr std::chrono::milliseconds kPause{1000};

struct Bus {
    std::mutex mutex;
    GObjectPtr<GDBusConnection> connection;
    std::chrono::steady_clock::time_point lastAttempt;
    bool isWaitedFor = true;
};

bool IsOpen(const GObjectPtr<GDBusConnection>& connection) {
    return connection && !g_dbus_connection_is_closed(connection.get());
}

GObjectPtr<GDBusConnection> Another(const GObjectPtr<GDBusConnection>& connection) {
    return GObjectPtr<GDBusConnection>(static_cast<GDBusConnection*>(g_object_ref(connection.get())));
}

GObjectPtr<GDBusConnection> Open(GErrorPtr& error) {
    GObjectPtr<GDBusConnection> shared(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, OutPointer(error)));
    if (!shared || IsOpen(shared))
        return shared;
    // GIO hands out the closed one for as long as anybody in the process holds it.
    const GCharPtr address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, OutPointer(error)));
    if (!address)
        return nullptr;
    return GObjectPtr<GDBusConnection>(g_dbus_connection_new_for_address_sync(
        address.get(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, OutPointer(error)));
}

void on_name_acquired(GDBusConnection* /*connection*/, const gchar* name, gpointer /*data*/) {
    HBBTV_LOG_INFO("Acquired the name %s on the session bus", name);
}

void on_name_lost(GDBusConnection* /*connection*/, const gchar* name, gpointer /*data*/) {
    HBBTV_LOG_WARNING("Lost the name %s on the session bus", name);
}

}  // namespace

GObjectPtr<GDBusConnection> GetDBus() {
    // Never destroyed: clients outlive everything.
    static auto& bus = *new Bus;
    const std::lock_guard guard(bus.mutex);
    if (IsOpen(bus.connection)) {
        HBBTV_LOG_DEBUG("Got GDBusConnection");
        return Another(bus.connection);
    }
    // Whoever starts before the bus waits for it, once. Later there are pages that would wait.
    const int attempts = std::exchange(bus.isWaitedFor, false) ? kAttempts : 1;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto now = std::chrono::steady_clock::now();
        if (attempts == 1 && now - bus.lastAttempt < kPause)
            return nullptr;
        bus.lastAttempt = now;
        GErrorPtr error;
        GObjectPtr<GDBusConnection> connection = Open(error);
        if (connection) {
            HBBTV_LOG_DEBUG("Got GDBusConnection");
            if (bus.connection)
                HBBTV_LOG_INFO("The bus had closed the connection; there is a new one");
            // The process is the browser's: it must not end because a bus does.
            g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
            bus.connection = std::move(connection);
            return Another(bus.connection);
        }
        if (!error)
            break;
        // From then on the calls that fail for it say enough.
        if (attempts == 1)
            return nullptr;
        HBBTV_LOG_ERROR("g_bus_get_sync failed %s", error->message);
        HbbTVPlatform::PCThread::Sleep(kPause.count());
    }
    HBBTV_LOG_ERROR("Failed to get a DBus connection");
    return nullptr;
}

GObjectPtr<GDBusConnection> GetDBusAndName(const char* name) {
    GObjectPtr<GDBusConnection> connection = GetDBus();
    if (connection) {
        g_bus_own_name_on_connection(connection.get(), name, G_BUS_NAME_OWNER_FLAGS_NONE, on_name_acquired,
                                     on_name_lost, nullptr, nullptr);
    }
    return connection;
}
