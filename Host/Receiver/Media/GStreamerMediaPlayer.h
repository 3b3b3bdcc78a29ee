// Plays a medium for real. Lives on the main thread and never waits: what it asks of the pipeline is answered
// by the pipeline's messages, and a medium that does not answer in time is an error.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Host/Receiver/Media/Pipeline.h"
#include "Host/Receiver/Media/StreamList.h"
#include "Host/Receiver/World/MediaPlayer.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

struct MediaOutputs {
    PictureSink* picture;  // outlives the player; null: pictures are decoded and timed, but go nowhere
    std::string sound;     // as GStreamer describes a sink; empty: the sound device, if any
};

class GStreamerMediaPlayer : public MediaPlayer {
 public:
    GStreamerMediaPlayer(const Scenario& scenario, Timers& timers, MediaListener& listener,
                         MediaOutputs outputs);
    ~GStreamerMediaPlayer() override;

    void load(const std::string& url) override;
    [[nodiscard]] bool play(double speed) override;
    void stop() override;
    [[nodiscard]] bool seek(std::uint32_t milliseconds) override;

    [[nodiscard]] MediaState state() const override { return m_state; }
    [[nodiscard]] std::uint32_t position() const override;
    [[nodiscard]] std::uint32_t duration() const override { return m_duration; }
    [[nodiscard]] double speed() const override { return m_state == MediaState::Playing ? m_speed : 0.0; }
    [[nodiscard]] std::vector<Component> components() const override;

    void present(const std::vector<Component>& active) override;
    void setVolume(std::int32_t volume) override;

 private:
    // What is known of the medium that is connecting or playing, and what is under way.
    struct Progress {
        bool prerolled = false;
        bool live = false;
        bool seekable = false;
        GstState state = GST_STATE_NULL;  // of the pipeline, as it last said
        double rate = 1.0;                // of the pipeline, when the last seek is done
        double rateBefore = 1.0;          // of the pipeline, before it
        int buffered = 100;               // percent
        int bestBuffered = 0;             // since the waiting began
        bool seeking = false;
        std::uint32_t seekTarget = 0;
        std::optional<std::uint32_t> nextSeek;  // wanted while another one was under way
        bool announceSeek = false;
        bool onlyFromStart = false;  // the server does not send from the middle
        bool missingPlugin = false;
        std::optional<double> announcedSpeed;
        std::vector<std::string> selected;
    };
    // Backwards the player steps through the medium: pictures of moments further and further back.
    struct Rewinding {
        std::uint32_t from;
        std::int64_t since;
    };

    [[nodiscard]] bool isRolling() const {
        return m_state == MediaState::Playing || m_state == MediaState::Paused ||
               m_state == MediaState::Buffering;
    }
    [[nodiscard]] bool isBuffering() const { return !m_progress.live && m_progress.buffered < 100; }
    [[nodiscard]] std::uint32_t rewoundTo() const;

    void connect();
    void dropPipeline();
    void handle(GstMessage* message);
    void handleElement(GstMessage* message);
    void handleApplication(GstMessage* message);
    void stateChanged(GstMessage* message);
    void streamsChanged(GstMessage* message);
    void prerolled();
    void buffered(int percent);
    void reachedEnd();

    // Has the pipeline do what the wanted speed asks for.
    void roll();
    void waitForData();
    void seekPipeline(std::uint32_t milliseconds, double rate, bool announce);
    void seekDone();
    void seekFailed();
    void step();
    void glance();
    // The pipeline is where it was wanted.
    void settle(MediaState state);
    void fail(std::int32_t error);
    void changeState(MediaState state, std::int32_t error);

    const Scenario& m_scenario;
    Timers& m_timers;
    MediaListener& m_listener;
    MediaOutputs m_outputs;
    std::string m_url;
    std::int32_t m_volume = 100;
    MediaState m_state = MediaState::Stopped;
    double m_speed = 1.0;  // the wanted one; 0 is paused
    std::uint32_t m_duration = 0;
    mutable std::uint32_t m_lastPosition = 0;
    StreamList m_streams;
    Progress m_progress;
    std::optional<Rewinding> m_rewinding;
    std::unique_ptr<Pipeline> m_pipeline;
    Timer m_limit;  // for connecting, and for waiting for data
    Timer m_seekLimit;
    Timer m_nextStep;
    Timer m_nextGlance;
    mutable std::int64_t m_lastLook = 0;  // when m_lastPosition was true
};

}  // namespace Receiver
