// org.vantrel.hbbtv.IBroadcastPlayer: live television, one player a plugin id of its caller.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/broadcastplayer-generated.h"

namespace Receiver {

namespace {

using Players = BroadcastPlayers;

std::tuple<std::uint32_t, bool> setChannel(Players& players, std::uint32_t pluginId, std::uint32_t type,
                                           const char* dsd, std::int32_t onid, std::int32_t tsid,
                                           std::int32_t sid, std::uint32_t channelId) {
    const auto id = players.setChannel(pluginId, {type, dsd, onid, tsid, sid, channelId});
    return {id.value_or(channelId), id.has_value()};
}

std::tuple<std::string, bool> stepChannel(Players& players, std::uint32_t pluginId, bool next) {
    const bool stepped = players.stepChannel(pluginId, next);
    return {stepped ? "" : "there is no channel to change to", stepped};
}

std::optional<std::uint32_t> channel(Players& players, std::uint32_t pluginId) {
    const auto* shown = players.channel(pluginId);
    return shown == nullptr ? std::nullopt : std::optional(shown->id);
}

bool isPresenting(Players& players, std::uint32_t pluginId) {
    return players.state(pluginId) == BroadcastState::Presenting;
}

void fill(gpointer raw, gpointer) {
    auto& table = *static_cast<IBroadcastPlayerIface*>(raw);
    table.handle_bind_to_current_channel =
        answer<ibroadcast_player_complete_bind_to_current_channel, &Players::bindToCurrentChannel>;
    table.handle_set_channel = answer<ibroadcast_player_complete_set_channel, &setChannel>;
    table.handle_next_or_prev_channel = answer<ibroadcast_player_complete_next_or_prev_channel, &stepChannel>;
    table.handle_set_null_channel =
        answer<ibroadcast_player_complete_set_null_channel, &Players::setNullChannel>;
    table.handle_release = answer<ibroadcast_player_complete_release, &Players::release>;
    table.handle_stop = answer<ibroadcast_player_complete_stop, &Players::stop>;
    table.handle_is_presenting = answer<ibroadcast_player_complete_is_presenting, &isPresenting>;
    table.handle_get_play_state = answer<ibroadcast_player_complete_get_play_state, &Players::state>;
    table.handle_get_channel = answer<ibroadcast_player_complete_get_channel, &channel>;

    table.handle_set_volume = answer<ibroadcast_player_complete_set_volume, &Players::setVolume>;
    table.handle_get_volume = answer<ibroadcast_player_complete_get_volume, &Players::volume>;
    table.handle_get_audio_components =
        answer<ibroadcast_player_complete_get_audio_components, &componentsOf<Players, ComponentType::Audio>>;
    table.handle_get_video_components =
        answer<ibroadcast_player_complete_get_video_components, &componentsOf<Players, ComponentType::Video>>;
    table.handle_get_sbt_components = answer<ibroadcast_player_complete_get_sbt_components,
                                             &componentsOf<Players, ComponentType::Subtitle>>;
    table.handle_select_component =
        answer<ibroadcast_player_complete_select_component, &Players::selectComponent>;
    table.handle_unselect_component =
        answer<ibroadcast_player_complete_unselect_component, &Players::unselectComponent>;
    table.handle_update_layout = answer<ibroadcast_player_complete_update_layout, &updateLayout<Players>>;
}

}  // namespace

Skeleton makeBroadcastPlayer(World& world, CallDispatcher& dispatcher) {
    return makeSkeleton({TYPE_IBROADCAST_PLAYER_SKELETON, TYPE_IBROADCAST_PLAYER, fill}, &world, &dispatcher);
}

}  // namespace Receiver
