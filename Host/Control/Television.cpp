#include "Host/Control/Television.h"

#include <utility>

#include "Host/Control/Failure.h"
#include "Host/Control/RunningShells.h"
#include "Host/Inc/ReceiverNames.h"

namespace Control {

using namespace Host;
using namespace Receiver;

namespace {

GObjectHandle<GDBusConnection> connectTo(const std::string& address) {
    GErrorSlot error;
    constexpr auto kFlags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GObjectHandle<GDBusConnection> bus(
        g_dbus_connection_new_for_address_sync(address.c_str(), kFlags, nullptr, nullptr, error.out()));
    if (!bus)
        throw Failure("cannot connect to the bus " + address + ": " + error.message());
    return bus;
}

bool hasReceiver(GDBusConnection* bus) {
    return isNameOwned(bus, Names::Control);
}

std::string list(const std::map<std::string, std::vector<std::string>>& shells) {
    std::string text;
    for (const auto& [address, processes] : shells)
        text += "\n  --bus " + address + "    (process " + joined(processes) + ")";
    return text;
}

GVariantHandle callSync(GDBusConnection* bus, const char* name, const char* path, const char* interface,
                        const char* method, GVariant* arguments) {
    GError* problem = nullptr;
    GVariantHandle reply(g_dbus_connection_call_sync(bus, name, path, interface, method, arguments, nullptr,
                                                     G_DBUS_CALL_FLAGS_NONE, G_MAXINT, nullptr, &problem));
    const GErrorHandle error(problem);
    if (reply)
        return reply;
    g_dbus_error_strip_remote_error(error.get());
    throw Failure(error->message);
}

}  // namespace

Television Television::find(const std::optional<std::string>& address) {
    if (address) {
        auto bus = connectTo(*address);
        if (!hasReceiver(bus.get()))
            throw Failure("there is no receiver on the bus " + *address);
        return Television(std::move(bus));
    }
    const auto shells = runningShells();
    if (shells.size() > 1)
        throw Failure("several shells run; say which one:" + list(shells));
    if (!shells.empty()) {
        auto bus = connectTo(shells.begin()->first);
        if (!hasReceiver(bus.get()))
            throw Failure("the shell that runs (process " + joined(shells.begin()->second) +
                          ") has no receiver");
        return Television(std::move(bus));
    }
    GObjectHandle<GDBusConnection> session(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!session || !hasReceiver(session.get()))
        throw Failure("no hbbtv-shell runs, and there is no receiver on the session's bus");
    g_dbus_connection_set_exit_on_close(session.get(), FALSE);
    return Television(std::move(session));
}

GVariantHandle Television::control(const char* method, GVariant* arguments) const {
    return callSync(m_bus.get(), Names::Control, Names::ControlPath, Names::Control, method, arguments);
}

GVariantHandle Television::call(const Member& method, GVariant* arguments) const {
    return callSync(m_bus.get(), method.interface.c_str(), method.path.c_str(), method.interface.c_str(),
                    method.name.c_str(), arguments);
}

Introspection Television::introspect() const {
    Introspection all;
    for (const char* path : {Names::ObjectPath, Names::ControlPath}) {
        const auto reply = callSync(m_bus.get(), Names::Control, path, "org.freedesktop.DBus.Introspectable",
                                    "Introspect", nullptr);
        const char* xml = nullptr;
        g_variant_get(reply.get(), "(&s)", &xml);
        all.add(path, xml);
    }
    return all;
}

void Television::followCalls(const std::function<void(const char*, const char*)>& tell) const {
    const GMainLoopHandle loop(g_main_loop_new(nullptr, FALSE));
    const auto recorded = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                             GVariant* parameters, gpointer user) {
        const char* method = nullptr;
        const char* arguments = nullptr;
        g_variant_get(parameters, "(&s&s)", &method, &arguments);
        (*static_cast<const std::function<void(const char*, const char*)>*>(user))(method, arguments);
    };
    g_dbus_connection_signal_subscribe(m_bus.get(), Names::Control, Names::Control, "CallRecorded",
                                       Names::ControlPath, nullptr, G_DBUS_SIGNAL_FLAGS_NONE, recorded,
                                       const_cast<std::function<void(const char*, const char*)>*>(&tell),
                                       nullptr);
    const auto vanished = [](GDBusConnection*, const char*, gpointer user) {
        g_main_loop_quit(static_cast<GMainLoop*>(user));
    };
    const unsigned watch = g_bus_watch_name_on_connection(
        m_bus.get(), Names::Control, G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, vanished, loop.get(), nullptr);
    g_main_loop_run(loop.get());
    g_bus_unwatch_name(watch);
}

}  // namespace Control
