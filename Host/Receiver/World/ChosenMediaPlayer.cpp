#include "Host/Receiver/World/ChosenMediaPlayer.h"

namespace Receiver {

void ChosenMediaPlayer::load(const std::string& url) {
    auto& next = choose(url);
    if (&next != m_current)
        m_current->stop();
    m_current = &next;
    m_current->load(url);
}

void ChosenMediaPlayer::setVolume(std::int32_t volume) {
    m_volume = volume;
    m_simulated.setVolume(volume);
    if (m_real != nullptr)
        m_real->setVolume(volume);
}

MediaPlayer& ChosenMediaPlayer::choose(const std::string& url) {
    const bool real =
        m_scenario.media.player == PlayerKind::Real && !url.empty() && m_scenario.mediaItem(url) == nullptr;
    if (!real)
        return m_simulated;
    if (m_real == nullptr) {
        m_real = m_makeReal(m_listener, m_picture);
        m_real->setVolume(m_volume);
    }
    return *m_real;
}

}  // namespace Receiver
