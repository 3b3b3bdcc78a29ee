#include "Host/Receiver/World/World.h"

#include <algorithm>
#include <limits>

#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/SimulatedMediaPlayer.h"
#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

constexpr std::size_t largestNumberOfProfiles = 256;
constexpr std::int32_t resultUnknownDrmSystem = 5;
constexpr const char statePointer[] = "/state";

nlohmann::json::json_pointer parsePointer(const std::string& pointer) {
    try {
        return nlohmann::json::json_pointer(pointer);
    } catch (const nlohmann::json::exception&) {
        throw ScenarioError("", "\"" + pointer + "\" is no JSON pointer");
    }
}

nlohmann::json at(const nlohmann::json& document, const std::string& pointer) {
    const auto path = parsePointer(pointer);
    try {
        return document.at(path);
    } catch (const nlohmann::json::exception&) {
        throw ScenarioError(pointer, "there is no such value");
    }
}

void place(nlohmann::json& document, const std::string& pointer, nlohmann::json value) {
    const auto path = parsePointer(pointer);
    try {
        // The library would fill a list up to any index; only the place behind the last element may be new.
        if (!path.empty() && document.contains(path.parent_pointer())) {
            const auto& parent = document.at(path.parent_pointer());
            if (parent.is_array() && path.back() != "-" && path.back() != std::to_string(parent.size()))
                document.at(path) = nullptr;
        }
        document[path] = std::move(value);
    } catch (const nlohmann::json::exception&) {
        throw ScenarioError(pointer, "there is no such place");
    }
}

nlohmann::json describe(const VideoWindow& window) {
    return {{"x", window.x},
            {"y", window.y},
            {"width", window.width},
            {"height", window.height},
            {"full_screen", window.fullScreen}};
}

}  // namespace

World::World(nlohmann::json document, std::string folder, Timers& timers, ReceiverEvents& events,
             MediaPlayerFactory makePlayer)
    : m_document(std::move(document)),
      m_folder(std::move(folder)),
      m_scenario(readScenario(m_document, m_folder)),
      m_timers(timers),
      m_events(events),
      m_applications(m_scenario, events),
      m_plane(events),
      m_broadcast(m_scenario, timers, events, m_plane,
                  [this](const Channel& channel) {
                      const auto* programme = present(channel, m_origin, utc());
                      return programme == nullptr ? std::uint8_t{0} : programme->rating;
                  }),
      m_media(
          m_scenario, timers, events, m_plane,
          makePlayer ? std::move(makePlayer)
                     : [this](MediaListener& listener, PictureSink&) -> std::unique_ptr<MediaPlayer> {
              return std::make_unique<SimulatedMediaPlayer>(m_scenario, m_timers, listener);
          }),
      m_streamEvents(m_scenario, timers, events),
      m_search(m_scenario, timers,
               [this] {
                   return Moment{m_origin, utc()};
               }),
      m_carousel(m_scenario, timers, events),
      m_relatedAtStart(m_scenario.broadcast.related),
      m_origin(utc()),
      m_profiles(m_scenario.capabilities.profiles.begin(), m_scenario.capabilities.profiles.end()) {}

nlohmann::json World::value(const std::string& pointer) {
    auto whole = document();
    whole["state"] = state();
    return at(whole, pointer);
}

void World::setValue(const std::string& pointer, const std::string& json) {
    if (pointer == statePointer || pointer.starts_with(std::string(statePointer) + "/"))
        throw ScenarioError(pointer, "the state can only be read");
    auto changed = document();
    place(changed, pointer, parseJson(json));
    // A lower maximum takes the bits away that it does not have, as it would on a television.
    if (pointer == "/keys/maximum" && changed[nlohmann::json::json_pointer(pointer)].is_number_unsigned())
        changed["keys"]["mask"] = m_scenario.keys.mask & changed["keys"]["maximum"].get<std::uint32_t>();
    auto next = readScenario(changed, m_folder);
    m_document = std::move(changed);
    if (pointer == "/broadcast/related" || pointer == "/broadcast" || pointer.empty())
        m_relatedAtStart = next.broadcast.related;
    adopt(std::move(next));
}

void World::registerView(std::int32_t viewId, const std::string& url) {
    if (!m_applications.registerView(viewId, url))
        return;
    m_scenario.broadcast.related = m_relatedAtStart;
    m_broadcast.restoreChannel();
}

void World::setKeyMask(std::uint32_t mask) {
    const auto before = m_scenario.keys.mask;
    m_scenario.keys.mask = mask & m_scenario.keys.maximum;
    if (m_scenario.keys.mask != before)
        m_events.keyMaskChanged(m_scenario.keys.mask);
}

std::int64_t World::utc() const {
    return m_scenario.clock.fixedUtc ? std::int64_t{*m_scenario.clock.fixedUtc} : m_timers.utc();
}

std::vector<ScheduledProgramme> World::programmes(std::uint32_t channelId) const {
    const auto* channel = m_scenario.channel(channelId);
    return channel == nullptr ? std::vector<ScheduledProgramme>() : upcoming(*channel, m_origin, utc());
}

std::vector<std::uint32_t> World::channelsAt(const std::string& url, std::uint16_t& eventId) const {
    const auto service = parseDvbService(url);
    std::vector<std::uint32_t> ids;
    eventId = service ? service->eventId.value_or(0) : std::uint16_t{0};
    if (!service)
        return ids;
    for (const auto& channel : m_scenario.broadcast.channels) {
        const bool sameStream =
            channel.onid == service->onid && (!service->tsid || channel.tsid == *service->tsid);
        if (sameStream && channel.sid == service->sid)
            ids.push_back(channel.id);
    }
    return ids;
}

bool World::retainChannel(std::uint32_t id) {
    if (m_scenario.channel(id) == nullptr)
        return false;
    auto& count = m_retained[id];
    count += count < std::numeric_limits<std::uint32_t>::max() ? 1 : 0;
    return true;
}

void World::releaseChannel(std::uint32_t id) {
    const auto found = m_retained.find(id);
    if (found != m_retained.end() && --found->second == 0)
        m_retained.erase(found);
}

void World::addProfile(const Profile& profile) {
    if (m_profiles.size() < largestNumberOfProfiles)
        m_profiles.insert(profile);
}

bool World::hasProfile(const Profile& profile) const {
    return m_profiles.contains(profile);
}

std::int32_t World::sendDrmMessage(const std::string& drmSystemId) {
    // The id is signed in the reply and unsigned in the response, so it stays where both agree.
    m_lastTransaction = m_lastTransaction == 0x7FFFFFFF ? 1 : m_lastTransaction + 1;
    const auto transaction = m_lastTransaction;
    const auto system =
        std::find_if(m_scenario.drm.systems.begin(), m_scenario.drm.systems.end(),
                     [&drmSystemId](const DrmSystem& candidate) { return candidate.id == drmSystemId; });
    const bool known = system != m_scenario.drm.systems.end();
    if (known && !system->replies)
        return static_cast<std::int32_t>(transaction);
    const auto code = known ? system->resultCode : resultUnknownDrmSystem;
    const auto message = known ? system->resultMessage : std::string();
    m_drmReplies.emplace(transaction, m_timers)
        .start(known ? system->replyMs : 0, [this, transaction, code, message] {
            m_drmReplies.erase(transaction);
            m_events.playReadyResponse(transaction, code, message);
        });
    return static_cast<std::int32_t>(transaction);
}

nlohmann::json World::document() const {
    auto live = m_document;
    live["keys"]["mask"] = m_scenario.keys.mask;
    live["broadcast"]["current_channel"] = m_scenario.broadcast.currentChannel;
    live["broadcast"]["related"] = m_scenario.broadcast.related;
    return live;
}

nlohmann::json World::state() {
    nlohmann::json state = {{"views", nlohmann::json::object()},
                            {"broadcast_players", nlohmann::json::object()},
                            {"media_players", nlohmann::json::object()},
                            {"retained_channels", nlohmann::json::object()},
                            {"stream_event_subscriptions", m_streamEvents.size()},
                            {"queries", m_search.queries().size()},
                            {"searches", m_search.searches().size()},
                            {"search_results", m_search.results().size()}};
    for (const auto& [id, view] : m_applications.views())
        state["views"][std::to_string(id)] = {
            {"url", view.url}, {"visible", view.visible}, {"started", view.started}};
    m_broadcast.players().forEach([&state](std::uint32_t id, const BroadcastPlayer& player) {
        state["broadcast_players"][std::to_string(id)] = {{"state", static_cast<int>(player.state)},
                                                          {"volume", player.volume},
                                                          {"window", describe(player.window)}};
    });
    m_media.sessions().forEach([&state](std::uint32_t id, const MediaSession& session) {
        const auto* player = session.player();
        state["media_players"][std::to_string(id)] = {
            {"url", session.url()},
            {"mime_type", session.mimeType},
            {"location", session.location},
            {"attributes", session.attributes()},
            {"state", player == nullptr ? 0 : static_cast<int>(player->state())},
            {"volume", session.volume()},
            {"window", describe(session.window())}};
    });
    for (const auto& [id, count] : m_retained)
        state["retained_channels"][std::to_string(id)] = count;
    return state;
}

void World::adopt(Scenario next) {
    const auto before = std::move(m_scenario);
    m_scenario = std::move(next);
    for (auto entry = m_retained.begin(); entry != m_retained.end();)
        entry = m_scenario.channel(entry->first) == nullptr ? m_retained.erase(entry) : std::next(entry);
    if (m_scenario.keys.mask != before.keys.mask)
        m_events.keyMaskChanged(m_scenario.keys.mask);
    if (m_scenario.broadcast.currentChannel != before.broadcast.currentChannel)
        m_broadcast.currentChannelChanged();
    if (m_scenario.drm.sasSessionOpen != before.drm.sasSessionOpen)
        m_events.pluginEventUnsigned(Event::SasSession, 0, m_scenario.drm.sasSessionOpen ? 1 : 0);
}

}  // namespace Receiver
