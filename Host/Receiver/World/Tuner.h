// The one tuner of the receiver. Its channel is the scenario's current one, which the broadcast players of
// all callers show.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

// Why a channel cannot be shown, as channel-change events say it.
namespace TuningError {
inline constexpr std::int32_t ParentalLock = 3;
inline constexpr std::int32_t KeyMissing = 4;
inline constexpr std::int32_t UnknownChannel = 5;
}  // namespace TuningError

inline constexpr std::int32_t kNoParentalLock = 255;

class Tuner {
 public:
    using PresentRating = std::function<std::uint8_t(const Channel&)>;
    // Hears which player has changed the channel.
    using Changed = std::function<void(const PlanePlayer& by)>;

    Tuner(Scenario& scenario, PresentRating presentRating, Changed changed)
        : m_scenario(scenario), m_presentRating(std::move(presentRating)), m_changed(std::move(changed)) {
        remember();
    }

    // Nothing on the null channel.
    [[nodiscard]] const Channel* channel() const {
        return m_scenario.channel(m_scenario.broadcast.currentChannel);
    }
    // Of the present programme; 0 for none.
    [[nodiscard]] std::uint8_t rating(const Channel& channel) const { return m_presentRating(channel); }

    // Why the channel cannot be shown now.
    [[nodiscard]] std::optional<std::int32_t> obstacle(const Channel& channel) const {
        if (channel.tuningError)
            return channel.tuningError;
        if (!channel.authorised)
            return TuningError::KeyMissing;
        const auto threshold = m_scenario.parental.lockStatus;
        const bool rated = threshold != kNoParentalLock && rating(channel) > threshold;
        if (channel.locked || channel.manualBlock || rated)
            return TuningError::ParentalLock;
        return std::nullopt;
    }

    // 0 is the null channel.
    void change(std::uint32_t channelId, const PlanePlayer& by) {
        if (m_scenario.broadcast.currentChannel == channelId)
            return;
        m_scenario.broadcast.currentChannel = channelId;
        remember();
        m_changed(by);
    }
    // The application of the page goes with the broadcast, or not any more.
    void setRelated(bool related) { m_scenario.broadcast.related = related; }

    // What the viewer has chosen is what restore() comes back to.
    void remember() {
        if (m_scenario.broadcast.currentChannel != 0)
            m_lastChannel = m_scenario.broadcast.currentChannel;
    }
    // The television shows its last channel again after an application had taken it away.
    void restore() {
        if (m_scenario.broadcast.currentChannel == 0 && m_scenario.channel(m_lastChannel) != nullptr)
            m_scenario.broadcast.currentChannel = m_lastChannel;
    }

 private:
    Scenario& m_scenario;
    PresentRating m_presentRating;
    Changed m_changed;
    std::uint32_t m_lastChannel = 0;
};

}  // namespace Receiver
