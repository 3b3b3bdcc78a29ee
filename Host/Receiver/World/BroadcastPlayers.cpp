#include "Host/Receiver/World/BroadcastPlayers.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace Receiver {

namespace {

constexpr std::uint32_t kIdTypeSiDirect = 13;
// What a page that goes away releases.
constexpr std::uint32_t kEveryPlayer = 0;

bool isRealized(BroadcastState state) {
    return state == BroadcastState::Connecting || state == BroadcastState::Presenting;
}

bool isPresenting(BroadcastState state) {
    return state == BroadcastState::Presenting;
}

// Whether the page has taken away all sound that the channel tells of.
bool isMuted(const BroadcastPlayer& player, const Channel* channel) {
    const auto sounds = [&](bool active) {
        return !player.selection.list(channel->components, ComponentType::Audio, active, "").empty();
    };
    return channel != nullptr && sounds(false) && !sounds(true);
}

}  // namespace

bool BroadcastPlayers::bindToCurrentChannel(std::uint32_t pluginId) {
    if (m_tuner.channel() == nullptr)
        return false;
    // A player that already shows the channel stays as it is.
    if (!isRealized(state(pluginId)))
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
        m_tuner.setRelated(false);
    m_tuner.change(0, identity(pluginId));
    toNullChannel(pluginId);
}

void BroadcastPlayers::toNullChannel(std::uint32_t pluginId) {
    player(pluginId).tuning.stop();
    announce(Event::ChannelChange, pluginId, 0);
    changeState(pluginId, BroadcastState::Unrealized);
}

void BroadcastPlayers::release(std::uint32_t pluginId) {
    if (pluginId == kEveryPlayer)
        m_players.clear();
    else
        m_players.erase(pluginId);
}

void BroadcastPlayers::end(std::uint32_t pluginId, BroadcastPlayer& player) {
    m_plane.hide(identity(pluginId));
    if (std::exchange(player.state, BroadcastState::Unrealized) != BroadcastState::Unrealized)
        announce(Event::BroadcastState, pluginId, static_cast<std::int32_t>(BroadcastState::Unrealized));
}

std::vector<std::uint32_t> BroadcastPlayers::idsOf(bool (*wanted)(BroadcastState)) const {
    std::vector<std::uint32_t> ids;
    m_players.forEach([&](std::uint32_t id, const BroadcastPlayer& player) {
        if (wanted(player.state))
            ids.push_back(id);
    });
    return ids;
}

void BroadcastPlayers::stop(std::uint32_t pluginId) {
    if (!isRealized(state(pluginId)))
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
    return m_tuner.channel();
}

void BroadcastPlayers::setVolume(std::uint32_t pluginId, std::int32_t volume) {
    player(pluginId).volume = std::clamp(volume, 0, 100);
    updatePlane(pluginId);
}

std::int32_t BroadcastPlayers::volume(std::uint32_t pluginId) {
    const auto* found = m_players.find(pluginId);
    return found == nullptr ? m_scenario.broadcast.volume : found->volume;
}

std::optional<std::int32_t> BroadcastPlayers::loudest() const {
    std::optional<std::int32_t> volume;
    m_players.forEach([&](std::uint32_t, const BroadcastPlayer& player) {
        if (isPresenting(player.state))
            volume = std::max(volume.value_or(0), isMuted(player, m_tuner.channel()) ? 0 : player.volume);
    });
    return volume;
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
        selectionChanged(pluginId, type);
}

void BroadcastPlayers::unselectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid) {
    const auto* shown = channel(pluginId);
    if (shown != nullptr && player(pluginId).selection.unselect(shown->components, type, pid))
        selectionChanged(pluginId, type);
}

void BroadcastPlayers::selectionChanged(std::uint32_t pluginId, std::int32_t type) {
    updatePlane(pluginId);
    m_events.pluginEventSigned(m_caller, Event::BroadcastComponentSelect, pluginId, type);
}

void BroadcastPlayers::currentChannelChanged() {
    for (const auto pluginId : idsOf(isRealized)) {
        if (m_tuner.channel() == nullptr)
            toNullChannel(pluginId);
        else
            tune(pluginId, m_scenario.broadcast.currentChannel, true);
    }
}

void BroadcastPlayers::follow(const PlanePlayer& by) {
    const auto* shown = m_tuner.channel();
    for (const auto pluginId : idsOf(isPresenting)) {
        if (identity(pluginId) == by)
            continue;
        if (shown == nullptr) {
            toNullChannel(pluginId);
            continue;
        }
        player(pluginId).selection.reset();
        updatePlane(pluginId);
        announce(Event::ChannelChange, pluginId, static_cast<std::int32_t>(shown->id));
        announceRating(pluginId, *shown);
    }
}

void BroadcastPlayers::pictureChanged() {
    for (const auto pluginId : idsOf(isPresenting))
        updatePlane(pluginId);
}

BroadcastPlayer& BroadcastPlayers::player(std::uint32_t pluginId) {
    auto* found = m_players.find(pluginId);
    return found != nullptr ? *found : m_players.emplace(pluginId, m_timers, m_scenario.broadcast.volume);
}

const Channel* BroadcastPlayers::find(const ChannelRequest& request) const {
    if (request.id != 0)
        return m_scenario.channel(request.id);
    const bool bySiOnly = request.idType == kIdTypeSiDirect && !request.dsd.empty();
    for (const auto& channel : m_scenario.broadcast.channels) {
        const bool sameService = channel.sid == static_cast<std::uint32_t>(request.sid);
        const bool sameStream = channel.onid == static_cast<std::uint32_t>(request.onid) &&
                                channel.tsid == static_cast<std::uint32_t>(request.tsid);
        if (sameService && (bySiOnly || sameStream))
            return &channel;
    }
    return nullptr;
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
    // Who only binds gets what the tuner has come to meanwhile.
    const auto* found = isChange ? m_scenario.channel(channelId) : m_tuner.channel();
    const auto error =
        found == nullptr ? TuningError::UnknownChannel : m_tuner.obstacle(*found).value_or(NoError);
    if (error == NoError && isChange) {
        m_tuner.change(channelId, identity(pluginId));
        m_tuner.setRelated(true);
    }
    if (isChange)
        announce(Event::ChannelChange, pluginId, static_cast<std::int32_t>(channelId), error);
    changeState(pluginId, error == NoError ? BroadcastState::Presenting : BroadcastState::Unrealized, error);
    if (found != nullptr && (error == NoError || error == TuningError::ParentalLock))
        announceRating(pluginId, *found);
}

void BroadcastPlayers::announceRating(std::uint32_t pluginId, const Channel& channel) {
    if (const auto rating = m_tuner.rating(channel); rating > 0)
        announce(Event::BroadcastParentalRating, pluginId, rating, 0);
}

void BroadcastPlayers::announce(std::int32_t event, std::uint32_t pluginId, std::int32_t value,
                                std::int32_t error) {
    m_events.pluginEventData(m_caller, event, pluginId, value, error);
}

void BroadcastPlayers::changeState(std::uint32_t pluginId, BroadcastState state, std::int32_t error) {
    player(pluginId).state = state;
    updatePlane(pluginId);
    announce(Event::BroadcastState, pluginId, static_cast<std::int32_t>(state), error);
}

void BroadcastPlayers::updatePlane(std::uint32_t pluginId) {
    const auto& updated = player(pluginId);
    const bool isSeen = updated.state == BroadcastState::Presenting && updated.window.isSomewhere();
    const auto* shown = isSeen ? channel(pluginId) : nullptr;
    if (shown == nullptr)
        m_plane.hide(identity(pluginId));
    else
        m_plane.show(identity(pluginId),
                     {updated.window, shown->name, m_live.pictureOf(*shown),
                      namesOfSubtitles(components(pluginId, ComponentType::Subtitle, true))});
}

}  // namespace Receiver
