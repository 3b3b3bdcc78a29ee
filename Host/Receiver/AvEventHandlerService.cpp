// org.vantrel.hbbtv.IAVEventHandler: broadband media, one player a plugin id of its caller.
#include <algorithm>

#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "Host/Receiver/Variants.h"
#include "gen/dbus/aveventhandler-generated.h"

namespace Receiver {

namespace {

constexpr std::int32_t kNoTrack = -1;

MediaState stateOf(Caller& caller, std::uint32_t id) {
    const auto* session = caller.media().find(id);
    return session == nullptr ? MediaState::Stopped : session->state();
}

bool seek(Caller& caller, std::uint32_t id, std::uint32_t position) {
    auto* player = caller.media().player(id);
    return player != nullptr && player->seek(position);
}

bool setVolume(Caller& caller, std::uint32_t id, std::int32_t volume) {
    if (volume < 0 || volume > 100)
        return false;
    caller.media().session(id).setVolume(volume);
    return true;
}

std::tuple<std::int32_t, bool> volume(Caller& caller, std::uint32_t id) {
    const auto* session = caller.media().find(id);
    return {session == nullptr ? 0 : session->volume(), session != nullptr};
}

// A medium has one track; without a medium there is none.
std::int32_t numberOfTracks(Caller& caller, std::uint32_t id) {
    const auto* session = caller.media().find(id);
    return session == nullptr || session->url().empty() ? 0 : 1;
}

void fillPlayer(IAVEventHandlerIface& table) {
    const auto exists = [](Caller& caller, std::uint32_t id) { return caller.media().player(id) != nullptr; };
    table.handle_flag_player_active = answer<iavevent_handler_complete_flag_player_active, exists>;
    table.handle_is_avplayer_alive = answer<iavevent_handler_complete_is_avplayer_alive, exists>;
    table.handle_flag_player_playing =
        answer<iavevent_handler_complete_flag_player_playing,
               [](Caller& caller, std::uint32_t id) { return stateOf(caller, id) == MediaState::Playing; }>;
    table.handle_get_player =
        answer<iavevent_handler_complete_get_player,
               [](Caller& caller, std::uint32_t id) { return caller.media().acquire(id); }>;
    table.handle_release_player =
        answer<iavevent_handler_complete_release_player,
               [](Caller& caller, std::uint32_t id) { caller.media().release(id); }>;
    table.handle_play =
        answer<iavevent_handler_complete_play,
               [](Caller& caller, std::uint32_t id, double speed) { return caller.media().play(id, speed); }>;
    table.handle_stop = answer<iavevent_handler_complete_stop,
                               [](Caller& caller, std::uint32_t id) { return caller.media().stop(id); }>;
    table.handle_seek =
        answer<iavevent_handler_complete_seek, [](Caller& caller, std::uint32_t id, std::uint32_t position) {
            return seek(caller, id, position);
        }>;
    table.handle_queue =
        answer<iavevent_handler_complete_queue, [](Caller& caller, std::uint32_t id, const char* url) {
            return caller.media().queue(id, url);
        }>;
}

void fillMedium(IAVEventHandlerIface& table) {
    table.handle_set_location = answer<iavevent_handler_complete_set_location,
                                       [](Caller& caller, std::uint32_t id, const char* location) {
                                           caller.media().session(id).location = location;
                                       }>;
    table.handle_set_data =
        answer<iavevent_handler_complete_set_data, [](Caller& caller, std::uint32_t id, const char* url) {
            caller.media().session(id).setUrl(url);
        }>;
    table.handle_get_data = answer<iavevent_handler_complete_get_data, [](Caller& caller, std::uint32_t id) {
        const auto* session = caller.media().find(id);
        return session == nullptr ? std::string() : session->url();
    }>;
    table.handle_set_attribute =
        answer<iavevent_handler_complete_set_attribute,
               [](Caller& caller, std::uint32_t id, const char* name, const char* value) {
                   caller.media().session(id).setAttribute(name, value);
               }>;
    table.handle_check_mime_type =
        answer<iavevent_handler_complete_check_mime_type,
               [](Caller& caller, const char* mimeType) { return caller.media().supports(mimeType); }>;
    const auto setMimeType = [](Caller& caller, std::uint32_t id, const char* mimeType) {
        return caller.media().setMimeType(id, mimeType);
    };
    table.handle_set_mime_type = answer<iavevent_handler_complete_set_mime_type, setMimeType>;
    table.handle_change_mime_type = answer<iavevent_handler_complete_change_mime_type, setMimeType>;
    table.handle_get_mime_type =
        answer<iavevent_handler_complete_get_mime_type, [](Caller& caller, std::uint32_t id) {
            const auto* session = caller.media().find(id);
            return session == nullptr ? std::string() : session->mimeType;
        }>;
    table.handle_get_nr_tracks =
        answer<iavevent_handler_complete_get_nr_tracks,
               [](Caller& caller, std::uint32_t id) { return numberOfTracks(caller, id); }>;
    table.handle_get_current_track =
        answer<iavevent_handler_complete_get_current_track, [](Caller& caller, std::uint32_t id) {
            return numberOfTracks(caller, id) == 0 ? kNoTrack : 0;
        }>;
}

void fillProgress(IAVEventHandlerIface& table) {
    table.handle_get_play_position =
        answer<iavevent_handler_complete_get_play_position, [](Caller& caller, std::uint32_t id) {
            const auto* player = caller.media().player(id);
            return player == nullptr ? std::uint32_t{0} : player->position();
        }>;
    table.handle_get_play_time =
        answer<iavevent_handler_complete_get_play_time, [](Caller& caller, std::uint32_t id) {
            const auto* player = caller.media().player(id);
            return player == nullptr ? std::uint32_t{0} : player->duration();
        }>;
    table.handle_get_speed =
        answer<iavevent_handler_complete_get_speed, [](Caller& caller, std::uint32_t id) {
            const auto* player = caller.media().player(id);
            return player == nullptr ? 0.0 : player->speed();
        }>;
    table.handle_get_play_state =
        answer<iavevent_handler_complete_get_play_state, [](Caller& caller, std::uint32_t id) {
            return static_cast<std::int32_t>(stateOf(caller, id));
        }>;
    table.handle_get_error =
        answer<iavevent_handler_complete_get_error, [](Caller& caller, std::uint32_t id) {
            const auto* session = caller.media().find(id);
            return session == nullptr ? NoError : session->error();
        }>;
    table.handle_set_volume = answer<iavevent_handler_complete_set_volume,
                                     [](Caller& caller, std::uint32_t id, std::int32_t value) {
                                         return setVolume(caller, id, value);
                                     }>;
    table.handle_get_volume = answer<iavevent_handler_complete_get_volume,
                                     [](Caller& caller, std::uint32_t id) { return volume(caller, id); }>;
}

void fillPresentation(IAVEventHandlerIface& table) {
    table.handle_get_video_components =
        answer<iavevent_handler_complete_get_video_components,
               [](Caller& caller, std::uint32_t id, bool active) {
                   return variantOf(caller.media().components(id, ComponentType::Video, active));
               }>;
    table.handle_get_audio_components =
        answer<iavevent_handler_complete_get_audio_components,
               [](Caller& caller, std::uint32_t id, bool active) {
                   return variantOf(caller.media().components(id, ComponentType::Audio, active));
               }>;
    table.handle_get_sbt_components =
        answer<iavevent_handler_complete_get_sbt_components,
               [](Caller& caller, std::uint32_t id, bool active) {
                   return variantOf(caller.media().components(id, ComponentType::Subtitle, active));
               }>;
    table.handle_select_component =
        answer<iavevent_handler_complete_select_component,
               [](Caller& caller, std::uint32_t id, std::int32_t type, std::int32_t pid) {
                   caller.media().selectComponent(id, type, pid);
               }>;
    table.handle_unselect_component =
        answer<iavevent_handler_complete_unselect_component,
               [](Caller& caller, std::uint32_t id, std::int32_t type, std::int32_t pid) {
                   caller.media().unselectComponent(id, type, pid);
               }>;
    table.handle_update_layout = answer<iavevent_handler_complete_update_layout,
                                        [](Caller& caller, std::uint32_t id, std::uint32_t x, std::uint32_t y,
                                           std::uint32_t width, std::uint32_t height, bool fullScreen) {
                                            caller.media().setWindow(id, {x, y, width, height, fullScreen});
                                        }>;
}

}  // namespace

Skeleton makeAvEventHandler(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer table, gpointer) {
        auto& handlers = *static_cast<IAVEventHandlerIface*>(table);
        fillPlayer(handlers);
        fillMedium(handlers);
        fillProgress(handlers);
        fillPresentation(handlers);
    };
    return makeSkeleton(
        {"ReceiverAvEventHandler", TYPE_IAVEVENT_HANDLER_SKELETON, TYPE_IAVEVENT_HANDLER, fill}, &world,
        &dispatcher);
}

}  // namespace Receiver
