// Plays each medium in a process of its own: what a decoder or a library does there ends one film. Keeps what
// the process has told, answers from that, and never waits for it.
#pragma once

#include "Host/Receiver/Media/MediaChild.h"
#include "Host/Receiver/World/MediaPlayer.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class ChildMediaPlayer : public MediaPlayer {
 public:
    // The scenario says how long a medium may take. A player without a picture has its pictures timed only.
    ChildMediaPlayer(const Scenario& scenario, Timers& timers, MediaChildren& children,
                     MediaListener& listener, PictureSink& picture);
    ~ChildMediaPlayer() override { dropChild(); }

    void load(const std::string& url) override;
    [[nodiscard]] bool play(double speed) override;
    void stop() override;
    [[nodiscard]] bool seek(std::uint32_t milliseconds) override;

    [[nodiscard]] MediaState state() const override { return m_state; }
    [[nodiscard]] std::uint32_t position() const override;
    [[nodiscard]] std::uint32_t duration() const override { return m_film.duration; }
    [[nodiscard]] double speed() const override { return m_state == MediaState::Playing ? m_speed : 0.0; }
    [[nodiscard]] std::vector<Component> components() const override { return m_components; }

    void present(const std::vector<Component>& active) override;
    void setVolume(std::int32_t volume) override;

 private:
    // As the child has last told it.
    struct Film {
        std::int64_t at = 0;  // when the position was true
        std::uint32_t position = 0;
        std::uint32_t duration = 0;
        double pace = 0.0;
        bool seekable = false;
    };

    void connect();
    void tell(const MediaWord& word, GVariant* content = nullptr);
    void dropChild();
    void fail(std::int32_t error);
    void changeState(MediaState state, std::int32_t error);
    // The film's clock stands here until the child tells of it anew.
    void holdAt(std::uint32_t position);

    void hear(MediaMessage& message);
    void hearOfFilm(const MediaMessage& message);
    void hearOfState(const MediaMessage& message);
    void hearOfComponents(const MediaMessage& message);
    void childEnded();

    const Scenario& m_scenario;
    Timers& m_timers;
    MediaChildren& m_children;
    MediaListener& m_listener;
    PictureSink& m_picture;
    std::string m_url;
    std::int32_t m_volume = 100;
    MediaState m_state = MediaState::Stopped;
    double m_speed = 1.0;  // the wanted one; 0 is paused
    Film m_film;
    std::vector<Component> m_components;
    std::unique_ptr<MediaChild> m_child;
    std::uint32_t m_number = 0;  // of the last command
    bool m_complained = false;   // of what it says
    Timer m_silence;
};

}  // namespace Receiver
