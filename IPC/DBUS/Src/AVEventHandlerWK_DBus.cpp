#include "IPC/DBUS/Src/AVEventHandlerWK_DBus.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/AVComponentHandlerWK.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "gen/dbus/aveventhandler-generated.h"

namespace {

constexpr ServiceDescription kService{
    .interface = "org.vantrel.hbbtv.IAVEventHandler",
    .client = "CAVEventHandlerWK",
    .failureClient = "CAVEventHandlerWK",
    .creation = "iavevent_handler_proxy_new_sync()",
    .creationFailure = "iavevent_handler_proxy_new_for_bus_sync",
    .logsConnecting = true,
};

void on_signal(const char* signal, GVariant* parameters, gpointer /*data*/) {
    HBBTV_LOG_DEBUG("AVEventHandlerWK received Signal: %s: %s", signal, TextOf(parameters).c_str());
}

auto AppendTo(AVComponentVector& components) {
    return OutWith([&components](GVariant* array) { DeserialiseAVComponents(components, array); });
}

const char* ActiveOnly(bool active) {
    return active ? " active_only" : " ";
}

}  // namespace

CAVEventHandlerWK* CAVEventHandlerWK::GetInstance() {
    static CAVEventHandlerWK instance;
    return &instance;
}

CAVEventHandlerWK::CAVEventHandlerWK()
    : m_service(std::make_unique<DBusService<IAVEventHandler>>(kService, iavevent_handler_proxy_new_sync,
                                                               on_signal, nullptr, CallSite(__func__))) {}

CAVEventHandlerWK::~CAVEventHandlerWK() = default;

bool CAVEventHandlerWK::FlagPlayerActive(uint32_t pluginId) {
    return m_service->Call<bool>(__func__, iavevent_handler_call_flag_player_active_sync, pluginId, kResult);
}

bool CAVEventHandlerWK::FlagPlayerPlaying(uint32_t pluginId) {
    return m_service->Call<bool>(__func__, iavevent_handler_call_flag_player_playing_sync, pluginId, kResult);
}

bool CAVEventHandlerWK::IsAVPlayerAlive(uint32_t pluginId) {
    return m_service->Call<bool>(__func__, iavevent_handler_call_is_avplayer_alive_sync, pluginId, kResult);
}

bool CAVEventHandlerWK::GetPlayer(uint32_t pluginId) {
    return m_service->Call<bool>(__func__, iavevent_handler_call_get_player_sync, pluginId, kResult);
}

bool CAVEventHandlerWK::Play(uint32_t pluginId, float speed) {
    return m_service->Call<bool>({__func__, TraceText(" speed=%f", static_cast<double>(speed))},
                                 iavevent_handler_call_play_sync, pluginId, speed, kResult);
}

bool CAVEventHandlerWK::Stop(uint32_t pluginId) {
    return m_service->Call<bool>(__func__, iavevent_handler_call_stop_sync, pluginId, kResult);
}

bool CAVEventHandlerWK::Seek(uint32_t pluginId, long position) {
    return m_service->Call<bool>({__func__, TraceText(" position=%ld", position)},
                                 iavevent_handler_call_seek_sync, pluginId, position, kResult);
}

bool CAVEventHandlerWK::Queue(uint32_t pluginId, const std::string& url) {
    return m_service->Call<bool>({__func__, " url=" + url}, iavevent_handler_call_queue_sync, pluginId, url,
                                 kResult);
}

void CAVEventHandlerWK::ReleasePlayer(uint32_t pluginId) {
    m_service->Call(__func__, iavevent_handler_call_release_player_sync, pluginId);
}

void CAVEventHandlerWK::SendStop(uint32_t pluginId) {
    m_service->Send("Stop", iavevent_handler_call_stop, pluginId);
}

void CAVEventHandlerWK::SendReleasePlayer(uint32_t pluginId) {
    m_service->Send("ReleasePlayer", iavevent_handler_call_release_player, pluginId);
}

bool CAVEventHandlerWK::CheckMimeType(const std::string& mimetype) {
    return m_service->Call<bool>({__func__, " (" + mimetype + ")"},
                                 iavevent_handler_call_check_mime_type_sync, mimetype, kResult);
}

bool CAVEventHandlerWK::SetMimeType(uint32_t pluginId, const std::string& mimetype) {
    return m_service->Call<bool>({__func__, " (" + mimetype + ")"}, iavevent_handler_call_set_mime_type_sync,
                                 pluginId, mimetype, kResult);
}

bool CAVEventHandlerWK::ChangeMimeType(uint32_t pluginId, const std::string& mimetype) {
    return m_service->Call<bool>({__func__, " new_mimetype=" + mimetype},
                                 iavevent_handler_call_change_mime_type_sync, pluginId, mimetype, kResult);
}

void CAVEventHandlerWK::SetAttribute(uint32_t pluginId, const std::string& name, const std::string& value) {
    m_service->Call({__func__, " name=" + name + " value=" + value}, iavevent_handler_call_set_attribute_sync,
                    pluginId, name, value);
}

void CAVEventHandlerWK::GetMimeType(uint32_t pluginId, std::string& mimetype) {
    m_service->Call(__func__, iavevent_handler_call_get_mime_type_sync, pluginId, Out(mimetype));
}

void CAVEventHandlerWK::SetData(uint32_t pluginId, const std::string& url) {
    m_service->Call({__func__, " url=" + url}, iavevent_handler_call_set_data_sync, pluginId, url);
}

void CAVEventHandlerWK::GetData(uint32_t pluginId, std::string& url) {
    m_service->Call(__func__, iavevent_handler_call_get_data_sync, pluginId, Out(url));
}

void CAVEventHandlerWK::UpdateLayout(uint32_t pluginId, uint32_t x, uint32_t y, uint32_t width,
                                     uint32_t height, bool fullscreen) {
    m_service->Call(
        {__func__, TraceText(" - Update the position of the player window (%d,%d,%d,%d)", static_cast<int>(x),
                             static_cast<int>(y), static_cast<int>(width), static_cast<int>(height))},
        iavevent_handler_call_update_layout_sync, pluginId, x, y, width, height, fullscreen);
}

void CAVEventHandlerWK::SetLocation(uint32_t pluginId, const std::string& docLocation) {
    m_service->Call({__func__, " url=" + docLocation}, iavevent_handler_call_set_location_sync, pluginId,
                    docLocation);
}

void CAVEventHandlerWK::GetPlayState(uint32_t pluginId, int& state) {
    m_service->Call(__func__, iavevent_handler_call_get_play_state_sync, pluginId, Out(state));
}

void CAVEventHandlerWK::GetPlayPosition(uint32_t pluginId, unsigned long& position) {
    m_service->Call(__func__, iavevent_handler_call_get_play_position_sync, pluginId, Out(position));
}

void CAVEventHandlerWK::GetPlayTime(uint32_t pluginId, unsigned long& time) {
    m_service->Call(__func__, iavevent_handler_call_get_play_time_sync, pluginId, Out(time));
}

void CAVEventHandlerWK::GetSpeed(uint32_t pluginId, float& speed) {
    m_service->Call(__func__, iavevent_handler_call_get_speed_sync, pluginId, Out(speed));
}

bool CAVEventHandlerWK::SetVolume(uint32_t pluginId, int volume) {
    return m_service->Call<bool>({__func__, TraceText(" volume=%d", volume)},
                                 iavevent_handler_call_set_volume_sync, pluginId, volume, kResult);
}

bool CAVEventHandlerWK::GetVolume(uint32_t pluginId, int& volume) {
    return m_service->Call<bool>({__func__, TraceText(" volume=%d", volume)},
                                 iavevent_handler_call_get_volume_sync, pluginId, Out(volume), kResult);
}

void CAVEventHandlerWK::GetNrTracks(uint32_t pluginId, int& tracks) {
    m_service->Call(__func__, iavevent_handler_call_get_nr_tracks_sync, pluginId, Out(tracks));
}

void CAVEventHandlerWK::GetCurrentTrack(uint32_t pluginId, int& track) {
    m_service->Call(__func__, iavevent_handler_call_get_current_track_sync, pluginId, Out(track));
}

void CAVEventHandlerWK::GetError(uint32_t pluginId, int& error) {
    m_service->Call(__func__, iavevent_handler_call_get_error_sync, pluginId, Out(error));
}

void CAVEventHandlerWK::GetVideoComponents(uint32_t pluginId, AVComponentVector& components, bool active) {
    m_service->Call({__func__, ActiveOnly(active)}, iavevent_handler_call_get_video_components_sync, pluginId,
                    active, AppendTo(components));
}

void CAVEventHandlerWK::GetAudioComponents(uint32_t pluginId, AVComponentVector& components, bool active) {
    m_service->Call({__func__, ActiveOnly(active)}, iavevent_handler_call_get_audio_components_sync, pluginId,
                    active, AppendTo(components));
}

void CAVEventHandlerWK::GetSbtComponents(uint32_t pluginId, AVComponentVector& components, bool active) {
    m_service->Call({__func__, ActiveOnly(active)}, iavevent_handler_call_get_sbt_components_sync, pluginId,
                    active, AppendTo(components));
}

void CAVEventHandlerWK::SelectComponent(uint32_t pluginId, int type, uint32_t index) {
    m_service->Call({__func__, TraceText(" type=%d index=%d", type, static_cast<int>(index))},
                    iavevent_handler_call_select_component_sync, pluginId, type, index);
}

void CAVEventHandlerWK::UnselectComponent(uint32_t pluginId, int type, uint32_t index) {
    m_service->Call({__func__, TraceText(" type=%d index=%d", type, static_cast<int>(index))},
                    iavevent_handler_call_unselect_component_sync, pluginId, type, index);
}
