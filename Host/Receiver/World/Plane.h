// What there is to see of all players. Each change is told once, and somebody who comes later can ask.
#pragma once

#include <functional>
#include <map>
#include <utility>

#include "Host/Receiver/World/ReceiverEvents.h"

namespace Receiver {

class Plane {
 public:
    // `mayDiffer` runs whenever a player has done something, seen or not.
    Plane(ReceiverEvents& events, std::function<void()> mayDiffer)
        : m_events(events), m_mayDiffer(std::move(mayDiffer)) {}

    void show(const PlanePlayer& player, const PlaneContent& content);
    void hide(const PlanePlayer& player);
    [[nodiscard]] bool shows(const PlanePlayer& player) const { return m_shown.contains(player); }

    [[nodiscard]] const std::map<PlanePlayer, PlaneContent>& shown() const { return m_shown; }

 private:
    ReceiverEvents& m_events;
    const std::function<void()> m_mayDiffer;
    std::map<PlanePlayer, PlaneContent> m_shown;
};

}  // namespace Receiver
