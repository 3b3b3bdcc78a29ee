#include "Host/Receiver/World/Caller.h"

#include <algorithm>
#include <limits>

#include <nlohmann/json.hpp>

namespace Receiver {

namespace {

constexpr std::int32_t kResultUnknownDrmSystem = 5;
constexpr std::uint32_t kEveryPlayer = 0;

nlohmann::json describeWindow(const VideoWindow& window) {
    return {{"x", window.x},
            {"y", window.y},
            {"width", window.width},
            {"height", window.height},
            {"full_screen", window.fullScreen}};
}

}  // namespace

Caller::Caller(const CallerName& name, const Surroundings& around)
    : m_name(name),
      m_scenario(around.scenario),
      m_timers(around.timers),
      m_events(around.events),
      m_applications(around.applications),
      m_broadcast(name, around.scenario, around.tuner, around.timers, around.events, around.plane,
                  around.live),
      m_media(name, around.scenario, around.timers, around.events, around.plane, around.makePlayer,
              around.allAtWork),
      m_streamEvents(name, around.scenario, around.timers, around.events),
      m_search(around.scenario, around.timers, around.present),
      m_carousel(name, around.scenario, around.timers, around.events) {}

bool Caller::createApplication(const std::string& url, std::int32_t viewId) {
    return m_applications.create(url, viewId, m_name);
}

bool Caller::retainChannel(std::uint32_t id) {
    if (m_scenario.channel(id) == nullptr)
        return false;
    auto& count = m_retained[id];
    count += count < std::numeric_limits<std::uint32_t>::max() ? 1 : 0;
    return true;
}

void Caller::releaseChannel(std::uint32_t id) {
    const auto found = m_retained.find(id);
    if (found != m_retained.end() && --found->second == 0)
        m_retained.erase(found);
}

std::int32_t Caller::sendDrmMessage(const std::string& drmSystemId) {
    // Signed in the reply and unsigned in the response; the store's ids are the same in both.
    const auto transaction = m_drmReplies.nextId();
    const auto system = std::ranges::find(m_scenario.drm.systems, drmSystemId, &DrmSystem::id);
    const bool known = system != m_scenario.drm.systems.end();
    if (known && !system->replies)
        return static_cast<std::int32_t>(transaction);
    const auto code = known ? system->resultCode : kResultUnknownDrmSystem;
    const auto message = known ? system->resultMessage : std::string();
    m_drmReplies.emplace(transaction, m_timers)
        .start(known ? system->replyMs : 0, [this, transaction, code, message] {
            m_drmReplies.erase(transaction);
            m_events.playReadyResponse(m_name, transaction, code, message);
        });
    return static_cast<std::int32_t>(transaction);
}

void Caller::forgetLostChannels() {
    std::erase_if(m_retained,
                  [this](const auto& entry) { return m_scenario.channel(entry.first) == nullptr; });
}

void Caller::endPlayers() {
    m_media.release(kEveryPlayer);
    m_broadcast.release(kEveryPlayer);
}

nlohmann::json Caller::describe() {
    nlohmann::json held = {{"broadcast_players", nlohmann::json::object()},
                           {"media_players", nlohmann::json::object()},
                           {"retained_channels", nlohmann::json::object()},
                           {"stream_event_subscriptions", m_streamEvents.size()},
                           {"queries", m_search.queries().size()},
                           {"searches", m_search.searches().size()},
                           {"search_results", m_search.results().size()},
                           {"drm_messages", m_drmReplies.size()},
                           {"carousel_requests", m_carousel.size()}};
    m_broadcast.players().forEach([&held](std::uint32_t id, const BroadcastPlayer& player) {
        held["broadcast_players"][std::to_string(id)] = {{"state", static_cast<int>(player.state)},
                                                         {"volume", player.volume},
                                                         {"window", describeWindow(player.window)}};
    });
    m_media.sessions().forEach([&held](std::uint32_t id, const MediaSession& session) {
        held["media_players"][std::to_string(id)] = {{"url", session.url()},
                                                     {"mime_type", session.mimeType},
                                                     {"location", session.location},
                                                     {"attributes", session.attributes()},
                                                     {"state", static_cast<int>(session.state())},
                                                     {"volume", session.volume()},
                                                     {"window", describeWindow(session.window())}};
    });
    for (const auto& [id, count] : m_retained)
        held["retained_channels"][std::to_string(id)] = count;
    return held;
}

}  // namespace Receiver
