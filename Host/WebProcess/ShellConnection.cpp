#include "Host/WebProcess/ShellConnection.h"

#include "Host/Inc/ShellChannel.h"

namespace WebProcess {

using namespace Host;

namespace {

// The shell answers from its main loop, which never waits for a web process.
constexpr int kReplyTimeoutMs = 5000;

GVariant* messageOf(std::uint64_t page, const std::string& name, const std::optional<std::string>& body) {
    return g_variant_new(ShellChannel::kMessageType, page, name.c_str(),
                         static_cast<gboolean>(body.has_value()), body ? body->c_str() : "");
}

}  // namespace

ShellConnection::ShellConnection(const char* address) {
    GErrorSlot error;
    m_connection.reset(g_dbus_connection_new_for_address_sync(
        address, G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT, nullptr, nullptr, error.out()));
    if (!m_connection)
        g_warning("no connection to the shell: %s", error.message());
}

GVariantHandle ShellConnection::call(const char* method, GVariant* arguments, const char* replyType,
                                     GErrorSlot& error) {
    return GVariantHandle(g_dbus_connection_call_sync(
        m_connection.get(), nullptr, ShellChannel::kPath, ShellChannel::kInterface, method, arguments,
        G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE, kReplyTimeoutMs, nullptr, error.out()));
}

void ShellConnection::post(std::uint64_t page, const std::string& name,
                           const std::optional<std::string>& body) {
    if (!m_connection)
        return;
    g_dbus_connection_call(m_connection.get(), nullptr, ShellChannel::kPath, ShellChannel::kInterface,
                           ShellChannel::kPostMessage, messageOf(page, name, body), nullptr,
                           G_DBUS_CALL_FLAGS_NONE, kReplyTimeoutMs, nullptr, nullptr, nullptr);
}

std::optional<std::string> ShellConnection::postSynchronously(std::uint64_t page, const std::string& name,
                                                              const std::optional<std::string>& body) {
    if (!m_connection)
        return std::nullopt;
    GErrorSlot error;
    const auto reply = call(ShellChannel::kPostSynchronousMessage, messageOf(page, name, body),
                            ShellChannel::kReplyType, error);
    if (!reply) {
        g_warning("no reply to \"%s\": %s", name.c_str(), error.message());
        return std::nullopt;
    }
    gboolean present = FALSE;
    const char* text = nullptr;
    g_variant_get(reply.get(), "((b&s))", &present, &text);
    return present ? std::optional<std::string>(text) : std::nullopt;
}

void ShellConnection::announcePage(std::uint64_t page) {
    if (!m_connection)
        return;
    GErrorSlot error;
    const auto reply = call(ShellChannel::kAnnouncePage, g_variant_new("(t)", page), "()", error);
    if (!reply)
        g_warning("the page reads no carousel: %s", error.message());
}

}  // namespace WebProcess
