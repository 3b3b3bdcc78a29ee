// The one road of every remote call. A client's operation is one expression:
//
//   return m_service->Call<bool>(__func__, idaebrowser_api_call_current_channel_sync, Out(id), kResult);
//
// The arguments after the generated function stand in the order of the wire. Outputs are read only after
// success; a failure is logged and gives the result's default value (false, 0, empty, null).
#pragma once

#include <source_location>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "IPC/DBUS/Src/DBusArguments.h"
#include "IPC/DBUS/Src/GLibHandles.h"

inline constexpr char kObjectPath[] = "/org/vantrel/hbbtv";

// What the log says about one operation, and the place that says it. Made from __func__.
struct CallSite {
    CallSite(const char* name, std::string text = {}, const char* client = nullptr,  // NOLINT
             std::source_location location = std::source_location::current())
        : operation(name), trace(std::move(text)), failureClient(client), where(location) {}

    const char* operation;
    std::string trace;          // follows the operation's name in the trace line
    const char* failureClient;  // the class that the failure line names, where it is not the service's
    std::source_location where;
};

[[nodiscard]] std::string TraceText(const char* format, ...) __attribute__((format(printf, 1, 2)));

// One client's service.
struct ServiceDescription {
    const char* interface;        // the bus name too
    const char* client;           // the class that the trace lines name
    // The class that the failure lines name. Null: they, and the trace lines, name the operation by its whole
    // signature.
    const char* failureClient;
    const char* creation;         // what the log says that the proxy is made with ...
    const char* creationFailure;  // ... and what it says that failed
    bool logsConnecting = false;
    bool logsProxy = false;
};

namespace dbus_call {

void LogStart(const ServiceDescription& service, const CallSite& site);
void LogCreation(const ServiceDescription& service, const CallSite& site);
void LogCreationFailure(const char* what, const char* message, const CallSite& site);
void LogConnecting(const ServiceDescription& service, const CallSite& site);
void LogDone(const ServiceDescription& service, const CallSite& site, const void* proxy);
void LogCall(const ServiceDescription& service, const CallSite& site);
void LogCallFailure(const ServiceDescription& service, const CallSite& site, const char* message, int code);
[[nodiscard]] GObjectPtr<GDBusConnection> Connect();

template <typename R, typename Proxy, typename... Parameters, typename... Arguments, size_t... I>
R Invoke(std::index_sequence<I...> /*indices*/, Proxy* proxy, GErrorPtr& error,
         gboolean (*function)(Proxy*, Parameters...), const Arguments&... arguments) {
    using Types = std::tuple<Parameters...>;
    [[maybe_unused]] std::tuple<Slot<std::tuple_element_t<I, Types>, Arguments>...> slots{arguments...};
    R result{};
    if (function(proxy, std::get<I>(slots).Pass()..., nullptr, OutPointer(error)))
        (std::get<I>(slots).Commit(result), ...);
    return result;
}

}  // namespace dbus_call

// The bare call, for a client with a log of its own. The error is set when it failed.
template <typename R, typename Proxy, typename... Parameters, typename... Arguments>
R CallSync(Proxy* proxy, GErrorPtr& error, gboolean (*function)(Proxy*, Parameters...),
           const Arguments&... arguments) {
    static_assert(sizeof...(Parameters) == sizeof...(Arguments) + 2, "one argument for each of the wire's");
    return dbus_call::Invoke<R>(std::index_sequence_for<Arguments...>(), proxy, error, function,
                                arguments...);
}

template <typename Proxy>
using ProxyMaker = Proxy* (*)(GDBusConnection*, GDBusProxyFlags, const gchar*, const gchar*, GCancellable*,
                              GError**);

// A proxy for a service that may come, go and come back: it stands for the name. Null only when it could not
// be made, which is logged.
template <typename Proxy>
GObjectPtr<Proxy> NewProxy(GDBusConnection* connection, const char* interface, ProxyMaker<Proxy> make,
                           const char* failure, const CallSite& site) {
    GErrorPtr error;
    GObjectPtr<Proxy> proxy(
        make(connection, G_DBUS_PROXY_FLAGS_NONE, interface, kObjectPath, nullptr, OutPointer(error)));
    if (error)
        dbus_call::LogCreationFailure(failure, error->message, site);
    return proxy;
}

using SignalFunction = void (*)(GDBusProxy* proxy, gchar* sender, gchar* signal, GVariant* parameters,
                                gpointer data);

// One client's proxy and its way of calling. Without a bus or a proxy every call gives its failure value.
template <typename Proxy>
class DBusService {
 public:
    // The description is kept by reference. Signals arrive in the main context that is the thread's default
    // now.
    DBusService(const ServiceDescription& service, ProxyMaker<Proxy> make, SignalFunction onSignal,
                gpointer data, const CallSite& site)
        : m_service(service) {
        dbus_call::LogStart(service, site);
        if (const GObjectPtr<GDBusConnection> connection = dbus_call::Connect()) {
            dbus_call::LogCreation(service, site);
            m_proxy = NewProxy(connection.get(), service.interface, make, service.creationFailure, site);
        }
        if (m_proxy && onSignal != nullptr) {
            dbus_call::LogConnecting(service, site);
            m_handler = g_signal_connect(m_proxy.get(), "g-signal", G_CALLBACK(onSignal), data);
        }
        dbus_call::LogDone(service, site, m_proxy.get());
    }
    // Made by std::make_unique, a bare __func__ would become a place in the standard library.
    DBusService(const ServiceDescription&, ProxyMaker<Proxy>, SignalFunction, gpointer, const char*) = delete;

    ~DBusService() {
        // A delivery that is under way may keep the proxy beyond us.
        if (m_handler != 0)
            g_signal_handler_disconnect(m_proxy.get(), m_handler);
    }
    DBusService(const DBusService&) = delete;
    DBusService& operator=(const DBusService&) = delete;

    template <typename R = void, typename... Parameters, typename... Arguments>
    R Call(const CallSite& site, gboolean (*function)(Proxy*, Parameters...), const Arguments&... arguments) {
        dbus_call::LogCall(m_service, site);
        if (!m_proxy) {
            if (!std::exchange(m_saidAbsent, true))
                dbus_call::LogCallFailure(m_service, site, "no proxy for the service",
                                          G_IO_ERROR_NOT_CONNECTED);
            return R();
        }
        struct Nothing {};
        GErrorPtr error;
        auto result = CallSync<std::conditional_t<std::is_void_v<R>, Nothing, R>>(m_proxy.get(), error,
                                                                                  function, arguments...);
        if (error)
            dbus_call::LogCallFailure(m_service, site, error->message, error->code);
        if constexpr (!std::is_void_v<R>)
            return result;
    }

 private:
    const ServiceDescription& m_service;
    GObjectPtr<Proxy> m_proxy;
    gulong m_handler = 0;
    bool m_saidAbsent = false;
};
