#include "IPC/DBUS/Src/DBusUtils.h"

#include "CSP/Inc/PCLog.h"
#include "CSP/Inc/PCThread.h"

namespace {

constexpr int kAttempts = 10;
constexpr unsigned kPauseMilliseconds = 1000;

void on_name_acquired(GDBusConnection* /*connection*/, const gchar* name, gpointer /*data*/) {
    HBBTV_LOG_INFO("Acquired the name %s on the session bus", name);
}

void on_name_lost(GDBusConnection* /*connection*/, const gchar* name, gpointer /*data*/) {
    HBBTV_LOG_WARNING("Lost the name %s on the session bus", name);
}

}  // namespace

GObjectPtr<GDBusConnection> GetDBus() {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        GErrorPtr error;
        GObjectPtr<GDBusConnection> connection(
            g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, OutPointer(error)));
        if (connection) {
            HBBTV_LOG_DEBUG("Got GDBusConnection");
            // The process is the browser's: it must not end because a bus does.
            g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
            return connection;
        }
        if (!error)
            break;
        HBBTV_LOG_ERROR("g_bus_get_sync failed %s", error->message);
        HbbTVPlatform::PCThread::Sleep(kPauseMilliseconds);
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
