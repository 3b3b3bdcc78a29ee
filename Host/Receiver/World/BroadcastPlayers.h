// The players of broadcast that one caller holds, told apart by their plugin id.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Host/Receiver/World/BoundedStore.h"
#include "Host/Receiver/World/Components.h"
#include "Host/Receiver/World/LivePicture.h"
#include "Host/Receiver/World/Plane.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Timers.h"
#include "Host/Receiver/World/Tuner.h"

namespace Receiver {

enum class BroadcastState { Unrealized = 0, Connecting = 1, Presenting = 2, Stopped = 3 };

struct ChannelRequest {
    std::uint32_t idType = 0;
    std::string dsd;
    std::int32_t onid = 0;
    std::int32_t tsid = 0;
    std::int32_t sid = 0;
    std::uint32_t id = 0;
};

struct BroadcastPlayer {
    explicit BroadcastPlayer(Timers& timers, std::int32_t initialVolume)
        : volume(initialVolume), tuning(timers) {}

    BroadcastState state = BroadcastState::Unrealized;
    std::int32_t volume;
    VideoWindow window;
    ComponentSelection selection;
    Timer tuning;
};

class BroadcastPlayers {
 public:
    BroadcastPlayers(CallerName caller, const Scenario& scenario, Tuner& tuner, Timers& timers,
                     ReceiverEvents& events, Plane& plane, const LivePicture& live)
        : m_caller(std::move(caller)),
          m_scenario(scenario),
          m_tuner(tuner),
          m_timers(timers),
          m_events(events),
          m_plane(plane),
          m_live(live) {}

    [[nodiscard]] bool bindToCurrentChannel(std::uint32_t pluginId);
    // The channel's id, or nothing when the receiver knows no such channel.
    [[nodiscard]] std::optional<std::uint32_t> setChannel(std::uint32_t pluginId,
                                                          const ChannelRequest& request);
    // False when there is no channel to change to.
    [[nodiscard]] bool stepChannel(std::uint32_t pluginId, bool next);
    void setNullChannel(std::uint32_t pluginId, bool becomeIndependent);
    void release(std::uint32_t pluginId);
    void stop(std::uint32_t pluginId);

    [[nodiscard]] BroadcastState state(std::uint32_t pluginId);
    // No player does anything.
    [[nodiscard]] bool areUnrealized() const {
        return idsOf([](BroadcastState state) { return state != BroadcastState::Unrealized; }).empty();
    }
    // What the player shows or would show; nothing while it is unrealized.
    [[nodiscard]] const Channel* channel(std::uint32_t pluginId);
    void setVolume(std::uint32_t pluginId, std::int32_t volume);
    [[nodiscard]] std::int32_t volume(std::uint32_t pluginId);
    // The highest volume of those that present; nothing when none does.
    [[nodiscard]] std::optional<std::int32_t> loudest() const;
    void setWindow(std::uint32_t pluginId, const VideoWindow& window);
    [[nodiscard]] std::vector<Component> components(std::uint32_t pluginId, ComponentType type,
                                                    bool activeOnly);
    void selectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid);
    void unselectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid);

    // Somebody used the remote control, or the scenario changed: every realised player tunes as well.
    void currentChannelChanged();
    // Another player, perhaps another caller's, has changed the channel: every other one that presents goes
    // along.
    void follow(const PlanePlayer& by);
    // There is another picture of the channel.
    void pictureChanged();

    [[nodiscard]] const BoundedStore<BroadcastPlayer>& players() const { return m_players; }

 private:
    [[nodiscard]] BroadcastPlayer& player(std::uint32_t pluginId);
    [[nodiscard]] const Channel* find(const ChannelRequest& request) const;
    void tune(std::uint32_t pluginId, std::uint32_t channelId, bool isChange);
    void finishTuning(std::uint32_t pluginId, std::uint32_t channelId, bool isChange);
    // The event is on the bus before the reply to the call that caused it, so events never overtake each
    // other.
    void announce(std::int32_t event, std::uint32_t pluginId, std::int32_t value,
                  std::int32_t error = NoError);
    void changeState(std::uint32_t pluginId, BroadcastState state, std::int32_t error = NoError);
    void announceRating(std::uint32_t pluginId, const Channel& channel);
    void toNullChannel(std::uint32_t pluginId);
    [[nodiscard]] std::vector<std::uint32_t> idsOf(bool (*wanted)(BroadcastState)) const;
    [[nodiscard]] PlanePlayer identity(std::uint32_t pluginId) const {
        return {PlaneKind::Broadcast, m_caller, pluginId};
    }
    void end(std::uint32_t pluginId, BroadcastPlayer& player);
    void selectionChanged(std::uint32_t pluginId, std::int32_t type);
    void updatePlane(std::uint32_t pluginId);

    const CallerName m_caller;
    const Scenario& m_scenario;
    Tuner& m_tuner;
    Timers& m_timers;
    ReceiverEvents& m_events;
    Plane& m_plane;
    const LivePicture& m_live;
    BoundedStore<BroadcastPlayer> m_players{
        64, [](const BroadcastPlayer& player) { return player.state != BroadcastState::Unrealized; },
        [this](std::uint32_t id, BroadcastPlayer& player) { end(id, player); }};
};

}  // namespace Receiver
