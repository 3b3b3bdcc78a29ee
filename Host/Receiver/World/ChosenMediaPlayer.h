// The player that the scenario chooses for each address: what one of its items describes is simulated,
// everything else is played for real where the scenario wants that.
#pragma once

#include "Host/Receiver/World/MediaPlayer.h"
#include "Host/Receiver/World/SimulatedMediaPlayer.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class ChosenMediaPlayer : public MediaPlayer {
 public:
    ChosenMediaPlayer(const Scenario& scenario, Timers& timers, MediaPlayerFactory makeReal,
                      MediaListener& listener, PictureSink& picture)
        : m_scenario(scenario),
          m_listener(listener),
          m_picture(picture),
          m_makeReal(std::move(makeReal)),
          m_simulated(scenario, timers, listener) {}

    void load(const std::string& url) override;
    [[nodiscard]] bool play(double speed) override { return m_current->play(speed); }
    void stop() override { m_current->stop(); }
    [[nodiscard]] bool seek(std::uint32_t milliseconds) override { return m_current->seek(milliseconds); }

    [[nodiscard]] MediaState state() const override { return m_current->state(); }
    [[nodiscard]] std::uint32_t position() const override { return m_current->position(); }
    [[nodiscard]] std::uint32_t duration() const override { return m_current->duration(); }
    [[nodiscard]] double speed() const override { return m_current->speed(); }
    [[nodiscard]] std::vector<Component> components() const override { return m_current->components(); }

    void present(const std::vector<Component>& active) override { m_current->present(active); }
    void setVolume(std::int32_t volume) override;
    [[nodiscard]] bool givesFrames() const override { return m_current->givesFrames(); }

 private:
    [[nodiscard]] MediaPlayer& choose(const std::string& url);

    const Scenario& m_scenario;
    MediaListener& m_listener;
    PictureSink& m_picture;
    MediaPlayerFactory m_makeReal;
    std::int32_t m_volume = 100;
    SimulatedMediaPlayer m_simulated;
    std::unique_ptr<MediaPlayer> m_real;  // made when it is first needed
    MediaPlayer* m_current = &m_simulated;
};

}  // namespace Receiver
