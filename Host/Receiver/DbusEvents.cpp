#include "Host/Receiver/DbusEvents.h"

#include "Host/Receiver/PlaneNames.h"
#include "Host/Receiver/ReceiverControl-generated.h"
#include "Host/Receiver/Variants.h"
#include "gen/dbus/daebrowserapi-generated.h"
#include "gen/dbus/dsmcc-generated.h"

namespace Receiver {

void DbusEvents::announceOn(GDBusInterfaceSkeleton* daeBrowserApi, GDBusInterfaceSkeleton* dsmcc,
                            GDBusInterfaceSkeleton* control) {
    m_daeBrowserApi = daeBrowserApi;
    m_dsmcc = dsmcc;
    m_control = control;
}

void DbusEvents::pluginEventUnsigned(std::int32_t event, std::uint32_t pluginId, std::uint32_t value) {
    idaebrowser_api_emit_plugin_event_unsigned(IDAEBROWSER_API(m_daeBrowserApi), event, pluginId, value);
}

void DbusEvents::pluginEventSigned(std::int32_t event, std::uint32_t pluginId, std::int32_t value) {
    idaebrowser_api_emit_plugin_event_signed(IDAEBROWSER_API(m_daeBrowserApi), event, pluginId, value);
}

void DbusEvents::pluginEventFloat(std::int32_t event, std::uint32_t pluginId, double value) {
    idaebrowser_api_emit_plugin_event_float(IDAEBROWSER_API(m_daeBrowserApi), event, pluginId, value);
}

void DbusEvents::pluginEventData(std::int32_t event, std::uint32_t pluginId, std::int32_t first,
                                 std::int32_t second) {
    idaebrowser_api_emit_plugin_event_data(IDAEBROWSER_API(m_daeBrowserApi), event, pluginId, first, second);
}

void DbusEvents::streamEvent(std::uint32_t status, std::int16_t eventId, const std::string& name,
                             const std::vector<std::uint8_t>& data, std::uint32_t jobId) {
    idaebrowser_api_emit_stream_event(IDAEBROWSER_API(m_daeBrowserApi), status, eventId, name.c_str(),
                                      variantOf(data), jobId);
}

void DbusEvents::playReadyResponse(std::uint32_t transactionId, std::int32_t resultCode,
                                   const std::string& message) {
    idaebrowser_api_emit_play_ready_response(IDAEBROWSER_API(m_daeBrowserApi), transactionId, resultCode,
                                             message.c_str());
}

void DbusEvents::fileResponse(std::uint32_t handle, const std::string& url,
                              const std::vector<std::uint8_t>& data, bool status) {
    dsmcc_emit_file_response(DSMCC(m_dsmcc), handle, url.c_str(), variantOf(data),
                             static_cast<std::uint32_t>(data.size()), status ? TRUE : FALSE);
}

void DbusEvents::planeShown(const PlanePlayer& player, const PlaneContent& content) {
    const auto& window = content.window;
    receiver_control_emit_plane_changed(RECEIVER_CONTROL(m_control), Names::of(player.kind), player.pluginId,
                                        TRUE, window.x, window.y, window.width, window.height,
                                        window.fullScreen ? TRUE : FALSE, content.title.c_str(),
                                        Names::of(content.picture));
}

void DbusEvents::planeHidden(const PlanePlayer& player) {
    receiver_control_emit_plane_changed(RECEIVER_CONTROL(m_control), Names::of(player.kind), player.pluginId,
                                        FALSE, 0, 0, 0, 0, FALSE, "", Names::of(PlanePicture::None));
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
