#include "Host/Receiver/World/Plane.h"

namespace Receiver {

void Plane::show(const PlanePlayer& player, const PlaneContent& content) {
    m_mayDiffer();
    const auto [entry, isNew] = m_shown.try_emplace(player, content);
    if (!isNew && entry->second == content)
        return;
    entry->second = content;
    m_events.planeShown(player, content);
}

void Plane::hide(const PlanePlayer& player) {
    m_mayDiffer();
    if (m_shown.erase(player) > 0)
        m_events.planeHidden(player);
}

}  // namespace Receiver
