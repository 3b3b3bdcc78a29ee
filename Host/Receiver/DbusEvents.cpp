#include "Host/Receiver/DbusEvents.h"

#include "Host/Inc/GHandles.h"
#include "Host/Inc/ReceiverNames.h"
#include "Host/Receiver/PlaneNames.h"
#include "Host/Receiver/ReceiverControl-generated.h"
#include "Host/Receiver/Variants.h"

namespace Receiver {

void DbusEvents::announceOn(GDBusInterfaceSkeleton* daeBrowserApi, GDBusInterfaceSkeleton* dsmcc,
                            GDBusInterfaceSkeleton* control) {
    m_daeBrowserApi = daeBrowserApi;
    m_dsmcc = dsmcc;
    m_control = control;
}

void DbusEvents::emit(const CallerName& to, GDBusInterfaceSkeleton* service, const char* signal,
                      GVariant* arguments) {
    const Host::GVariantHandle owned(g_variant_ref_sink(arguments));
    auto* connection = g_dbus_interface_skeleton_get_connection(service);
    // A caller that has gone meanwhile is none of the bus's concern either.
    if (connection != nullptr)
        g_dbus_connection_emit_signal(connection, to == Everybody ? nullptr : to.c_str(), Names::ObjectPath,
                                      g_dbus_interface_skeleton_get_info(service)->name, signal, owned.get(),
                                      nullptr);
}

void DbusEvents::pluginEvent(const CallerName& to, std::int32_t event, std::uint32_t pluginId) {
    emit(to, m_daeBrowserApi, "PluginEvent", g_variant_new("(iu)", event, pluginId));
}

void DbusEvents::pluginEventUnsigned(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                                     std::uint32_t value) {
    emit(to, m_daeBrowserApi, "PluginEventUnsigned", g_variant_new("(iuu)", event, pluginId, value));
}

void DbusEvents::pluginEventSigned(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                                   std::int32_t value) {
    emit(to, m_daeBrowserApi, "PluginEventSigned", g_variant_new("(iui)", event, pluginId, value));
}

void DbusEvents::pluginEventFloat(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                                  double value) {
    emit(to, m_daeBrowserApi, "PluginEventFloat", g_variant_new("(iud)", event, pluginId, value));
}

void DbusEvents::pluginEventData(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                                 std::int32_t first, std::int32_t second) {
    emit(to, m_daeBrowserApi, "PluginEventData", g_variant_new("(iuii)", event, pluginId, first, second));
}

void DbusEvents::streamEvent(const CallerName& to, std::uint32_t status, std::int16_t eventId,
                             const std::string& name, const std::vector<std::uint8_t>& data,
                             std::uint32_t jobId) {
    emit(to, m_daeBrowserApi, "StreamEvent",
         g_variant_new("(uns@ayu)", status, eventId, name.c_str(), variantOf(data), jobId));
}

void DbusEvents::playReadyResponse(const CallerName& to, std::uint32_t transactionId, std::int32_t resultCode,
                                   const std::string& message) {
    emit(to, m_daeBrowserApi, "PlayReadyResponse",
         g_variant_new("(uis)", transactionId, resultCode, message.c_str()));
}

void DbusEvents::fileResponse(const CallerName& to, std::uint32_t handle, const std::string& url,
                              const std::vector<std::uint8_t>& data, bool status) {
    emit(to, m_dsmcc, "FileResponse",
         g_variant_new("(us@ayub)", handle, url.c_str(), variantOf(data),
                       static_cast<std::uint32_t>(data.size()), status ? TRUE : FALSE));
}

void DbusEvents::planeShown(const PlanePlayer& player, const PlaneContent& content) {
    const auto& window = content.window;
    receiver_control_emit_plane_changed(
        RECEIVER_CONTROL(m_control), Names::of(player.kind), player.caller.c_str(), player.pluginId, TRUE,
        window.x, window.y, window.width, window.height, window.fullScreen ? TRUE : FALSE,
        content.title.c_str(), Names::of(content.picture), content.subtitles.c_str());
}

void DbusEvents::planeHidden(const PlanePlayer& player) {
    receiver_control_emit_plane_changed(RECEIVER_CONTROL(m_control), Names::of(player.kind),
                                        player.caller.c_str(), player.pluginId, FALSE, 0, 0, 0, 0, FALSE, "",
                                        Names::of(PlanePicture::None), "");
}

void DbusEvents::runningChannelChanged(const RunningChannel& channel) {
    receiver_control_emit_running_channel_changed(RECEIVER_CONTROL(m_control), channel.name.c_str(),
                                                  Names::of(channel.picture));
}

void DbusEvents::applicationStarted(std::int32_t viewId, const std::string& url) {
    receiver_control_emit_application_started(RECEIVER_CONTROL(m_control), viewId, url.c_str());
}

void DbusEvents::applicationDestroyed(std::int32_t viewId) {
    receiver_control_emit_application_destroyed(RECEIVER_CONTROL(m_control), viewId);
}

void DbusEvents::applicationVisibilityChanged(std::int32_t viewId, bool visible) {
    receiver_control_emit_application_visibility_changed(RECEIVER_CONTROL(m_control), viewId,
                                                         visible ? TRUE : FALSE);
}

void DbusEvents::keyMaskChanged(std::uint32_t mask) {
    receiver_control_emit_key_mask_changed(RECEIVER_CONTROL(m_control), mask);
}

void DbusEvents::keyPressed(std::uint32_t keyCode) {
    receiver_control_emit_key_pressed(RECEIVER_CONTROL(m_control), keyCode);
}

void DbusEvents::callRecorded(const Call& call) {
    receiver_control_emit_call_recorded(RECEIVER_CONTROL(m_control), call.method.c_str(),
                                        call.arguments.c_str());
}

}  // namespace Receiver
