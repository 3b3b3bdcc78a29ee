// The simulated receiver's state, without any D-Bus: what the scenario says and what has happened since.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Host/Receiver/World/Applications.h"
#include "Host/Receiver/World/BroadcastPlayers.h"
#include "Host/Receiver/World/Carousel.h"
#include "Host/Receiver/World/MediaPlayers.h"
#include "Host/Receiver/World/MetadataSearch.h"
#include "Host/Receiver/World/Plane.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Schedule.h"
#include "Host/Receiver/World/StreamEvents.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class World {
 public:
    // Throws ScenarioError. Folders that the scenario names are relative to the given one. Without a factory
    // broadband media are simulated.
    World(nlohmann::json document, std::string folder, Timers& timers, ReceiverEvents& events,
          MediaPlayerFactory makePlayer = nullptr);

    [[nodiscard]] const Scenario& scenario() const { return m_scenario; }
    [[nodiscard]] Applications& applications() { return m_applications; }
    [[nodiscard]] const Plane& plane() const { return m_plane; }
    [[nodiscard]] BroadcastPlayers& broadcast() { return m_broadcast; }
    [[nodiscard]] MediaPlayers& media() { return m_media; }
    [[nodiscard]] StreamEvents& streamEvents() { return m_streamEvents; }
    [[nodiscard]] MetadataSearch& search() { return m_search; }
    [[nodiscard]] Carousel& carousel() { return m_carousel; }

    // A value of the scenario, with what changes by itself as it is now; below "/state" what the scenario
    // does not describe (views, players, subscriptions). Both throw ScenarioError.
    [[nodiscard]] nlohmann::json value(const std::string& pointer);
    void setValue(const std::string& pointer, const std::string& json);

    // A view that was not known before is a new application: broadcast-related again as the scenario says.
    void registerView(std::int32_t viewId, const std::string& url);

    void setKeyMask(std::uint32_t mask);

    [[nodiscard]] std::int64_t utc() const;
    [[nodiscard]] std::vector<ScheduledProgramme> programmes(std::uint32_t channelId) const;
    // The channels that a dvb: address names, and its event.
    [[nodiscard]] std::vector<std::uint32_t> channelsAt(const std::string& url, std::uint16_t& eventId) const;

    // A channel's cache entry; false for a channel that does not exist.
    [[nodiscard]] bool retainChannel(std::uint32_t id);
    void releaseChannel(std::uint32_t id);

    void addProfile(const Profile& profile);
    [[nodiscard]] bool hasProfile(const Profile& profile) const;

    // The transaction id; the answer follows as an event.
    [[nodiscard]] std::int32_t sendDrmMessage(const std::string& drmSystemId);

 private:
    [[nodiscard]] nlohmann::json document() const;
    [[nodiscard]] nlohmann::json state();
    void adopt(Scenario next);

    nlohmann::json m_document;
    const std::string m_folder;
    Scenario m_scenario;
    Timers& m_timers;
    ReceiverEvents& m_events;
    Applications m_applications;
    Plane m_plane;
    BroadcastPlayers m_broadcast;
    MediaPlayers m_media;
    StreamEvents m_streamEvents;
    MetadataSearch m_search;
    Carousel m_carousel;
    bool m_relatedAtStart;
    std::int64_t m_origin;
    std::map<std::uint32_t, std::uint32_t> m_retained;
    std::set<Profile> m_profiles;
    std::uint32_t m_lastTransaction = 0;
    BoundedStore<Timer> m_drmReplies{64};
};

}  // namespace Receiver
