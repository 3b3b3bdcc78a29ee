// org.vantrel.hbbtv.IAVEventHandler: broadband media, one player a plugin id of its caller.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/aveventhandler-generated.h"

namespace Receiver {

namespace {

using Players = MediaPlayers;

constexpr std::int32_t kNoTrack = -1;

// What a plugin id's player says, or its session; without one, an empty value.
template <auto Member>
auto ofPlayer(Players& players, std::uint32_t id) {
    auto* player = players.player(id);
    using Value = std::decay_t<decltype(std::invoke(Member, *player))>;
    return player == nullptr ? Value() : std::invoke(Member, *player);
}
template <auto Member>
auto ofSession(Players& players, std::uint32_t id) {
    auto* session = players.find(id);
    using Value = std::decay_t<decltype(std::invoke(Member, *session))>;
    return session == nullptr ? Value() : std::invoke(Member, *session);
}

bool exists(Players& players, std::uint32_t id) {
    return players.player(id) != nullptr;
}

bool isPlaying(Players& players, std::uint32_t id) {
    return ofSession<&MediaSession::state>(players, id) == MediaState::Playing;
}

bool seek(Players& players, std::uint32_t id, std::uint32_t position) {
    auto* player = players.player(id);
    return player != nullptr && player->seek(position);
}

bool setVolume(Players& players, std::uint32_t id, std::int32_t volume) {
    if (volume < 0 || volume > 100)
        return false;
    players.session(id).setVolume(volume);
    return true;
}

std::optional<std::int32_t> volume(Players& players, std::uint32_t id) {
    const auto* session = players.find(id);
    return session == nullptr ? std::nullopt : std::optional(session->volume());
}

std::int32_t error(Players& players, std::uint32_t id) {
    const auto* session = players.find(id);
    return session == nullptr ? NoError : session->error();
}

void setLocation(Players& players, std::uint32_t id, const char* location) {
    players.session(id).location = location;
}

void setUrl(Players& players, std::uint32_t id, const char* url) {
    players.session(id).setUrl(url);
}

void setAttribute(Players& players, std::uint32_t id, const char* name, const char* value) {
    players.session(id).setAttribute(name, value);
}

// A medium has one track; without a medium there is none.
std::int32_t numberOfTracks(Players& players, std::uint32_t id) {
    return ofSession<&MediaSession::url>(players, id).empty() ? 0 : 1;
}

std::int32_t currentTrack(Players& players, std::uint32_t id) {
    return numberOfTracks(players, id) == 0 ? kNoTrack : 0;
}

void fill(gpointer raw, gpointer) {
    auto& table = *static_cast<IAVEventHandlerIface*>(raw);
    table.handle_flag_player_active = answer<iavevent_handler_complete_flag_player_active, &exists>;
    table.handle_is_avplayer_alive = answer<iavevent_handler_complete_is_avplayer_alive, &exists>;
    table.handle_flag_player_playing = answer<iavevent_handler_complete_flag_player_playing, &isPlaying>;
    table.handle_get_player = answer<iavevent_handler_complete_get_player, &Players::acquire>;
    table.handle_release_player = answer<iavevent_handler_complete_release_player, &Players::release>;
    table.handle_play = answer<iavevent_handler_complete_play, &Players::play>;
    table.handle_stop = answer<iavevent_handler_complete_stop, &Players::stop>;
    table.handle_seek = answer<iavevent_handler_complete_seek, &seek>;
    table.handle_queue = answer<iavevent_handler_complete_queue, &Players::queue>;

    table.handle_set_location = answer<iavevent_handler_complete_set_location, &setLocation>;
    table.handle_set_data = answer<iavevent_handler_complete_set_data, &setUrl>;
    table.handle_get_data = answer<iavevent_handler_complete_get_data, &ofSession<&MediaSession::url>>;
    table.handle_set_attribute = answer<iavevent_handler_complete_set_attribute, &setAttribute>;
    table.handle_check_mime_type = answer<iavevent_handler_complete_check_mime_type, &Players::supports>;
    table.handle_set_mime_type = answer<iavevent_handler_complete_set_mime_type, &Players::setMimeType>;
    table.handle_change_mime_type = answer<iavevent_handler_complete_change_mime_type, &Players::setMimeType>;
    table.handle_get_mime_type =
        answer<iavevent_handler_complete_get_mime_type, &ofSession<&MediaSession::mimeType>>;
    table.handle_get_nr_tracks = answer<iavevent_handler_complete_get_nr_tracks, &numberOfTracks>;
    table.handle_get_current_track = answer<iavevent_handler_complete_get_current_track, &currentTrack>;

    table.handle_get_play_position =
        answer<iavevent_handler_complete_get_play_position, &ofPlayer<&MediaPlayer::position>>;
    table.handle_get_play_time =
        answer<iavevent_handler_complete_get_play_time, &ofPlayer<&MediaPlayer::duration>>;
    table.handle_get_speed = answer<iavevent_handler_complete_get_speed, &ofPlayer<&MediaPlayer::speed>>;
    table.handle_get_play_state =
        answer<iavevent_handler_complete_get_play_state, &ofSession<&MediaSession::state>>;
    table.handle_get_error = answer<iavevent_handler_complete_get_error, &error>;
    table.handle_set_volume = answer<iavevent_handler_complete_set_volume, &setVolume>;
    table.handle_get_volume = answer<iavevent_handler_complete_get_volume, &volume>;

    table.handle_get_video_components =
        answer<iavevent_handler_complete_get_video_components, &componentsOf<Players, ComponentType::Video>>;
    table.handle_get_audio_components =
        answer<iavevent_handler_complete_get_audio_components, &componentsOf<Players, ComponentType::Audio>>;
    table.handle_get_sbt_components =
        answer<iavevent_handler_complete_get_sbt_components, &componentsOf<Players, ComponentType::Subtitle>>;
    table.handle_select_component =
        answer<iavevent_handler_complete_select_component, &Players::selectComponent>;
    table.handle_unselect_component =
        answer<iavevent_handler_complete_unselect_component, &Players::unselectComponent>;
    table.handle_update_layout = answer<iavevent_handler_complete_update_layout, &updateLayout<Players>>;
}

}  // namespace

Skeleton makeAvEventHandler(World& world, CallDispatcher& dispatcher) {
    return makeSkeleton({TYPE_IAVEVENT_HANDLER_SKELETON, TYPE_IAVEVENT_HANDLER, fill}, &world, &dispatcher);
}

}  // namespace Receiver
