#include "IPC/DBUS/Src/CBroadcastPlayerWK_DBus.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/AVComponentHandlerWK.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "gen/dbus/broadcastplayer-generated.h"

namespace {

// Most failure lines name the other player's class; log readers of the platform know them so.
constexpr ServiceDescription kService{
    .interface = "org.vantrel.hbbtv.IBroadcastPlayer",
    .client = "CBroadcastPlayerWK",
    .failureClient = "CAVEventHandlerWK",
    .creation = "ibroadcast_player_proxy_new_sync()",
    .creationFailure = "ibroadcast_player_proxy_new_sync",
    .logsConnecting = true,
};

void on_signal(const char* signal, GVariant* parameters, gpointer /*data*/) {
    HBBTV_LOG_DEBUG("CBroadcastPlayerWK received Signal: %s: %s", signal, TextOf(parameters).c_str());
}

// Appends the records of a component list, for the operation of the name.
auto AppendTo(AVComponentVector& components, const char* operation) {
    return OutWith([&components, operation](GVariant* array) {
        DeserialiseAVComponents(components, array);
        HBBTV_LOG_RECORD_AT(HbbTVPlatform::BaseName(__FILE__), operation, __LINE__, kPlatformLogDebug, "", "",
                            "CBroadcastPlayerWK::%s returning %d items.", operation,
                            static_cast<int>(components.size()));
    });
}

}  // namespace

CBroadcastPlayerWK* CBroadcastPlayerWK::GetInstance() {
    static CBroadcastPlayerWK* instance = nullptr;
    if (instance == nullptr)
        instance = new CBroadcastPlayerWK;
    return instance;
}

CBroadcastPlayerWK::CBroadcastPlayerWK()
    : m_service(std::make_unique<DBusService<IBroadcastPlayer>>(kService, ibroadcast_player_proxy_new_sync,
                                                                on_signal, nullptr, CallSite(__func__))) {}

CBroadcastPlayerWK::~CBroadcastPlayerWK() = default;

bool CBroadcastPlayerWK::BindToCurrentChannel(uint32_t pluginId) {
    return m_service->Call<bool>(__func__, ibroadcast_player_call_bind_to_current_channel_sync, pluginId,
                                 kResult);
}

bool CBroadcastPlayerWK::SetChannel(uint32_t pluginId, EOipfChIdType type, const std::string& dsd, int onid,
                                    int tsid, int sid, uint32_t& id) {
    return m_service->Call<bool>(__func__, ibroadcast_player_call_set_channel_sync, pluginId, type, dsd, onid,
                                 tsid, sid, id, Out(id), kResult);
}

bool CBroadcastPlayerWK::NextOrPrevChannel(uint32_t pluginId, bool next, std::string& exception) {
    return m_service->Call<bool>(__func__, ibroadcast_player_call_next_or_prev_channel_sync, pluginId, next,
                                 Out(exception), kResult);
}

void CBroadcastPlayerWK::SetNullChannel(uint32_t pluginId, bool setBroadcastIndependentApp) {
    m_service->Call(__func__, ibroadcast_player_call_set_null_channel_sync, pluginId,
                    setBroadcastIndependentApp);
}

void CBroadcastPlayerWK::Release(uint32_t pluginId) {
    m_service->Call(__func__, ibroadcast_player_call_release_sync, pluginId);
}

void CBroadcastPlayerWK::Stop(uint32_t pluginId) {
    m_service->Call(__func__, ibroadcast_player_call_stop_sync, pluginId);
}

void CBroadcastPlayerWK::SendRelease(uint32_t pluginId) {
    m_service->Send("Release", ibroadcast_player_call_release, pluginId);
}

void CBroadcastPlayerWK::SendStop(uint32_t pluginId) {
    m_service->Send("Stop", ibroadcast_player_call_stop, pluginId);
}

bool CBroadcastPlayerWK::IsPresenting(uint32_t pluginId) {
    return m_service->Call<bool>(__func__, ibroadcast_player_call_is_presenting_sync, pluginId, kResult);
}

void CBroadcastPlayerWK::GetPlayState(uint32_t pluginId, int& state) {
    m_service->Call(__func__, ibroadcast_player_call_get_play_state_sync, pluginId, Out(state));
}

bool CBroadcastPlayerWK::GetChannel(uint32_t pluginId, uint32_t& id) {
    return m_service->Call<bool>(__func__, ibroadcast_player_call_get_channel_sync, pluginId, Out(id),
                                 kResult);
}

void CBroadcastPlayerWK::SetVolume(uint32_t pluginId, int volume) {
    m_service->Call(__func__, ibroadcast_player_call_set_volume_sync, pluginId, volume);
}

void CBroadcastPlayerWK::GetVolume(uint32_t pluginId, int& volume) {
    m_service->Call(__func__, ibroadcast_player_call_get_volume_sync, pluginId, Out(volume));
}

void CBroadcastPlayerWK::GetVideoComponents(uint32_t pluginId, AVComponentVector& components, bool active) {
    m_service->Call(__func__, ibroadcast_player_call_get_video_components_sync, pluginId, active,
                    AppendTo(components, __func__));
}

void CBroadcastPlayerWK::GetAudioComponents(uint32_t pluginId, AVComponentVector& components, bool active) {
    m_service->Call(__func__, ibroadcast_player_call_get_audio_components_sync, pluginId, active,
                    AppendTo(components, __func__));
}

void CBroadcastPlayerWK::GetSbtComponents(uint32_t pluginId, AVComponentVector& components, bool active) {
    m_service->Call(__func__, ibroadcast_player_call_get_sbt_components_sync, pluginId, active,
                    AppendTo(components, __func__));
}

void CBroadcastPlayerWK::SelectComponent(uint32_t pluginId, int type, uint32_t index) {
    m_service->Call(
        {__func__, TraceText(" type=%d index=%d", type, static_cast<int>(index)), "CBroadcastPlayerWK"},
        ibroadcast_player_call_select_component_sync, pluginId, type, index);
}

void CBroadcastPlayerWK::UnselectComponent(uint32_t pluginId, int type, uint32_t index) {
    m_service->Call(
        {__func__, TraceText(" type=%d index=%d", type, static_cast<int>(index)), "CBroadcastPlayerWK"},
        ibroadcast_player_call_unselect_component_sync, pluginId, type, index);
}

void CBroadcastPlayerWK::UpdateLayout(uint32_t pluginId, uint32_t x, uint32_t y, uint32_t width,
                                      uint32_t height, bool fullscreen) {
    m_service->Call(__func__, ibroadcast_player_call_update_layout_sync, pluginId, x, y, width, height,
                    fullscreen);
}
