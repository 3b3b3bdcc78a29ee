#include "Host/Receiver/World/MediaPlayers.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

constexpr std::size_t kLongestQueue = 32;
constexpr std::size_t kMostAttributes = 64;
// What a page that goes away releases.
constexpr std::uint32_t kEveryPlayer = 0;

// What a viewer is told of an address: the name of the file, of "http://host/films/a.mp4?x=y" this is
// "a.mp4".
std::string fileName(const std::string& url) {
    const auto path = url.substr(0, url.find_first_of("?#"));
    return path.substr(path.rfind('/') + 1);
}

// "Video/MP4; codecs=..." is the type "video/mp4".
std::string plainType(const std::string& mimeType) {
    auto type = mimeType.substr(0, mimeType.find(';'));
    while (!type.empty() && type.back() == ' ')
        type.pop_back();
    std::transform(type.begin(), type.end(), type.begin(), [](unsigned char c) { return std::tolower(c); });
    return type;
}

}  // namespace

void MediaSession::acquire(const MediaPlayerFactory& make) {
    if (m_player != nullptr)
        return;
    m_player = make(*this, m_frames);
    m_player->setVolume(m_volume);
    m_player->load(m_url);
}

void MediaSession::setUrl(const std::string& url) {
    clearQueue();
    load(url);
}

void MediaSession::clearQueue() {
    m_queue.clear();
    m_next.stop();
}

void MediaSession::load(const std::string& url) {
    m_url = url;
    m_selection.reset();
    if (m_player != nullptr)
        m_player->load(url);
    if (m_state != MediaState::Stopped)
        mediaStateChanged(MediaState::Stopped, NoError);
}

void MediaSession::setAttribute(const std::string& name, const std::string& value) {
    if (m_attributes.contains(name) || m_attributes.size() < kMostAttributes)
        m_attributes[name] = value;
}

bool MediaSession::queue(const std::string& url) {
    if (url.empty()) {
        clearQueue();
        return true;
    }
    if (m_queue.size() >= kLongestQueue)
        return false;
    m_queue.push_back(url);
    return true;
}

void MediaSession::playNext() {
    const auto next = m_queue.front();
    m_queue.pop_front();
    m_goesOn = true;
    load(next);
    m_goesOn = false;
    if (!play(1.0))
        mediaStateChanged(MediaState::Error, MediaError::Unidentified);
}

bool MediaSession::isAtWork() const {
    return (m_state != MediaState::Stopped && !isOver(m_state)) || m_next.isRunning();
}

// What lies on the receiver's own disk is for pages that lie there too.
bool MediaSession::mayPlay() const {
    return schemeOf(m_url) != "file" || schemeOf(location) == "file";
}

bool MediaSession::play(double speed) {
    // The next one begins in a moment.
    if (m_next.isRunning())
        return true;
    if (mayPlay())
        return m_player->play(speed);
    // It looks as a medium that is not there does, whether it is there or not.
    mediaStateChanged(MediaState::Connecting, NoError);
    mediaStateChanged(MediaState::Error, MediaError::ContentNotAvailable);
    return true;
}

void MediaSession::setWindow(const VideoWindow& window) {
    m_window = window;
    updatePlane();
}

void MediaSession::stop() {
    clearQueue();
    m_player->stop();
    if (m_state != MediaState::Stopped)
        mediaStateChanged(MediaState::Stopped, NoError);
}

void MediaSession::refuse() {
    stop();
    mediaStateChanged(MediaState::Stopped, MediaError::InsufficientResources);
}

void MediaSession::setVolume(std::int32_t volume) {
    m_volume = volume;
    if (m_player != nullptr)
        m_player->setVolume(volume);
}

std::vector<Component> MediaSession::components(ComponentType type, bool activeOnly) const {
    if (m_player == nullptr)
        return {};
    const auto& languages = type == ComponentType::Subtitle ? m_scenario.locale.subtitleLanguages
                                                            : m_scenario.locale.audioLanguages;
    return m_selection.list(m_player->components(), type, activeOnly, languages);
}

void MediaSession::selectComponent(std::int32_t type, std::int32_t pid) {
    if (m_player != nullptr && m_selection.select(m_player->components(), type, pid))
        selectionChanged(type);
}

void MediaSession::unselectComponent(std::int32_t type, std::int32_t pid) {
    if (m_player != nullptr && m_selection.unselect(m_player->components(), type, pid))
        selectionChanged(type);
}

void MediaSession::selectionChanged(std::int32_t type) {
    present();
    updatePlane();
    m_events.pluginEventSigned(m_identity.caller, Event::MediaComponentSelect, m_identity.pluginId, type);
}

void MediaSession::present() {
    std::vector<Component> active;
    for (const auto type : {ComponentType::Video, ComponentType::Audio, ComponentType::Subtitle}) {
        const auto selected = components(type, true);
        active.insert(active.end(), selected.begin(), selected.end());
    }
    m_player->present(active);
}

void MediaSession::mediaStateChanged(MediaState state, std::int32_t error) {
    if (state == MediaState::Stopped)
        m_frames.clear();
    if (state == MediaState::Stopped && m_goesOn)
        return;
    m_state = state;
    m_error = error;
    const bool rolls = state == MediaState::Playing || state == MediaState::Paused;
    // While it waits for more to play, the last frame stands.
    m_isSeen = rolls || (m_isSeen && state == MediaState::Buffering);
    updatePlane();
    m_events.pluginEventData(m_identity.caller, Event::MediaState, m_identity.pluginId,
                             static_cast<std::int32_t>(state), error);
    // Not now: the player is in the middle of telling this.
    if (isOver(state) && !m_queue.empty())
        m_next.start(0, [this] { playNext(); });
}

void MediaSession::mediaSpeedChanged(double speed) {
    m_events.pluginEventFloat(m_identity.caller, Event::MediaSpeed, m_identity.pluginId, speed);
}

void MediaSession::mediaPositionChanged(std::uint32_t milliseconds) {
    m_events.pluginEventUnsigned(m_identity.caller, Event::MediaPosition, m_identity.pluginId, milliseconds);
}

void MediaSession::updatePlane() {
    if (m_isSeen && m_window.isSomewhere())
        m_plane.show(m_identity, {m_window, fileName(m_url), picture(), subtitles()});
    else
        m_plane.hide(m_identity);
}

PlanePicture MediaSession::picture() const {
    if (areOnlySound(m_player->components()))
        return PlanePicture::Audio;
    if (!m_player->givesFrames())
        return PlanePicture::Card;
    return m_frames.hasFrame() ? PlanePicture::Frames : PlanePicture::None;
}

std::string MediaSession::subtitles() const {
    return m_player->givesFrames() ? m_frames.subtitles()
                                   : namesOfSubtitles(components(ComponentType::Subtitle, true));
}

MediaSession& MediaPlayers::session(std::uint32_t pluginId) {
    auto* found = m_sessions.find(pluginId);
    if (found != nullptr)
        return *found;
    const auto* window = m_windows.find(pluginId);
    return m_sessions.emplace(pluginId, identity(pluginId), m_scenario,
                              window == nullptr ? VideoWindow() : *window, m_timers, m_events, m_plane);
}

MediaPlayer* MediaPlayers::player(std::uint32_t pluginId) {
    const auto* found = m_sessions.find(pluginId);
    return found == nullptr ? nullptr : found->player();
}

bool MediaPlayers::hasDecoderFor(std::uint32_t pluginId) const {
    std::size_t others = m_allAtWork();
    m_sessions.forEach([&](std::uint32_t id, const MediaSession& session) {
        others -= id == pluginId && session.isAtWork() ? 1 : 0;
    });
    return others < m_scenario.media.maximumPlayers;
}

std::size_t MediaPlayers::atWork() const {
    std::size_t count = 0;
    m_sessions.forEach(
        [&count](std::uint32_t, const MediaSession& session) { count += session.isAtWork() ? 1 : 0; });
    return count;
}

bool MediaPlayers::acquire(std::uint32_t pluginId) {
    if (!hasDecoderFor(pluginId))
        return false;
    session(pluginId).acquire(m_make);
    return true;
}

bool MediaPlayers::play(std::uint32_t pluginId, double speed) {
    auto* found = m_sessions.find(pluginId);
    if (found == nullptr || found->player() == nullptr)
        return false;
    if (found->isAtWork() || hasDecoderFor(pluginId))
        return found->play(speed);
    found->refuse();
    return false;
}

bool MediaPlayers::queue(std::uint32_t pluginId, const std::string& url) {
    auto& queued = session(pluginId);
    if (!queued.queue(url))
        return false;
    if (url.empty() || queued.isAtWork())
        return true;
    if (acquire(pluginId)) {
        queued.playNext();
        return true;
    }
    (void)queued.queue("");
    if (queued.player() != nullptr)
        queued.refuse();
    return false;
}

bool MediaPlayers::stop(std::uint32_t pluginId) {
    auto* found = m_sessions.find(pluginId);
    if (found == nullptr || found->player() == nullptr)
        return false;
    found->stop();
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
    const auto* found = m_sessions.find(pluginId);
    return found == nullptr ? std::vector<Component>() : found->components(type, activeOnly);
}

void MediaPlayers::selectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid) {
    auto* found = m_sessions.find(pluginId);
    if (found != nullptr)
        found->selectComponent(type, pid);
}

void MediaPlayers::unselectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid) {
    auto* found = m_sessions.find(pluginId);
    if (found != nullptr)
        found->unselectComponent(type, pid);
}

void MediaPlayers::setWindow(std::uint32_t pluginId, const VideoWindow& window) {
    m_windows.emplace(pluginId, window);
    session(pluginId).setWindow(window);
}

void MediaPlayers::release(std::uint32_t pluginId) {
    if (pluginId != kEveryPlayer) {
        m_sessions.erase(pluginId);
        return;
    }
    m_windows.clear();
    m_sessions.clear();
}

void MediaPlayers::end(std::uint32_t pluginId, MediaSession& session) {
    if (session.player() != nullptr)
        session.stop();
    m_plane.hide(identity(pluginId));
}

}  // namespace Receiver
