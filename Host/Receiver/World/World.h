// The simulated receiver's state, without any D-Bus: what the scenario says and what has happened since.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Host/Receiver/World/Applications.h"
#include "Host/Receiver/World/Caller.h"
#include "Host/Receiver/World/LivePicture.h"
#include "Host/Receiver/World/Plane.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Schedule.h"
#include "Host/Receiver/World/Timers.h"
#include "Host/Receiver/World/Tuner.h"

namespace Receiver {

class World {
 public:
    // Throws ScenarioError. Folders and pictures that the scenario names are relative to the given folder,
    // pictures that are not there to the other one. Without a factory media are simulated.
    World(nlohmann::json document, std::string folder, Timers& timers, ReceiverEvents& events,
          MediaPlayerFactory makePlayer = nullptr, const std::string& pictures = "");
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World();

    [[nodiscard]] const Scenario& scenario() const { return m_scenario; }
    [[nodiscard]] Applications& applications() { return m_applications; }
    [[nodiscard]] const Plane& plane() const { return m_plane; }
    [[nodiscard]] const LivePicture& live() const { return m_live; }

    // Makes the caller known on first use.
    [[nodiscard]] Caller& caller(const CallerName& name);
    // Null for one that has asked nothing yet.
    [[nodiscard]] Caller* find(const CallerName& name);
    // It has left the bus: what it held is given back.
    void forget(const CallerName& name);

    // A value of the scenario, with what changes by itself as it is now; below "/state" what the scenario
    // does not describe (views, callers and what they hold). Both throw ScenarioError.
    [[nodiscard]] nlohmann::json value(const std::string& pointer);
    void setValue(const std::string& pointer, const std::string& json);

    // A view that was not known before is a new application: broadcast-related again as the scenario says. It
    // is its shell's, and goes with it.
    void registerView(std::int32_t viewId, const std::string& url, const CallerName& shell);
    // False for a view that is not known.
    [[nodiscard]] bool unregisterView(std::int32_t viewId);

    // For all callers that have subscribed to it; how many subscriptions there were.
    std::size_t triggerStreamEvent(const std::string& name, const std::vector<std::uint8_t>& data);

    // The channel that is to be seen behind the applications.
    [[nodiscard]] RunningChannel runningChannel() const;

    void setKeyMask(std::uint32_t mask);

    [[nodiscard]] std::int64_t utc() const;
    [[nodiscard]] std::vector<ScheduledProgramme> programmes(std::uint32_t channelId) const;
    // The channels that a dvb: address names, and its event.
    [[nodiscard]] std::vector<std::uint32_t> channelsAt(const std::string& url, std::uint16_t& eventId) const;

    void addProfile(const Profile& profile);
    [[nodiscard]] bool hasProfile(const Profile& profile) const;

 private:
    [[nodiscard]] nlohmann::json document() const;
    [[nodiscard]] nlohmann::json state();
    void adopt(Scenario next);
    // Tells of another running channel once all that happens now has happened, and has the live picture shown
    // for as long as somebody looks at it.
    void reviewRunningChannel();
    // Of the live picture; nothing when nobody looks.
    [[nodiscard]] std::optional<std::int32_t> liveVolume() const;

    // Never null; apart from this header, because its own takes two seconds to compile.
    std::unique_ptr<nlohmann::json> m_document;
    const std::string m_folder;
    Scenario m_scenario;
    Timers& m_timers;
    ReceiverEvents& m_events;
    Applications m_applications;
    RunningChannel m_runningChannel;
    Timer m_review;
    Plane m_plane;
    bool m_relatedAtStart;
    std::int64_t m_origin;
    std::set<Profile> m_profiles;
    Tuner m_tuner;
    const Surroundings m_surroundings;
    LivePicture m_live;
    std::map<CallerName, std::unique_ptr<Caller>> m_callers;
};

}  // namespace Receiver
