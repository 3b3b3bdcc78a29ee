#include "Host/Shell/View/WebProcessChannel.h"

#include <utility>

#include "Host/Inc/MainLoop.h"
#include "Host/Inc/ShellChannel.h"

namespace Shell {

using namespace Host;

namespace {

constexpr unsigned kEndLimitMs = 1000;

gboolean allowMechanism(GDBusAuthObserver*, const char* mechanism, gpointer) {
    return g_str_equal(mechanism, "EXTERNAL");
}

}  // namespace

WebProcessChannel::WebProcessChannel(Answer answer) : m_answer(std::move(answer)) {
    GErrorSlot error;
    m_introspection.reset(g_dbus_node_info_new_for_xml(ShellChannel::kIntrospection, error.out()));
    const GChars guid(g_dbus_generate_guid());
    const GObjectHandle<GDBusAuthObserver> observer(g_dbus_auth_observer_new());
    g_signal_connect(observer.get(), "allow-mechanism", G_CALLBACK(allowMechanism), nullptr);
    const std::string address = std::string("unix:abstract=hbbtv-shell-") + guid.get();
    m_server.reset(g_dbus_server_new_sync(address.c_str(),
                                          G_DBUS_SERVER_FLAGS_AUTHENTICATION_REQUIRE_SAME_USER, guid.get(),
                                          observer.get(), nullptr, error.out()));
    if (!m_server) {
        g_warning("no connection for web processes: %s", error.message());
        return;
    }
    g_signal_connect(m_server.get(), "new-connection",
                     G_CALLBACK(callback<&WebProcessChannel::onNewConnection>), this);
    g_dbus_server_start(m_server.get());
}

WebProcessChannel::~WebProcessChannel() {
    if (m_server) {
        g_signal_handlers_disconnect_by_data(m_server.get(), this);
        g_dbus_server_stop(m_server.get());
    }
    for (const auto& connection : m_connections)
        g_signal_handlers_disconnect_by_data(connection.get(), this);
}

std::string WebProcessChannel::address() const {
    return m_server ? g_dbus_server_get_client_address(m_server.get()) : "";
}

void WebProcessChannel::waitForEnd() {
    runUntil([this] { return m_connections.empty(); }, kEndLimitMs);
}

GDBusConnection* WebProcessChannel::fileReaderOf(std::uint64_t page) const {
    const auto found = m_fileReaders.find(page);
    return found == m_fileReaders.end() ? nullptr : found->second;
}

gboolean WebProcessChannel::onNewConnection(GDBusServer*, GDBusConnection* connection) {
    static const GDBusInterfaceVTable s_methods = {
        callback<&WebProcessChannel::onMethodCall>, nullptr, nullptr, {}};
    GErrorSlot error;
    if (g_dbus_connection_register_object(
            connection, ShellChannel::kPath,
            g_dbus_node_info_lookup_interface(m_introspection.get(), ShellChannel::kInterface), &s_methods,
            this, nullptr, error.out()) == 0) {
        g_warning("a web process cannot be served: %s", error.message());
        return FALSE;
    }
    g_signal_connect(connection, "closed", G_CALLBACK(callback<&WebProcessChannel::onClosed>), this);
    m_connections.push_back(retain(connection));
    return TRUE;
}

void WebProcessChannel::onClosed(GDBusConnection* connection, gboolean, GError*) {
    g_signal_handlers_disconnect_by_data(connection, this);
    std::erase_if(m_fileReaders, [connection](const auto& reader) { return reader.second == connection; });
    std::erase_if(m_connections, [connection](const auto& known) { return known.get() == connection; });
}

void WebProcessChannel::onMethodCall(GDBusConnection* connection, const char*, const char*, const char*,
                                     const char* method, GVariant* parameters,
                                     GDBusMethodInvocation* invocation) {
    guint64 page = 0;
    if (g_str_equal(method, ShellChannel::kAnnouncePage)) {
        g_variant_get(parameters, "(t)", &page);
        m_fileReaders[page] = connection;
        g_dbus_method_invocation_return_value(invocation, nullptr);
        return;
    }
    const char* name = nullptr;
    gboolean hasBody = FALSE;
    const char* text = nullptr;
    g_variant_get(parameters, "(t&s(b&s))", &page, &name, &hasBody, &text);
    const auto body = hasBody ? std::optional<std::string>(text) : std::nullopt;
    if (g_str_equal(method, ShellChannel::kPostSynchronousMessage)) {
        const auto reply = m_answer(page, name, body);
        g_dbus_method_invocation_return_value(
            invocation, g_variant_new(ShellChannel::kReplyType, static_cast<gboolean>(reply.has_value()),
                                      reply ? reply->c_str() : ""));
        return;
    }
    g_debug("message \"%s\" of page %" G_GUINT64_FORMAT ": %s", name, page, hasBody ? text : "-");
    g_dbus_method_invocation_return_value(invocation, nullptr);
}

}  // namespace Shell
