// One film, from the first request to its end. Never waits: what it asks of the pipeline is answered by the
// pipeline's messages, and a medium that does not answer in time is an error.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Host/Media/Pipeline.h"
#include "Host/Media/StreamList.h"
#include "Host/Receiver/World/MediaPlayer.h"
#include "Host/Receiver/World/Timers.h"

namespace Media {

using Receiver::Component;
using Receiver::MediaState;

class Film {
 public:
    Film(Pipeline& pipeline, Receiver::Timers& timers, Receiver::MediaListener& listener)
        : m_pipeline(pipeline),
          m_timers(timers),
          m_listener(listener),
          m_limit(timers),
          m_seekLimit(timers),
          m_nextStep(timers),
          m_nextGlance(timers) {}

    // Once. Speed 0 is paused.
    void load(const std::string& url, double speed, std::uint32_t limitMs);
    // The first components have been told, and what is to be presented of them is known.
    void begin();
    void play(double speed);
    void seek(std::uint32_t milliseconds);
    void present(const std::vector<std::int16_t>& pids);
    void handle(GstMessage* message);

    [[nodiscard]] std::uint32_t position() const;  // milliseconds
    [[nodiscard]] std::uint32_t duration() const { return m_duration; }
    [[nodiscard]] double speed() const { return m_speed; }
    // How fast the position moves.
    [[nodiscard]] double pace() const;
    [[nodiscard]] bool isSeekable() const { return m_progress.seekable; }
    [[nodiscard]] bool showsSubtitles() const { return m_showsSubtitles; }
    [[nodiscard]] std::vector<Component> components() const { return m_streams.components(); }

 private:
    // What is known of the medium, and what is under way.
    struct Progress {
        bool prerolled = false;
        int looks = 0;  // for the duration, before
        bool live = false;
        bool seekable = false;
        GstState state = GST_STATE_NULL;  // of the pipeline, as it last said
        double rate = 1.0;                // of the pipeline, when the last seek is done
        double rateBefore = 1.0;          // of the pipeline, before it
        int buffered = 100;               // percent
        int bestBuffered = 0;             // since the waiting began
        bool seeking = false;
        bool seekChecked = false;  // whether it is over only when the film is there
        std::uint32_t seekTarget = 0;
        std::optional<std::uint32_t> nextSeek;  // wanted while another one was under way
        bool announceSeek = false;
        std::optional<std::uint32_t> soughtTo;  // unless it has been sought there twice
        bool onlyFromStart = false;             // the server does not send from the middle
        std::string missingPlugin;              // what GStreamer calls it
        std::optional<double> announcedSpeed;
        std::vector<std::string> selected;
    };
    // Backwards the player steps through the medium: pictures of moments further and further back.
    struct Rewinding {
        std::uint32_t from;
        std::int64_t since;
    };

    [[nodiscard]] bool isBuffering() const { return !m_progress.live && m_progress.buffered < 100; }
    [[nodiscard]] std::uint32_t rewoundTo() const;
    // From where the film was seen last it cannot have come to the end of the medium by now.
    [[nodiscard]] bool isTooEarlyToEnd() const;

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
    // The page hears the error alone; the reason is for the log.
    void fail(std::int32_t error, const std::string& reason);
    [[nodiscard]] std::string withinLimit() const;
    void end(MediaState state, std::int32_t error);
    void changeState(MediaState state, std::int32_t error);

    Pipeline& m_pipeline;
    Receiver::Timers& m_timers;
    Receiver::MediaListener& m_listener;
    std::string m_url;
    std::uint32_t m_limitMs = 0;
    MediaState m_state = MediaState::Connecting;
    double m_speed = 1.0;  // the wanted one
    std::uint32_t m_duration = 0;
    mutable std::uint32_t m_lastPosition = 0;
    mutable std::int64_t m_lastLook = 0;  // when m_lastPosition was true
    StreamList m_streams;
    bool m_showsSubtitles = false;
    Progress m_progress;
    std::optional<Rewinding> m_rewinding;
    int m_stillGlances = 0;   // at which it stood near its end
    Receiver::Timer m_limit;  // for connecting, and for waiting for data
    Receiver::Timer m_seekLimit;
    Receiver::Timer m_nextStep;
    Receiver::Timer m_nextGlance;
};

}  // namespace Media
