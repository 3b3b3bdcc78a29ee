// The one road of every remote call. A client's operation is one expression:
//
//   return m_service->Call<bool>(__func__, idaebrowser_api_call_current_channel_sync, Out(id), kResult);
//   m_service->Send(__func__, ijschannel_cache_call_release, id);
//
// The arguments after the generated function stand in the order of the wire. Outputs are read only after
// success; a failure is logged and gives the result's default value (false, 0, empty, null). What is sent is
// the same message in its turn, but nobody waits: the collector's finalisers, and pages that are left, must
// not.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <source_location>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "CSP/Inc/PCRecord.h"
#include "IPC/DBUS/Src/DBusArguments.h"
#include "IPC/DBUS/Src/DBusLink.h"
#include "IPC/DBUS/Src/GLibHandles.h"

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
    const char* interface;  // the bus name too
    const char* client;     // the class that the trace lines name
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
void LogCallFailure(const ServiceDescription& service, const CallSite& site, const GError& error);
[[nodiscard]] GObjectPtr<GDBusConnection> Connect();

// Without a way to the service.
void SetAbsent(GErrorPtr& error);
[[nodiscard]] bool IsAbsent(const GError& error);
// A page can make a text of any length; the bus ends the connection of a process that sends one of 128 MiB.
// False, and an error, for an argument of more than 1 MiB.
[[nodiscard]] bool IsSendable(std::initializer_list<size_t> sizes, GErrorPtr& error);
// One warning for a call of which arguments are cut.
void WarnOfCuts(const char* interface, const char* operation, std::initializer_list<bool> areCut);

// A call in the recording: as it begins, and with its answer or the error. The texts are those of its slots,
// of which the empty ones are none.
class RecordedCall {
 public:
    RecordedCall(const char* kind, const char* interface, const char* operation, const GErrorPtr& error)
        : m_kind(kind), m_interface(interface), m_operation(operation), m_error(error) {}
    RecordedCall(const RecordedCall&) = delete;
    RecordedCall& operator=(const RecordedCall&) = delete;
    ~RecordedCall();

    [[nodiscard]] bool HasBegun() const { return m_record.HasBegun(); }
    void Begin(const DBusLink& link, std::initializer_list<SlotText> slots);
    void WarnOfCuts(std::initializer_list<bool> areCut) const {
        dbus_call::WarnOfCuts(m_interface, m_operation, areCut);
    }
    void SetAnswer(std::initializer_list<SlotText> slots);

 private:
    const char* const m_kind;
    const char* const m_interface;
    const char* const m_operation;
    const GErrorPtr& m_error;
    const GDBusMethodInfo* m_method = nullptr;
    HbbTVPlatform::PCRecord m_record;
};

// A call that nobody waits for, until its answer comes. That may be after the client has ended.
struct Sent {
    const ServiceDescription& service;
    CallSite site;
};
// Null when too many answers are due: a bus refuses more than 128 in its strictest configuration. What is
// sent then gets no answer, but arrives.
[[nodiscard]] Sent* NewSent(const ServiceDescription& service, const CallSite& site);
void OnAnswer(GObject* proxy, GAsyncResult* result, gpointer sent);

// The answer to what `send` sends with the callback and the data it is given. `meanwhile` is done before the
// answer is waited for.
[[nodiscard]] GObjectPtr<GAsyncResult> AnswerTo(
    const std::function<void(GAsyncReadyCallback, gpointer)>& send, const std::function<void()>& meanwhile);

// A generated proxy is a GDBusProxy that implements the interface.
template <typename Proxy>
Proxy* As(const GObjectPtr<GDBusProxy>& proxy) {
    return reinterpret_cast<Proxy*>(proxy.get());
}

// What a generated function that waits, or one of the same form, is called with.
template <typename Function>
struct Form : Form<decltype(std::function(std::declval<Function>()))> {};
template <typename Service, typename... Parameters>
struct Form<std::function<gboolean(Service*, Parameters...)>> {
    using Proxy = Service;
    using Types = std::tuple<Parameters...>;
};

template <typename R, typename Function, typename... Arguments, size_t... I>
R Invoke(std::index_sequence<I...> /*indices*/, RecordedCall& record, DBusLink& link, GErrorPtr& error,
         const Function& function, const Arguments&... arguments) {
    using Types = typename Form<Function>::Types;
    static_assert(std::tuple_size_v<Types> == sizeof...(Arguments) + 2,
                  "one argument for each of the wire's");
    [[maybe_unused]] std::tuple<Slot<std::tuple_element_t<I, Types>, Arguments>...> slots{arguments...};
    R result{};
    if (HbbTVPlatform::PCRecord::IsOn())
        record.Begin(link, {SlotText(std::get<I>(slots))...});
    record.WarnOfCuts({std::get<I>(slots).IsCut()...});
    if (!IsSendable({std::get<I>(slots).Size()...}, error))
        return result;
    for (bool isRepeated = false;; isRepeated = true) {
        const GObjectPtr<GDBusProxy> proxy = link.Reach(true);
        if (!proxy) {
            SetAbsent(error);
            return result;
        }
        if (function(As<typename Form<Function>::Proxy>(proxy), std::get<I>(slots).Pass()..., nullptr,
                     OutPointer(error))) {
            if (record.HasBegun())
                record.SetAnswer({SlotText(std::get<I>(slots))...});
            (std::get<I>(slots).Commit(result), ...);
        }
        if (!link.Learn(error.get()) || isRepeated)
            return result;
    }
}

template <typename Proxy, typename... Parameters, typename... Arguments, size_t... I>
void Post(std::index_sequence<I...> /*indices*/, const ServiceDescription& service, const CallSite& site,
          DBusLink& link, GErrorPtr& error, void (*function)(Proxy*, Parameters...),
          const Arguments&... arguments) {
    using Types = std::tuple<Parameters...>;
    std::tuple<Slot<std::tuple_element_t<I, Types>, Arguments>...> slots{arguments...};
    RecordedCall record("send", service.interface, site.operation, error);
    if (HbbTVPlatform::PCRecord::IsOn())
        record.Begin(link, {SlotText(std::get<I>(slots))...});
    record.WarnOfCuts({std::get<I>(slots).IsCut()...});
    if (!IsSendable({std::get<I>(slots).Size()...}, error))
        return;
    const GObjectPtr<GDBusProxy> proxy = link.Reach(false);
    if (!proxy)
        return SetAbsent(error);
    Sent* const sent = NewSent(service, site);
    function(As<Proxy>(proxy), std::get<I>(slots).Pass()..., nullptr, sent != nullptr ? OnAnswer : nullptr,
             sent);
}

}  // namespace dbus_call

// The bare call, for a client with a log of its own. The error is set when it failed.
template <typename R, typename Function, typename... Arguments>
R CallSync(const char* interface, const char* operation, DBusLink& link, GErrorPtr& error,
           const Function& function, const Arguments&... arguments) {
    dbus_call::RecordedCall record("bus", interface, operation, error);
    return dbus_call::Invoke<R>(std::index_sequence_for<Arguments...>(), record, link, error, function,
                                arguments...);
}

template <typename Proxy>
using GeneratedMaker = Proxy* (*)(GDBusConnection*, GDBusProxyFlags, const gchar*, const gchar*,
                                  GCancellable*, GError**);

// What a link makes its proxies with.
template <typename Proxy>
DBusLink::ProxyMaker MakerOf(const char* interface, GeneratedMaker<Proxy> make) {
    return [=](GDBusConnection* connection, GDBusProxyFlags flags, GError** error) {
        return reinterpret_cast<GDBusProxy*>(make(connection, flags, interface, kObjectPath, nullptr, error));
    };
}

// One client's service and its way of calling. Without a bus or a proxy every call gives its failure value.
template <typename Proxy>
class DBusService {
 public:
    // The description is kept by reference. Signals arrive in the main context that is the thread's default
    // now.
    DBusService(const ServiceDescription& service, GeneratedMaker<Proxy> make, SignalFunction onSignal,
                gpointer data, const CallSite& site)
        : m_service(service), m_link(service.interface, MakerOf(service.interface, make), onSignal, data) {
        dbus_call::LogStart(service, site);
        if (const GObjectPtr<GDBusConnection> connection = dbus_call::Connect()) {
            dbus_call::LogCreation(service, site);
            GErrorPtr error;
            m_link.Attach(connection.get(), error);
            if (error)
                dbus_call::LogCreationFailure(service.creationFailure, error->message, site);
            else
                dbus_call::LogConnecting(service, site);
        }
        dbus_call::LogDone(service, site, m_link.Proxy());
    }
    // Made by std::make_unique, a bare __func__ would become a place in the standard library.
    DBusService(const ServiceDescription&, GeneratedMaker<Proxy>, SignalFunction, gpointer,
                const char*) = delete;

    // Without a result of the wire's: whether it was answered.
    template <typename R = void, typename Function, typename... Arguments>
    std::conditional_t<std::is_void_v<R>, bool, R> Call(const CallSite& site, const Function& function,
                                                        const Arguments&... arguments) {
        dbus_call::LogCall(m_service, site);
        struct Nothing {};
        GErrorPtr error;
        [[maybe_unused]] auto result = CallSync<std::conditional_t<std::is_void_v<R>, Nothing, R>>(
            m_service.interface, site.operation, m_link, error, function, arguments...);
        Report(site, error);
        if constexpr (std::is_void_v<R>)
            return !error;
        else
            return result;
    }

    // With the generated function that does not wait. The outputs are of no interest.
    template <typename... Parameters, typename... Arguments>
    void Send(const CallSite& site, void (*function)(Proxy*, Parameters...), const Arguments&... arguments) {
        static_assert(sizeof...(Parameters) == sizeof...(Arguments) + 3,
                      "one argument for each of the wire's");
        dbus_call::LogCall(m_service, site);
        GErrorPtr error;
        dbus_call::Post(std::index_sequence_for<Arguments...>(), m_service, site, m_link, error, function,
                        arguments...);
        Report(site, error);
    }

    [[nodiscard]] uint64_t Life() const { return m_link.Life(); }
    void OnEnd(std::function<void()> action) { m_link.OnEnd(std::move(action)); }

 private:
    void Report(const CallSite& site, const GErrorPtr& error) {
        // That there is no way to the service is said once.
        const bool isAbsent = error && dbus_call::IsAbsent(*error);
        if (error && !(isAbsent && m_saidAbsent))
            dbus_call::LogCallFailure(m_service, site, *error);
        m_saidAbsent = isAbsent;
    }

    const ServiceDescription& m_service;
    DBusLink m_link;
    bool m_saidAbsent = false;
};
