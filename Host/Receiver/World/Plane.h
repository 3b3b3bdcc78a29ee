// What there is to see of all players. Each change is told once, and somebody who comes later can ask.
#pragma once

#include <map>

#include "Host/Receiver/World/ReceiverEvents.h"

namespace Receiver {

class Plane {
 public:
    explicit Plane(ReceiverEvents& events) : m_events(events) {}

    void show(const PlanePlayer& player, const PlaneContent& content);
    void hide(const PlanePlayer& player);
    [[nodiscard]] bool shows(const PlanePlayer& player) const { return m_shown.contains(player); }

    [[nodiscard]] const std::map<PlanePlayer, PlaneContent>& shown() const { return m_shown; }

 private:
    ReceiverEvents& m_events;
    std::map<PlanePlayer, PlaneContent> m_shown;
};

}  // namespace Receiver
