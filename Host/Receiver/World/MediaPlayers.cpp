#include "Host/Receiver/World/MediaPlayers.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace Receiver {

namespace {

constexpr std::size_t longestQueue = 32;
constexpr std::size_t mostAttributes = 64;
// What a page that goes away releases.
constexpr std::uint32_t everyPlayer = 0;

// "Video/MP4; codecs=..." is the type "video/mp4".
std::string plainType(const std::string& mimeType) {
    auto type = mimeType.substr(0, mimeType.find(';'));
    while (!type.empty() && type.back() == ' ')
        type.pop_back();
    std::transform(type.begin(), type.end(), type.begin(), [](unsigned char c) { return std::tolower(c); });
    return type;
}

bool isAtWork(const MediaSession& session) {
    if (session.player() == nullptr)
        return false;
    const auto state = session.player()->state();
    return state != MediaState::Stopped && state != MediaState::Finished && state != MediaState::Error;
}

}  // namespace

void MediaSession::acquire(const MediaPlayerFactory& make) {
    if (m_player != nullptr)
        return;
    m_player = make(*this);
    m_player->load(m_url);
}

void MediaSession::setUrl(const std::string& url) {
    m_url = url;
    selection.reset();
    if (m_player != nullptr)
        m_player->load(url);
}

void MediaSession::setAttribute(const std::string& name, const std::string& value) {
    if (m_attributes.contains(name) || m_attributes.size() < mostAttributes)
        m_attributes[name] = value;
}

bool MediaSession::queue(const std::string& url) {
    if (url.empty()) {
        m_queue.clear();
        return true;
    }
    if (m_queue.size() >= longestQueue)
        return false;
    m_queue.push_back(url);
    return true;
}

void MediaSession::mediaStateChanged(MediaState state, std::int32_t error) {
    m_error = error;
    m_events.pluginEventData(Event::MediaState, m_pluginId, static_cast<std::int32_t>(state), error);
    if (state != MediaState::Finished || m_queue.empty())
        return;
    const auto next = m_queue.front();
    m_queue.pop_front();
    setUrl(next);
    (void)m_player->play(1.0);
}

void MediaSession::mediaSpeedChanged(double speed) {
    m_events.pluginEventFloat(Event::MediaSpeed, m_pluginId, speed);
}

void MediaSession::mediaPositionChanged(std::uint32_t milliseconds) {
    m_events.pluginEventUnsigned(Event::MediaPosition, m_pluginId, milliseconds);
}

MediaSession& MediaPlayers::session(std::uint32_t pluginId) {
    auto* found = m_sessions.find(pluginId);
    if (found != nullptr)
        return *found;
    return m_sessions.emplace(pluginId, pluginId, m_scenario.broadcast.volume, m_events);
}

MediaPlayer* MediaPlayers::player(std::uint32_t pluginId) {
    const auto* found = m_sessions.find(pluginId);
    return found == nullptr ? nullptr : found->player();
}

bool MediaPlayers::acquire(std::uint32_t pluginId) {
    std::size_t atWork = 0;
    m_sessions.forEach([&](std::uint32_t other, const MediaSession& candidate) {
        atWork += other != pluginId && isAtWork(candidate) ? 1 : 0;
    });
    if (atWork >= m_scenario.media.maximumPlayers)
        return false;
    session(pluginId).acquire(m_make);
    return true;
}

bool MediaPlayers::supports(const std::string& mimeType) const {
    const auto& known = m_scenario.media.mimeTypes;
    return std::find(known.begin(), known.end(), plainType(mimeType)) != known.end();
}

bool MediaPlayers::setMimeType(std::uint32_t pluginId, const std::string& mimeType) {
    if (!supports(mimeType))
        return false;
    session(pluginId).mimeType = mimeType;
    return true;
}

std::vector<Component> MediaPlayers::components(std::uint32_t pluginId, ComponentType type, bool activeOnly) {
    const auto* playing = player(pluginId);
    if (playing == nullptr)
        return {};
    const auto& languages = type == ComponentType::Subtitle ? m_scenario.locale.subtitleLanguages
                                                            : m_scenario.locale.audioLanguages;
    return session(pluginId).selection.list(playing->components(), type, activeOnly, languages);
}

void MediaPlayers::selectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid) {
    const auto* playing = player(pluginId);
    if (playing != nullptr && session(pluginId).selection.select(playing->components(), type, pid))
        m_events.pluginEventSigned(Event::MediaComponentSelect, pluginId, type);
}

void MediaPlayers::unselectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid) {
    const auto* playing = player(pluginId);
    if (playing != nullptr && session(pluginId).selection.unselect(playing->components(), type, pid))
        m_events.pluginEventSigned(Event::MediaComponentSelect, pluginId, type);
}

void MediaPlayers::release(std::uint32_t pluginId) {
    if (pluginId == everyPlayer) {
        std::vector<std::uint32_t> ids;
        m_sessions.forEach([&ids](std::uint32_t id, const MediaSession&) {
            if (id != everyPlayer)
                ids.push_back(id);
        });
        for (const auto id : ids)
            release(id);
    }
    auto* playing = player(pluginId);
    if (playing != nullptr)
        playing->stop();
    m_sessions.erase(pluginId);
}

}  // namespace Receiver
