// The players of broadband media that one caller holds, told apart by their plugin id.
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
    MediaSession(PlanePlayer identity, const Scenario& scenario, const VideoWindow& window, Timers& timers,
                 ReceiverEvents& events, Plane& plane)
        : m_identity(std::move(identity)),
          m_scenario(scenario),
          m_events(events),
          m_plane(plane),
          m_volume(scenario.broadcast.volume),
          m_window(window),
          m_frames([this] { updatePlane(); }),
          m_next(timers) {}

    void acquire(const MediaPlayerFactory& make);
    [[nodiscard]] MediaPlayer* player() const { return m_player.get(); }

    // What was queued behind the medium before goes with it.
    void setUrl(const std::string& url);
    [[nodiscard]] const std::string& url() const { return m_url; }
    void setAttribute(const std::string& name, const std::string& value);
    [[nodiscard]] const std::map<std::string, std::string>& attributes() const { return m_attributes; }
    // An empty address empties the queue; false when the queue is full.
    [[nodiscard]] bool queue(const std::string& url);
    // The state and the error of the last state event.
    [[nodiscard]] MediaState state() const { return m_state; }
    [[nodiscard]] std::int32_t error() const { return m_error; }
    // It needs a decoder, now or for the next of its queue.
    [[nodiscard]] bool isAtWork() const;
    void setWindow(const VideoWindow& window);
    [[nodiscard]] const VideoWindow& window() const { return m_window; }
    [[nodiscard]] const FrameStore& frames() const { return m_frames; }

    // These are for a session with a player. What is queued goes with what is stopped.
    [[nodiscard]] bool play(double speed);
    void playNext();
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

    // What plays or did play is no more, and the page hears so.
    void load(const std::string& url);
    void clearQueue();
    [[nodiscard]] bool mayPlay() const;
    void selectionChanged(std::int32_t type);
    // Has the player present what is selected.
    void present();
    void updatePlane();
    [[nodiscard]] PlanePicture picture() const;
    [[nodiscard]] std::string subtitles() const;

    const PlanePlayer m_identity;
    const Scenario& m_scenario;
    ReceiverEvents& m_events;
    Plane& m_plane;
    std::int32_t m_volume;
    ComponentSelection m_selection;
    std::string m_url;
    std::map<std::string, std::string> m_attributes;
    std::deque<std::string> m_queue;
    MediaState m_state = MediaState::Stopped;
    std::int32_t m_error = NoError;
    bool m_goesOn = false;  // from one medium of the queue to the next, without a stop between them
    VideoWindow m_window;
    bool m_isSeen = false;  // It has begun, and neither stopped nor ended.
    FrameStore m_frames;
    Timer m_next;
    std::unique_ptr<MediaPlayer> m_player;
};

class MediaPlayers {
 public:
    // How many players of all callers are at work.
    using AtWork = std::function<std::size_t()>;

    MediaPlayers(CallerName caller, const Scenario& scenario, Timers& timers, ReceiverEvents& events,
                 Plane& plane, MediaPlayerFactory make, AtWork allAtWork)
        : m_caller(std::move(caller)),
          m_scenario(scenario),
          m_timers(timers),
          m_events(events),
          m_plane(plane),
          m_make(std::move(make)),
          m_allAtWork(std::move(allAtWork)) {}

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
    // Plays at once where nothing plays. False when it neither plays nor waits.
    [[nodiscard]] bool queue(std::uint32_t pluginId, const std::string& url);
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
    [[nodiscard]] std::size_t atWork() const;

 private:
    [[nodiscard]] PlanePlayer identity(std::uint32_t pluginId) const {
        return {PlaneKind::Broadband, m_caller, pluginId};
    }
    void end(std::uint32_t pluginId, MediaSession& session);
    [[nodiscard]] bool hasDecoderFor(std::uint32_t pluginId) const;

    const CallerName m_caller;
    const Scenario& m_scenario;
    Timers& m_timers;
    ReceiverEvents& m_events;
    Plane& m_plane;
    MediaPlayerFactory m_make;
    AtWork m_allAtWork;
    // More than sessions: a page has a window for each of its elements from the start.
    BoundedStore<VideoWindow> m_windows{1024};
    BoundedStore<MediaSession> m_sessions{
        64, [](const MediaSession& session) { return session.isAtWork(); },
        [this](std::uint32_t id, MediaSession& session) { end(id, session); }};
};

}  // namespace Receiver
