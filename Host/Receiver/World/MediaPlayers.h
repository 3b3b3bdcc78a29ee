// The players of broadband media that pages hold, told apart by their plugin id.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Host/Receiver/World/BoundedStore.h"
#include "Host/Receiver/World/BroadcastPlayers.h"
#include "Host/Receiver/World/Components.h"
#include "Host/Receiver/World/FrameStore.h"
#include "Host/Receiver/World/MediaPlayer.h"
#include "Host/Receiver/World/Plane.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

// What a page has set for one plugin id, and the player once it has got one.
class MediaSession : private MediaListener {
 public:
    MediaSession(std::uint32_t pluginId, const Scenario& scenario, const VideoWindow& window, Timers& timers,
                 ReceiverEvents& events, Plane& plane)
        : m_pluginId(pluginId),
          m_scenario(scenario),
          m_events(events),
          m_plane(plane),
          m_volume(scenario.broadcast.volume),
          m_window(window),
          m_frames(timers, [this] { updatePlane(); }) {}

    void acquire(const MediaPlayerFactory& make);
    [[nodiscard]] MediaPlayer* player() const { return m_player.get(); }

    // What was queued behind the medium before goes with it.
    void setUrl(const std::string& url);
    [[nodiscard]] const std::string& url() const { return m_url; }
    void setAttribute(const std::string& name, const std::string& value);
    [[nodiscard]] const std::map<std::string, std::string>& attributes() const { return m_attributes; }
    // An empty address empties the queue; false when the queue is full.
    [[nodiscard]] bool queue(const std::string& url);
    // The error of the last state event.
    [[nodiscard]] std::int32_t error() const { return m_error; }
    void setWindow(const VideoWindow& window);
    [[nodiscard]] const VideoWindow& window() const { return m_window; }
    [[nodiscard]] const FrameStore& frames() const { return m_frames; }

    // Both are for a session with a player. What is queued goes with what is stopped.
    void stop();
    // Stopped for want of a decoder.
    void refuse();

    // 0 to 100.
    void setVolume(std::int32_t volume);
    [[nodiscard]] std::int32_t volume() const { return m_volume; }

    [[nodiscard]] std::vector<Component> components(ComponentType type, bool activeOnly) const;
    void selectComponent(std::int32_t type, std::int32_t pid);
    void unselectComponent(std::int32_t type, std::int32_t pid);

    std::string location;
    std::string mimeType;

 private:
    void mediaStateChanged(MediaState state, std::int32_t error) override;
    void mediaSpeedChanged(double speed) override;
    void mediaPositionChanged(std::uint32_t milliseconds) override;
    void mediaComponentsChanged() override { present(); }

    void load(const std::string& url);
    void selectionChanged(std::int32_t type);
    // Has the player present what is selected.
    void present();
    void updatePlane();
    [[nodiscard]] PlanePicture picture() const;

    const std::uint32_t m_pluginId;
    const Scenario& m_scenario;
    ReceiverEvents& m_events;
    Plane& m_plane;
    std::int32_t m_volume;
    ComponentSelection m_selection;
    std::string m_url;
    std::map<std::string, std::string> m_attributes;
    std::deque<std::string> m_queue;
    std::int32_t m_error = NoError;
    VideoWindow m_window;
    bool m_isSeen = false;  // It has begun, and neither stopped nor ended.
    FrameStore m_frames;
    std::unique_ptr<MediaPlayer> m_player;
};

class MediaPlayers {
 public:
    MediaPlayers(const Scenario& scenario, Timers& timers, ReceiverEvents& events, Plane& plane,
                 MediaPlayerFactory make)
        : m_scenario(scenario), m_timers(timers), m_events(events), m_plane(plane), m_make(std::move(make)) {}

    // Makes the session known on first use.
    [[nodiscard]] MediaSession& session(std::uint32_t pluginId);
    // Null for a plugin id that has set nothing yet, or no player.
    [[nodiscard]] MediaSession* find(std::uint32_t pluginId) { return m_sessions.find(pluginId); }
    [[nodiscard]] MediaPlayer* player(std::uint32_t pluginId);

    // False when as many players are at work as the receiver has decoders for.
    [[nodiscard]] bool acquire(std::uint32_t pluginId);
    // False without a player. One that has rested meanwhile may find the decoders taken: that is its error
    // then.
    [[nodiscard]] bool play(std::uint32_t pluginId, double speed);
    // False without a player.
    bool stop(std::uint32_t pluginId);
    [[nodiscard]] bool supports(const std::string& mimeType) const;
    // False, and nothing changed, for a type that is not supported.
    [[nodiscard]] bool setMimeType(std::uint32_t pluginId, const std::string& mimeType);
    [[nodiscard]] std::vector<Component> components(std::uint32_t pluginId, ComponentType type,
                                                    bool activeOnly);
    void selectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid);
    void unselectComponent(std::uint32_t pluginId, std::int32_t type, std::int32_t pid);
    // Kept when the player is released: the object that the page has tells only of changes.
    void setWindow(std::uint32_t pluginId, const VideoWindow& window);
    void release(std::uint32_t pluginId);

    [[nodiscard]] const BoundedStore<MediaSession>& sessions() const { return m_sessions; }

 private:
    [[nodiscard]] bool hasDecoderFor(std::uint32_t pluginId) const;

    const Scenario& m_scenario;
    Timers& m_timers;
    ReceiverEvents& m_events;
    Plane& m_plane;
    MediaPlayerFactory m_make;
    BoundedStore<VideoWindow> m_windows{64};
    BoundedStore<MediaSession> m_sessions{64, [this](std::uint32_t id) {
                                              m_plane.hide({PlaneKind::Broadband, id});
                                          }};
};

}  // namespace Receiver
