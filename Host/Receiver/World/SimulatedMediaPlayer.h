// Plays by the clock what the scenario says about the medium's address.
#pragma once

#include "Host/Receiver/World/MediaPlayer.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class SimulatedMediaPlayer : public MediaPlayer {
 public:
    SimulatedMediaPlayer(const Scenario& scenario, Timers& timers, MediaListener& listener)
        : m_scenario(scenario), m_timers(timers), m_listener(listener), m_next(timers) {}

    void load(const std::string& url) override;
    [[nodiscard]] bool play(double speed) override;
    void stop() override;
    [[nodiscard]] bool seek(std::uint32_t milliseconds) override;

    [[nodiscard]] MediaState state() const override { return m_state; }
    [[nodiscard]] std::uint32_t position() const override;
    [[nodiscard]] std::uint32_t duration() const override { return m_duration; }
    [[nodiscard]] double speed() const override { return m_state == MediaState::Playing ? m_speed : 0.0; }
    [[nodiscard]] std::vector<Component> components() const override;
    void present(const std::vector<Component>&) override {}
    void setVolume(std::int32_t) override {}
    [[nodiscard]] bool givesFrames() const override { return false; }

 private:
    void connected();
    void reachedEdge();
    // Goes on from this position at this speed, and waits for the end that lies in that direction.
    void rollFrom(std::uint32_t position, double speed);
    void changeState(MediaState state, std::int32_t error);

    const Scenario& m_scenario;
    Timers& m_timers;
    MediaListener& m_listener;
    std::string m_url;
    MediaState m_state = MediaState::Stopped;
    std::uint32_t m_duration = 0;
    double m_speed = 1.0;
    std::uint32_t m_basePosition = 0;
    std::int64_t m_baseTime = 0;
    Timer m_next;
};

}  // namespace Receiver
