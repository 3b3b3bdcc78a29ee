// What one caller holds: its players, and whatever else it has asked the receiver to keep for it. A caller is
// a client of the bus; each web process is one.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include <nlohmann/json_fwd.hpp>

#include "Host/Receiver/World/Applications.h"
#include "Host/Receiver/World/BoundedStore.h"
#include "Host/Receiver/World/BroadcastPlayers.h"
#include "Host/Receiver/World/Carousel.h"
#include "Host/Receiver/World/MediaPlayers.h"
#include "Host/Receiver/World/MetadataSearch.h"
#include "Host/Receiver/World/StreamEvents.h"

namespace Receiver {

// What all callers share.
struct Surroundings {
    const Scenario& scenario;
    Timers& timers;
    ReceiverEvents& events;
    Applications& applications;
    Plane& plane;
    Tuner& tuner;
    const LivePicture& live;
    MediaPlayerFactory makePlayer;
    MediaPlayers::AtWork allAtWork;
    MetadataSearch::Present present;
};

class Caller {
 public:
    Caller(const CallerName& name, const Surroundings& around);
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    [[nodiscard]] BroadcastPlayers& broadcast() { return m_broadcast; }
    [[nodiscard]] MediaPlayers& media() { return m_media; }
    [[nodiscard]] StreamEvents& streamEvents() { return m_streamEvents; }
    [[nodiscard]] MetadataSearch& search() { return m_search; }
    [[nodiscard]] Carousel& carousel() { return m_carousel; }
    // One of these, or the caller as a whole.
    template <typename Part>
    [[nodiscard]] Part& part() {
        return std::get<Part&>(std::tie(*this, m_broadcast, m_media, m_streamEvents, m_search, m_carousel));
    }

    // Starts the application as the child of a view, see Applications.
    [[nodiscard]] bool createApplication(const std::string& url, std::int32_t viewId);

    // A channel's cache entry; false for a channel that does not exist.
    [[nodiscard]] bool retainChannel(std::uint32_t id);
    void releaseChannel(std::uint32_t id);

    // The transaction id; the answer follows as an event.
    [[nodiscard]] std::int32_t sendDrmMessage(const std::string& drmSystemId);

    // The scenario has other channels now.
    void forgetLostChannels();
    // It has left the bus. What does not show goes with this object.
    void endPlayers();

    // For a reader of the world.
    [[nodiscard]] nlohmann::json describe();

 private:
    const CallerName m_name;
    const Scenario& m_scenario;
    Timers& m_timers;
    ReceiverEvents& m_events;
    Applications& m_applications;
    BroadcastPlayers m_broadcast;
    MediaPlayers m_media;
    StreamEvents m_streamEvents;
    MetadataSearch m_search;
    Carousel m_carousel;
    std::map<std::uint32_t, std::uint32_t> m_retained;
    BoundedStore<Timer> m_drmReplies{64};
};

}  // namespace Receiver
