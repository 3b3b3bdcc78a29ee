#include "Host/Receiver/World/SimulatedMediaPlayer.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Host/Receiver/World/ReceiverEvents.h"

namespace Receiver {

namespace {

constexpr double kFastest = 64.0;

}  // namespace

void SimulatedMediaPlayer::load(const std::string& url) {
    stop();
    m_url = url;
}

bool SimulatedMediaPlayer::play(double speed) {
    if (m_url.empty() || !std::isfinite(speed) || std::abs(speed) > kFastest)
        return false;
    if (isRolling(m_state)) {
        const auto before = this->speed();
        rollFrom(position(), speed);
        changeState(speed == 0.0 ? MediaState::Paused : MediaState::Playing, NoError);
        if (speed != before)
            m_listener.mediaSpeedChanged(speed);
        return true;
    }
    m_speed = speed;
    if (m_state != MediaState::Connecting) {
        m_next.start(m_scenario.media.connectMs, [this] { connected(); });
        changeState(MediaState::Connecting, NoError);
    }
    return true;
}

void SimulatedMediaPlayer::stop() {
    m_next.stop();
    m_duration = 0;
    m_basePosition = 0;
    changeState(MediaState::Stopped, NoError);
}

bool SimulatedMediaPlayer::seek(std::uint32_t milliseconds) {
    if (!isRolling(m_state) || (m_duration != 0 && milliseconds > m_duration))
        return false;
    rollFrom(milliseconds, speed());
    m_listener.mediaPositionChanged(milliseconds);
    return true;
}

std::uint32_t SimulatedMediaPlayer::position() const {
    if (m_state != MediaState::Playing)
        return m_basePosition;
    const auto elapsed = static_cast<double>(m_timers.now() - m_baseTime);
    const double last = m_duration == 0 ? std::numeric_limits<std::uint32_t>::max() : m_duration;
    return static_cast<std::uint32_t>(std::clamp(m_basePosition + elapsed * m_speed, 0.0, last));
}

std::vector<Component> SimulatedMediaPlayer::components() const {
    const auto* medium = isRolling(m_state) ? m_scenario.mediaItem(m_url) : nullptr;
    return medium == nullptr ? std::vector<Component>() : medium->components;
}

void SimulatedMediaPlayer::connected() {
    const auto* medium = m_scenario.mediaItem(m_url);
    if (medium == nullptr || medium->error) {
        changeState(MediaState::Error, medium == nullptr ? MediaError::ContentNotAvailable : *medium->error);
        return;
    }
    m_duration = medium->durationMs;
    const auto speed = m_speed;
    rollFrom(0, speed);
    changeState(speed == 0.0 ? MediaState::Paused : MediaState::Playing, NoError);
    m_listener.mediaSpeedChanged(speed);
    m_listener.mediaComponentsChanged();
}

void SimulatedMediaPlayer::reachedEdge() {
    if (m_speed < 0) {
        // Rewound to the start: it plays on from there.
        rollFrom(0, 1.0);
        m_listener.mediaSpeedChanged(1.0);
        return;
    }
    m_basePosition = m_duration;
    changeState(MediaState::Finished, NoError);
}

void SimulatedMediaPlayer::rollFrom(std::uint32_t position, double speed) {
    m_basePosition = position;
    m_baseTime = m_timers.now();
    m_speed = speed;
    m_next.stop();
    if (speed == 0.0 || (speed > 0 && m_duration == 0))
        return;
    const double way = speed > 0 ? static_cast<double>(m_duration) - position : static_cast<double>(position);
    m_next.start(static_cast<std::uint32_t>(std::clamp(std::ceil(way / std::abs(speed)), 0.0, 4e9)),
                 [this] { reachedEdge(); });
}

void SimulatedMediaPlayer::changeState(MediaState state, std::int32_t error) {
    if (m_state == state)
        return;
    m_state = state;
    m_listener.mediaStateChanged(state, error);
}

}  // namespace Receiver
