#include "Host/Shell/Processes/ReceiverControl.h"

#include <cstdlib>
#include <utility>

#include "Host/Inc/ReceiverNames.h"

namespace Shell {

using namespace Host;
using namespace Receiver::Names;

namespace {

constexpr int kCallLimitMs = 2000;

}  // namespace

std::string jsonText(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            json += '\\';
        if (static_cast<unsigned char>(c) >= ' ')
            json += c;
    }
    return json + "\"";
}

ReceiverControl::ReceiverControl(GDBusConnection* bus, ReceiverEvents& events)
    : m_bus(retain(bus)), m_events(events) {
    if (!m_bus)
        return;
    m_present = isNameOwned(bus, Control);
    m_subscription = g_dbus_connection_signal_subscribe(bus, Control, Control, nullptr, ControlPath, nullptr,
                                                        G_DBUS_SIGNAL_FLAGS_NONE,
                                                        callback<&ReceiverControl::onSignal>, this, nullptr);
    m_nameWatch = g_bus_watch_name_on_connection(bus, Control, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                 callback<&ReceiverControl::onAppeared>,
                                                 callback<&ReceiverControl::onVanished>, this, nullptr);
}

ReceiverControl::~ReceiverControl() {
    if (!m_bus)
        return;
    g_bus_unwatch_name(m_nameWatch);
    g_dbus_connection_signal_unsubscribe(m_bus.get(), m_subscription);
}

GVariantHandle ReceiverControl::call(const char* method, GVariant* parameters, const char* replyType) {
    const GVariantHandle sunk(g_variant_ref_sink(parameters));
    if (!m_present)
        return nullptr;
    GErrorSlot error;
    GVariantHandle reply(g_dbus_connection_call_sync(
        m_bus.get(), Control, ControlPath, Control, method, sunk.get(), G_VARIANT_TYPE(replyType),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, kCallLimitMs, nullptr, error.out()));
    if (!reply)
        g_warning("the receiver refused %s: %s", method, error.message());
    return reply;
}

void ReceiverControl::send(const char* method, GVariant* parameters) {
    const GVariantHandle sunk(g_variant_ref_sink(parameters));
    if (m_present)
        g_dbus_connection_call(m_bus.get(), Control, ControlPath, Control, method, sunk.get(), nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, kCallLimitMs, nullptr, nullptr, nullptr);
}

void ReceiverControl::registerView(std::int32_t view, const std::string& url) {
    (void)call("RegisterView", g_variant_new("(is)", view, url.c_str()), "()");
}

void ReceiverControl::changeUrl(std::int32_t view, const std::string& url) {
    send("RegisterView", g_variant_new("(is)", view, url.c_str()));
}

void ReceiverControl::unregisterView(std::int32_t view) {
    send("UnregisterView", g_variant_new("(i)", view));
}

void ReceiverControl::applicationFailed(std::int32_t view) {
    send("ApplicationFailed", g_variant_new("(i)", view));
}

std::optional<std::uint32_t> ReceiverControl::keyMask() {
    const std::string json = world("/keys/mask");
    if (json.empty())
        return std::nullopt;
    return static_cast<std::uint32_t>(std::strtoul(json.c_str(), nullptr, 10));
}

std::string ReceiverControl::world(const char* pointer) {
    const GVariantHandle reply = call("GetWorld", g_variant_new("(s)", pointer), "(s)");
    if (!reply)
        return {};
    const char* json = nullptr;
    g_variant_get(reply.get(), "(&s)", &json);
    return json;
}

void ReceiverControl::setWorld(const char* pointer, const std::string& json) {
    (void)call("SetWorld", g_variant_new("(ss)", pointer, json.c_str()), "()");
}

void ReceiverControl::setUserAgent(const std::string& userAgent) {
    setWorld("/media/user_agent", jsonText(userAgent));
}

void ReceiverControl::onAppeared(GDBusConnection*, const char*, const char*) {
    // The first notice of a receiver that was there from the start is no news.
    if (!std::exchange(m_present, true))
        m_events.receiverAppeared();
}

void ReceiverControl::onVanished(GDBusConnection*, const char*) {
    if (std::exchange(m_present, false))
        m_events.receiverVanished();
}

void ReceiverControl::onSignal(GDBusConnection*, const char*, const char*, const char*, const char* signal,
                               GVariant* parameters) {
    const auto is = [signal, parameters](const char* name, const char* type) {
        return g_str_equal(signal, name) && g_variant_is_of_type(parameters, G_VARIANT_TYPE(type));
    };
    gint32 view = 0;
    guint32 number = 0;
    if (is("ApplicationStarted", "(is)")) {
        const char* url = nullptr;
        g_variant_get(parameters, "(i&s)", &view, &url);
        m_events.applicationStarted(view, url);
    } else if (is("ApplicationDestroyed", "(i)")) {
        g_variant_get(parameters, "(i)", &view);
        m_events.applicationDestroyed(view);
    } else if (is("ApplicationVisibilityChanged", "(ib)")) {
        gboolean visible = FALSE;
        g_variant_get(parameters, "(ib)", &view, &visible);
        m_events.applicationVisibilityChanged(view, visible);
    } else if (is("KeyMaskChanged", "(u)")) {
        g_variant_get(parameters, "(u)", &number);
        m_events.keyMaskChanged(number);
    } else if (is("KeyPressed", "(u)")) {
        g_variant_get(parameters, "(u)", &number);
        m_events.keyPressed(number);
    }
}

}  // namespace Shell
