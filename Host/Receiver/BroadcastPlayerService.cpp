// org.vantrel.hbbtv.IBroadcastPlayer: live television, one player a plugin id of its caller.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "Host/Receiver/Variants.h"
#include "gen/dbus/broadcastplayer-generated.h"

namespace Receiver {

namespace {

std::tuple<std::uint32_t, bool> setChannel(Caller& caller, std::uint32_t pluginId,
                                           const ChannelRequest& request) {
    const auto id = caller.broadcast().setChannel(pluginId, request);
    return {id.value_or(request.id), id.has_value()};
}

std::tuple<std::string, bool> stepChannel(Caller& caller, std::uint32_t pluginId, bool next) {
    const bool stepped = caller.broadcast().stepChannel(pluginId, next);
    return {stepped ? "" : "there is no channel to change to", stepped};
}

std::tuple<std::uint32_t, bool> channel(Caller& caller, std::uint32_t pluginId) {
    const auto* shown = caller.broadcast().channel(pluginId);
    return {shown == nullptr ? 0 : shown->id, shown != nullptr};
}

void fillTuning(IBroadcastPlayerIface& table) {
    table.handle_bind_to_current_channel =
        answer<ibroadcast_player_complete_bind_to_current_channel,
               [](Caller& caller, std::uint32_t id) { return caller.broadcast().bindToCurrentChannel(id); }>;
    table.handle_set_channel =
        answer<ibroadcast_player_complete_set_channel,
               [](Caller& caller, std::uint32_t pluginId, std::uint32_t type, const char* dsd,
                  std::int32_t onid, std::int32_t tsid, std::int32_t sid, std::uint32_t channelId) {
                   return setChannel(caller, pluginId, {type, dsd, onid, tsid, sid, channelId});
               }>;
    table.handle_next_or_prev_channel =
        answer<ibroadcast_player_complete_next_or_prev_channel,
               [](Caller& caller, std::uint32_t id, bool next) { return stepChannel(caller, id, next); }>;
    table.handle_set_null_channel = answer<ibroadcast_player_complete_set_null_channel,
                                           [](Caller& caller, std::uint32_t id, bool independent) {
                                               caller.broadcast().setNullChannel(id, independent);
                                           }>;
    table.handle_release = answer<ibroadcast_player_complete_release,
                                  [](Caller& caller, std::uint32_t id) { caller.broadcast().release(id); }>;
    table.handle_stop = answer<ibroadcast_player_complete_stop,
                               [](Caller& caller, std::uint32_t id) { caller.broadcast().stop(id); }>;
    table.handle_is_presenting =
        answer<ibroadcast_player_complete_is_presenting, [](Caller& caller, std::uint32_t id) {
            return caller.broadcast().state(id) == BroadcastState::Presenting;
        }>;
    table.handle_get_play_state =
        answer<ibroadcast_player_complete_get_play_state, [](Caller& caller, std::uint32_t id) {
            return static_cast<std::int32_t>(caller.broadcast().state(id));
        }>;
    table.handle_get_channel = answer<ibroadcast_player_complete_get_channel,
                                      [](Caller& caller, std::uint32_t id) { return channel(caller, id); }>;
}

void fillPresentation(IBroadcastPlayerIface& table) {
    table.handle_set_volume = answer<ibroadcast_player_complete_set_volume,
                                     [](Caller& caller, std::uint32_t id, std::int32_t volume) {
                                         caller.broadcast().setVolume(id, volume);
                                     }>;
    table.handle_get_volume =
        answer<ibroadcast_player_complete_get_volume,
               [](Caller& caller, std::uint32_t id) { return caller.broadcast().volume(id); }>;
    table.handle_get_audio_components =
        answer<ibroadcast_player_complete_get_audio_components,
               [](Caller& caller, std::uint32_t id, bool active) {
                   return variantOf(caller.broadcast().components(id, ComponentType::Audio, active));
               }>;
    table.handle_get_video_components =
        answer<ibroadcast_player_complete_get_video_components,
               [](Caller& caller, std::uint32_t id, bool active) {
                   return variantOf(caller.broadcast().components(id, ComponentType::Video, active));
               }>;
    table.handle_get_sbt_components =
        answer<ibroadcast_player_complete_get_sbt_components,
               [](Caller& caller, std::uint32_t id, bool active) {
                   return variantOf(caller.broadcast().components(id, ComponentType::Subtitle, active));
               }>;
    table.handle_select_component =
        answer<ibroadcast_player_complete_select_component,
               [](Caller& caller, std::uint32_t id, std::int32_t type, std::int32_t pid) {
                   caller.broadcast().selectComponent(id, type, pid);
               }>;
    table.handle_unselect_component =
        answer<ibroadcast_player_complete_unselect_component,
               [](Caller& caller, std::uint32_t id, std::int32_t type, std::int32_t pid) {
                   caller.broadcast().unselectComponent(id, type, pid);
               }>;
    table.handle_update_layout =
        answer<ibroadcast_player_complete_update_layout,
               [](Caller& caller, std::uint32_t id, std::uint32_t x, std::uint32_t y, std::uint32_t width,
                  std::uint32_t height, bool fullScreen) {
                   caller.broadcast().setWindow(id, {x, y, width, height, fullScreen});
               }>;
}

}  // namespace

Skeleton makeBroadcastPlayer(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer table, gpointer) {
        auto& handlers = *static_cast<IBroadcastPlayerIface*>(table);
        fillTuning(handlers);
        fillPresentation(handlers);
    };
    return makeSkeleton(
        {"ReceiverBroadcastPlayer", TYPE_IBROADCAST_PLAYER_SKELETON, TYPE_IBROADCAST_PLAYER, fill}, &world,
        &dispatcher);
}

}  // namespace Receiver
