#include "Host/Receiver/World/BroadcastPlayers.h"

#include <algorithm>
#include <vector>

namespace Receiver {

namespace {

constexpr std::uint32_t idTypeSiDirect = 13;
constexpr std::int32_t noParentalLock = 255;
// What a page that goes away releases.
constexpr std::uint32_t everyPlayer = 0;

}  // namespace

bool BroadcastPlayers::bindToCurrentChannel(std::uint32_t pluginId) {
    if (m_scenario.channel(m_scenario.broadcast.currentChannel) == nullptr)
        return false;
    // A player that already shows the channel stays as it is.
    const auto before = state(pluginId);
    if (before != BroadcastState::Presenting && before != BroadcastState::Connecting)
        tune(pluginId, m_scenario.broadcast.currentChannel, false);
    return true;
}

std::optional<std::uint32_t> BroadcastPlayers::setChannel(std::uint32_t pluginId,
                                                          const ChannelRequest& request) {
    const auto* wanted = find(request);
    if (wanted == nullptr) {
        announce(Event::ChannelChange, pluginId, static_cast<std::int32_t>(request.id),
                 TuningError::UnknownChannel);
        return std::nullopt;
    }
    const auto id = wanted->id;
    tune(pluginId, id, true);
    return id;
}

bool BroadcastPlayers::stepChannel(std::uint32_t pluginId, bool next) {
    std::vector<std::uint32_t> ids;
    for (const auto& channel : m_scenario.broadcast.channels) {
        // A hidden channel is passed over, unless it is where the step starts from.
        if (!channel.hidden || channel.id == m_scenario.broadcast.currentChannel)
            ids.push_back(channel.id);
    }
    if (ids.empty())
        return false;
    const auto count = ids.size();
    const auto at = std::find(ids.begin(), ids.end(), m_scenario.broadcast.currentChannel);
    auto index = next ? 0 : count - 1;
    if (at != ids.end())
        index = (static_cast<std::size_t>(at - ids.begin()) + (next ? 1 : count - 1)) % count;
    tune(pluginId, ids[index], true);
    return true;
}

void BroadcastPlayers::setNullChannel(std::uint32_t pluginId, bool becomeIndependent) {
    player(pluginId).tuning.stop();
    if (becomeIndependent)
        m_scenario.broadcast.related = false;
    setCurrentChannel(0);
    announce(Event::ChannelChange, pluginId, 0);
    changeState(pluginId, BroadcastState::Unrealized);
}

void BroadcastPlayers::release(std::uint32_t pluginId) {
    if (pluginId == everyPlayer) {
        std::vector<std::uint32_t> ids;
        m_players.forEach([&ids](std::uint32_t id, const BroadcastPlayer&) {
            if (id != everyPlayer)
                ids.push_back(id);
        });
        for (const auto id : ids)
            release(id);
    }
    const bool realized = state(pluginId) != BroadcastState::Unrealized;
    if (realized) {
        player(pluginId).state = BroadcastState::Unrealized;
        updatePlane(pluginId);
    }
    m_players.erase(pluginId);
    if (realized)
        announce(Event::BroadcastState, pluginId, static_cast<std::int32_t>(BroadcastState::Unrealized));
}

void BroadcastPlayers::stop(std::uint32_t pluginId) {
    const auto before = state(pluginId);
    if (before != BroadcastState::Connecting && before != BroadcastState::Presenting)
        return;
    player(pluginId).tuning.stop();
    changeState(pluginId, BroadcastState::Stopped);
}

BroadcastState BroadcastPlayers::state(std::uint32_t pluginId) {
    const auto* found = m_players.find(pluginId);
    return found == nullptr ? BroadcastState::Unrealized : found->state;
}

const Channel* BroadcastPlayers::channel(std::uint32_t pluginId) {
    if (state(pluginId) == BroadcastState::Unrealized)
        return nullptr;
    return m_scenario.channel(m_scenario.broadcast.currentChannel);
}

void BroadcastPlayers::setVolume(std::uint32_t pluginId, std::int32_t volume) {
    player(pluginId).volume = std::clamp(volume, 0, 100);
}

std::int32_t BroadcastPlayers::volume(std::uint32_t pluginId) {
    const auto* found = m_players.find(pluginId);
    return found == nullptr ? m_scenario.broadcast.volume : found->volume;
}

void BroadcastPlayers::setWindow(std::uint32_t pluginId, const VideoWindow& window) {
    player(pluginId).window = window;
    updatePlane(pluginId);
}

std::vector<Component> BroadcastPlayers::components(std::uint32_t pluginId, ComponentType type,
                                                    bool activeOnly) {
    const auto* shown = channel(pluginId);
    if (shown == nullptr)
        return {};
    // Nothing is decoded while the player is stopped.
    if (activeOnly && state(pluginId) == BroadcastState::Stopped)
        return {};
    const auto& languages = type == ComponentType::Subtitle ? m_scenario.locale.subtitleLanguages
                                                            : m_scenario.locale.audioLanguages;
    return player(pluginId).selection.list(shown->components, type, activeOnly, languages);
}

void BroadcastPlayers::selectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid) {
    const auto* shown = channel(pluginId);
    if (shown != nullptr && player(pluginId).selection.select(shown->components, type, pid))
        m_events.pluginEventSigned(Event::BroadcastComponentSelect, pluginId, type);
}

void BroadcastPlayers::unselectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid) {
    const auto* shown = channel(pluginId);
    if (shown != nullptr && player(pluginId).selection.unselect(shown->components, type, pid))
        m_events.pluginEventSigned(Event::BroadcastComponentSelect, pluginId, type);
}

void BroadcastPlayers::currentChannelChanged() {
    const auto current = m_scenario.broadcast.currentChannel;
    if (current != 0)
        m_lastChannel = current;
    std::vector<std::uint32_t> realized;
    m_players.forEach([&realized](std::uint32_t pluginId, const BroadcastPlayer& candidate) {
        if (candidate.state == BroadcastState::Connecting || candidate.state == BroadcastState::Presenting)
            realized.push_back(pluginId);
    });
    for (const auto pluginId : realized) {
        if (current == 0)
            setNullChannel(pluginId, false);
        else
            tune(pluginId, current, true);
    }
}

void BroadcastPlayers::restoreChannel() {
    if (m_scenario.broadcast.currentChannel == 0 && m_scenario.channel(m_lastChannel) != nullptr)
        m_scenario.broadcast.currentChannel = m_lastChannel;
}

BroadcastPlayer& BroadcastPlayers::player(std::uint32_t pluginId) {
    auto* found = m_players.find(pluginId);
    return found != nullptr ? *found : m_players.emplace(pluginId, m_timers, m_scenario.broadcast.volume);
}

const Channel* BroadcastPlayers::find(const ChannelRequest& request) const {
    if (request.id != 0)
        return m_scenario.channel(request.id);
    const bool bySiOnly = request.idType == idTypeSiDirect && !request.dsd.empty();
    for (const auto& channel : m_scenario.broadcast.channels) {
        const bool sameService = channel.sid == static_cast<std::uint32_t>(request.sid);
        const bool sameStream = channel.onid == static_cast<std::uint32_t>(request.onid) &&
                                channel.tsid == static_cast<std::uint32_t>(request.tsid);
        if (sameService && (bySiOnly || sameStream))
            return &channel;
    }
    return nullptr;
}

std::optional<std::int32_t> BroadcastPlayers::obstacle(const Channel& channel) const {
    if (channel.tuningError)
        return channel.tuningError;
    if (!channel.authorised)
        return TuningError::KeyMissing;
    const auto threshold = m_scenario.parental.lockStatus;
    const bool rated = threshold != noParentalLock && m_presentRating(channel) > threshold;
    if (channel.locked || channel.manualBlock || rated)
        return TuningError::ParentalLock;
    return std::nullopt;
}

void BroadcastPlayers::tune(std::uint32_t pluginId, std::uint32_t channelId, bool isChange) {
    auto& tuning = player(pluginId);
    tuning.selection.reset();
    tuning.tuning.start(m_scenario.broadcast.tuneMs, [this, pluginId, channelId, isChange] {
        finishTuning(pluginId, channelId, isChange);
    });
    changeState(pluginId, BroadcastState::Connecting);
}

void BroadcastPlayers::finishTuning(std::uint32_t pluginId, std::uint32_t channelId, bool isChange) {
    const auto* found = m_scenario.channel(channelId);
    const auto error = found == nullptr ? TuningError::UnknownChannel : obstacle(*found).value_or(NoError);
    const auto rating = found == nullptr ? std::uint8_t{0} : m_presentRating(*found);
    if (error == NoError && isChange) {
        setCurrentChannel(channelId);
        m_scenario.broadcast.related = true;
    }
    if (isChange)
        announce(Event::ChannelChange, pluginId, static_cast<std::int32_t>(channelId), error);
    changeState(pluginId, error == NoError ? BroadcastState::Presenting : BroadcastState::Unrealized, error);
    if (rating > 0 && (error == NoError || error == TuningError::ParentalLock))
        announce(Event::BroadcastParentalRating, pluginId, rating, 0);
}

void BroadcastPlayers::announce(std::int32_t event, std::uint32_t pluginId, std::int32_t value,
                                std::int32_t error) {
    m_events.pluginEventData(event, pluginId, value, error);
}

void BroadcastPlayers::changeState(std::uint32_t pluginId, BroadcastState state, std::int32_t error) {
    player(pluginId).state = state;
    updatePlane(pluginId);
    announce(Event::BroadcastState, pluginId, static_cast<std::int32_t>(state), error);
}

void BroadcastPlayers::setCurrentChannel(std::uint32_t channelId) {
    if (m_scenario.broadcast.currentChannel != 0)
        m_lastChannel = m_scenario.broadcast.currentChannel;
    m_scenario.broadcast.currentChannel = channelId;
    // There is one tuner: other players show its new channel too.
    std::vector<std::uint32_t> seen;
    for (const auto& [shown, content] : m_plane.shown()) {
        if (shown.kind == PlaneKind::Broadcast)
            seen.push_back(shown.pluginId);
    }
    for (const auto pluginId : seen)
        updatePlane(pluginId);
}

void BroadcastPlayers::updatePlane(std::uint32_t pluginId) {
    const auto& updated = player(pluginId);
    const bool isSeen = updated.state == BroadcastState::Presenting && updated.window.isSomewhere();
    const auto* shown = isSeen ? channel(pluginId) : nullptr;
    if (shown == nullptr)
        m_plane.hide({PlaneKind::Broadcast, pluginId});
    else
        m_plane.show({PlaneKind::Broadcast, pluginId}, {updated.window, shown->name, PlanePicture::Card});
}

}  // namespace Receiver
