#include "IPC/DBUS/Src/DAEBrowserSignals.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "API/Src/IPRResponse.h"
#include "API/Src/SDrmErrorParams.h"
#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/ByteArray.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "IPC/DBUS/Src/DBusLink.h"

namespace {

void OnPluginEvent(CDAEBrowserAPIWK& client, GVariant* parameters) {
    gint event = 0;
    guint plugin = 0;
    g_variant_get(parameters, "(iu)", &event, &plugin);
    client.SendEventToPlugins(event_t::Plain(event, plugin));
}

void OnPluginEventFloat(CDAEBrowserAPIWK& client, GVariant* parameters) {
    gint event = 0;
    guint plugin = 0;
    gdouble value = 0;
    g_variant_get(parameters, "(iud)", &event, &plugin, &value);
    client.SendEventToPlugins(event_t::WithFloat(event, plugin, static_cast<float>(value)));
}

void OnPluginEventUnsigned(CDAEBrowserAPIWK& client, GVariant* parameters) {
    gint event = 0;
    guint plugin = 0;
    guint value = 0;
    g_variant_get(parameters, "(iuu)", &event, &plugin, &value);
    client.SendEventToPlugins(event_t::WithUnsigned(event, plugin, value));
}

void OnPluginEventSigned(CDAEBrowserAPIWK& client, GVariant* parameters) {
    gint event = 0;
    guint plugin = 0;
    gint value = 0;
    g_variant_get(parameters, "(iui)", &event, &plugin, &value);
    client.SendEventToPlugins(event_t::WithSigned(event, plugin, value));
}

void OnPluginEventData(CDAEBrowserAPIWK& client, GVariant* parameters) {
    gint event = 0;
    guint plugin = 0;
    gint first = 0;
    gint second = 0;
    g_variant_get(parameters, "(iuii)", &event, &plugin, &first, &second);
    client.SendEventToPlugins(event_t::WithData(event, plugin, first, second));
}

// The signal carries (iuuss). That it is unpacked as another type is the platform's behaviour and is kept:
// GLib warns and writes nothing, so the event is one of code 0 with empty parameters, which every object
// ignores.
void OnPluginEventDrmError(CDAEBrowserAPIWK& client, GVariant* parameters) {
    gint event = 0;
    guint plugin = 0;
    gint state = 0;
    gint unused = 0;
    g_variant_get(parameters, "(iuii)", &event, &plugin, &state, &unused);
    SDrmErrorParams params;
    params.errorState = static_cast<uint32_t>(state);
    client.SendEventToPlugins(event_t::WithRecord(event, plugin, &params));
}

constexpr size_t kMostShown = 4096;
constexpr char kHexDigits[] = "0123456789ABCDEF";

void OnSASMessage(CDAEBrowserAPIWK& client, GVariant* parameters) {
    const GVariantPtr data(g_variant_get_child_value(parameters, 0));
    const std::span<const uint8_t> bytes = BytesOf(data.get());
    std::string digits;
    for (const uint8_t byte : bytes.first(std::min(bytes.size(), kMostShown))) {
        if (byte >= 0x10)
            digits += kHexDigits[byte >> 4];
        digits += kHexDigits[byte & 0x0F];
        digits += ' ';
    }
    HBBTV_LOG_DEBUG("SASMessage bytes %s", g_variant_get_type_string(data.get()));
    HBBTV_LOG_DEBUG("%s", digits.c_str());
    client.SendSASDataToPlugins(bytes.data(), bytes.size());
}

void OnStreamEvent(CDAEBrowserAPIWK& client, GVariant* parameters) {
    HBBTV_LOG_DEBUG("StreamEvent");
    guint status = 0;
    gint16 eventId = 0;
    GCharPtr name;
    GVariantPtr data;
    guint jobId = 0;
    g_variant_get(parameters, "(uns@ayu)", &status, &eventId, static_cast<gchar**>(OutPointer(name)),
                  static_cast<GVariant**>(OutPointer(data)), &jobId);
    const std::span<const uint8_t> bytes = BytesOf(data.get());
    const CDSMCCStreamEventData record{
        .status = static_cast<EEventStatus>(status),
        .eventId = static_cast<uint16_t>(eventId),
        .name = name.get(),
        .data = {bytes.begin(), bytes.end()},
        .jobId = jobId,
    };
    client.SendEventToPlugins(event_t::WithRecord(E_VBO_STREAM_EVENT, 0, &record));
}

void OnPlayReadyResponse(CDAEBrowserAPIWK& client, GVariant* parameters) {
    IPRResponse response;
    GCharPtr message;
    g_variant_get(parameters, "(uis)", &response.transactionId, &response.resultCode,
                  static_cast<gchar**>(OutPointer(message)));
    response.resultMessage = message.get();
    client.SendPlayReadyDataToPlugins(&response);
}

constexpr struct {
    std::string_view name;
    void (*handler)(CDAEBrowserAPIWK& client, GVariant* parameters);
} kSignals[] = {
    {"PluginEvent", OnPluginEvent},
    {"PluginEventFloat", OnPluginEventFloat},
    {"PluginEventUnsigned", OnPluginEventUnsigned},
    {"PluginEventSigned", OnPluginEventSigned},
    {"PluginEventData", OnPluginEventData},
    {"PluginEventDrmError", OnPluginEventDrmError},
    {"SASMessage", OnSASMessage},
    {"StreamEvent", OnStreamEvent},
    {"PlayReadyResponse", OnPlayReadyResponse},
};

}  // namespace

void DispatchDAEBrowserSignal(CDAEBrowserAPIWK& client, const char* name, GVariant* parameters) {
    HBBTV_LOG_DEBUG("DAEBrowserAPIWK received Signal: %s: %s", name, TextOf(parameters).c_str());
    const auto* known =
        std::ranges::find(kSignals, std::string_view(name), [](const auto& signal) { return signal.name; });
    if (known != std::end(kSignals))
        known->handler(client, parameters);
}
