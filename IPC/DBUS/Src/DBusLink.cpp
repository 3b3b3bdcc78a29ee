#include "IPC/DBUS/Src/DBusLink.h"

#include <string_view>
#include <utility>

#include "CSP/Inc/PCLog.h"
#include "CSP/Inc/PCRecord.h"
#include "IPC/DBUS/Src/DBusUtils.h"
#include "IPC/DBUS/Src/Patience.h"

namespace {

// No interface has properties. To load them, a proxy would wait for a service that may be silent. Signals are
// the link's: a proxy only complains on standard error about one of the wrong types.
constexpr auto kFlags = static_cast<GDBusProxyFlags>(G_DBUS_PROXY_FLAGS_DO_NOT_LOAD_PROPERTIES |
                                                     G_DBUS_PROXY_FLAGS_DO_NOT_CONNECT_SIGNALS);

bool IsNobody(const GError* error) {
    return g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
           g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER);
}

// Why the signal is refused; empty when it is not.
std::string FaultOf(GDBusProxy* proxy, const gchar* signal, GVariant* parameters) {
    const GDBusSignalInfo* const info =
        g_dbus_interface_info_lookup_signal(g_dbus_proxy_get_interface_info(proxy), signal);
    std::string expected = "(";
    for (GDBusArgInfo* const* each = info != nullptr ? info->args : nullptr;
         each != nullptr && *each != nullptr; ++each)
        expected += (*each)->signature;
    expected += ")";
    const std::string actual = g_variant_get_type_string(parameters);
    if (info != nullptr && actual != expected)
        return actual + " is not " + expected;
    for (gsize i = 0; i < g_variant_n_children(parameters); ++i) {
        const GVariantPtr child(g_variant_get_child_value(parameters, i));
        if (g_variant_is_of_type(child.get(), G_VARIANT_TYPE_STRING) &&
            g_variant_get_size(child.get()) - 1 > kLongestText)
            return "a text of " + std::to_string(g_variant_get_size(child.get()) - 1) + " bytes";
    }
    return {};
}

std::string RecordedText(GDBusProxy* proxy, const gchar* signal, GVariant* parameters) {
    const GDBusSignalInfo* const info =
        g_dbus_interface_info_lookup_signal(g_dbus_proxy_get_interface_info(proxy), signal);
    std::vector<std::string> texts;
    for (gsize i = 0; i < g_variant_n_children(parameters); ++i) {
        const GVariantPtr child(g_variant_get_child_value(parameters, i));
        texts.push_back(TextOf(child.get(), false));
    }
    return Named(info != nullptr ? info->args : nullptr, texts);
}

GObjectPtr<GDBusProxy> Another(GDBusProxy* proxy) {
    return GObjectPtr<GDBusProxy>(static_cast<GDBusProxy*>(g_object_ref(proxy)));
}

}  // namespace

std::string TextOf(GVariant* parameters, bool hasTypes) {
    constexpr gsize kMost = 64 * 1024;
    if (g_variant_get_size(parameters) > kMost)
        return std::to_string(g_variant_get_size(parameters)) + " bytes";
    return GCharPtr(g_variant_print(parameters, hasTypes ? TRUE : FALSE)).get();
}

std::string Named(GDBusArgInfo* const* arguments, const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += all.empty() ? "" : ", ";
        const GDBusArgInfo* const argument = arguments != nullptr ? *arguments : nullptr;
        if (argument == nullptr) {
            all += text;
            continue;
        }
        ++arguments;
        // The generated code has one type for truth and numbers.
        const bool isTruth = std::string_view(argument->signature) == "b";
        all += std::string(argument->name) + '=' +
               (isTruth && text == "0"   ? "false"
                : isTruth && text == "1" ? "true"
                                         : text);
    }
    return all;
}

DBusLink::DBusLink(const char* service, ProxyMaker make, SignalFunction onSignal, gpointer data)
    : m_service(service),
      m_make(std::move(make)),
      m_onSignal(onSignal),
      m_data(data),
      m_context(g_main_context_ref_thread_default()) {}

DBusLink::~DBusLink() {
    Detach();
    g_main_context_unref(m_context);
}

void DBusLink::Attach(GDBusConnection* connection, GErrorPtr& error) {
    // First, because nobody waits for it: once the proxy has its answer, the bus knows what we listen to.
    const guint subscription =
        m_onSignal == nullptr
            ? 0
            : g_dbus_connection_signal_subscribe(connection, m_service, m_service, nullptr, kObjectPath,
                                                 nullptr, G_DBUS_SIGNAL_FLAGS_NONE, OnSignal, this, nullptr);
    m_proxy.reset(m_make(connection, kFlags, OutPointer(error)));
    if (!m_proxy) {
        if (subscription != 0)
            g_dbus_connection_signal_unsubscribe(connection, subscription);
        return;
    }
    m_subscription = subscription;
    m_ownerHandler =
        g_signal_connect(m_proxy.get(), "notify::g-name-owner", G_CALLBACK(OnOwnerNotified), this);
    const GCharPtr owner(g_dbus_proxy_get_name_owner(m_proxy.get()));
    SetOwner(owner.get());
}

void DBusLink::Detach() {
    if (const guint id = std::exchange(m_subscription, 0))
        g_dbus_connection_signal_unsubscribe(g_dbus_proxy_get_connection(m_proxy.get()), id);
    if (const gulong id = std::exchange(m_ownerHandler, 0))
        g_signal_handler_disconnect(m_proxy.get(), id);
    m_ahead.reset();
    m_proxy.reset();
}

const GDBusMethodInfo* DBusLink::MethodOf(const char* operation) const {
    const std::lock_guard guard(m_mutex);
    return m_proxy ? g_dbus_interface_info_lookup_method(g_dbus_proxy_get_interface_info(m_proxy.get()),
                                                         operation)
                   : nullptr;
}

bool DBusLink::IsConnected() const {
    return m_proxy && !g_dbus_connection_is_closed(g_dbus_proxy_get_connection(m_proxy.get()));
}

void DBusLink::Reconnect() {
    const GObjectPtr<GDBusConnection> connection = GetDBus();
    if (!connection)
        return;
    Detach();
    SetOwner(nullptr);
    GErrorPtr error;
    g_main_context_push_thread_default(m_context);
    Attach(connection.get(), error);
    g_main_context_pop_thread_default(m_context);
    if (error)
        HBBTV_LOG_ERROR("%s: no proxy: %s", m_service, error->message);
}

GObjectPtr<GDBusProxy> DBusLink::Reach(bool isWaitedFor) {
    const std::lock_guard guard(m_mutex);
    if (!IsConnected()) {
        if (g_main_context_acquire(m_context) != FALSE) {
            Reconnect();
            g_main_context_release(m_context);
        } else {
            // The signals' thread has to do it; a later call finds it done. Such services last as long as the
            // process.
            g_main_context_invoke(
                m_context,
                [](gpointer self) -> gboolean {
                    auto* const link = static_cast<DBusLink*>(self);
                    const std::lock_guard again(link->m_mutex);
                    if (!link->IsConnected())
                        link->Reconnect();
                    return G_SOURCE_REMOVE;
                },
                this);
        }
        if (!IsConnected())
            return nullptr;
    }
    GObjectPtr<GDBusProxy> proxy = Another(m_ahead ? m_ahead.get() : m_proxy.get());
    const Patience& patience = Patience::Instance();
    g_dbus_proxy_set_default_timeout(proxy.get(), isWaitedFor ? patience.Now() : patience.Full());
    return proxy;
}

bool DBusLink::Learn(const GError* error) {
    if (IsAnswer(error))
        Patience::Instance().Answered();
    else if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
        Patience::Instance().TimedOut(m_service);
    const std::lock_guard guard(m_mutex);
    // Somebody answered who was not known, or he who was known is gone.
    const bool isBehind = m_owner.empty() ? IsAnswer(error) : IsNobody(error);
    if (!isBehind || !IsConnected())
        return false;
    AskForOwner();
    return IsNobody(error) && !m_owner.empty();
}

void DBusLink::AskForOwner() {
    GErrorPtr error;
    m_ahead.reset(m_make(g_dbus_proxy_get_connection(m_proxy.get()), kFlags, OutPointer(error)));
    if (error)
        HBBTV_LOG_ERROR("%s: no proxy: %s", m_service, error->message);
    const GCharPtr owner(m_ahead ? g_dbus_proxy_get_name_owner(m_ahead.get()) : nullptr);
    SetOwner(owner.get());
}

void DBusLink::OnSignal(GDBusConnection* /*connection*/, const gchar* /*sender*/, const gchar* /*path*/,
                        const gchar* /*interface*/, const gchar* signal, GVariant* parameters,
                        gpointer self) {
    auto& link = *static_cast<DBusLink*>(self);
    HbbTVPlatform::PCRecord record;
    if (HbbTVPlatform::PCRecord::IsOn())
        record.Begin("signal", std::string(link.m_service) + '.' + signal,
                     RecordedText(link.m_proxy.get(), signal, parameters));
    const std::string fault = FaultOf(link.m_proxy.get(), signal, parameters);
    if (fault.empty())
        return link.m_onSignal(signal, parameters, link.m_data);
    HBBTV_LOG_ERROR("%s.%s refused: %s", link.m_service, signal, fault.c_str());
    record.SetError(fault);
}

void DBusLink::OnOwnerNotified(GDBusProxy* proxy, GParamSpec* /*property*/, gpointer self) {
    auto& link = *static_cast<DBusLink*>(self);
    const std::lock_guard guard(link.m_mutex);
    const GCharPtr owner(g_dbus_proxy_get_name_owner(proxy));
    // While it catches up it tells what has been.
    if (link.m_ahead && link.m_owner != (owner ? owner.get() : ""))
        return;
    link.m_ahead.reset();
    link.SetOwner(owner.get());
}

void DBusLink::SetOwner(const char* owner) {
    const std::string before = std::exchange(m_owner, owner != nullptr ? owner : "");
    if (before.empty() || before == m_owner)
        return;
    ++m_life;
    Patience::Instance().OwnerChanged(m_service);
    if (m_onEnd)
        m_onEnd();
}

uint64_t DBusLink::Life() const {
    const std::lock_guard guard(m_mutex);
    return m_life;
}

bool DBusLink::IsAnswer(const GError* error) {
    if (error == nullptr)
        return true;
    // These are the bus's own.
    return g_dbus_error_is_remote_error(error) && !IsNobody(error) &&
           !g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) &&
           !g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_LIMITS_EXCEEDED);
}
