#include "IPC/DBUS/Src/PluginSubscribers.h"

void PluginSubscribers::Add(IPluginController* controller) {
    if (controller == nullptr)
        return;
    const std::lock_guard guard(m_mutex);
    if (m_controllers.try_emplace(controller, m_arrivals).second)
        ++m_arrivals;
}

void PluginSubscribers::Remove(IPluginController* controller) {
    const std::lock_guard guard(m_mutex);
    m_controllers.erase(controller);
}

void PluginSubscribers::Deliver(const event_t& event) {
    const std::lock_guard guard(m_mutex);
    const uint64_t arrivals = m_arrivals;
    // A call may change the map in any way, so each step looks up the next controller anew.
    for (auto at = m_controllers.begin(); at != m_controllers.end();) {
        IPluginController* const controller = at->first;
        if (at->second < arrivals) {
            controller->OnEvent(event);
            at = m_controllers.upper_bound(controller);
        } else {
            ++at;
        }
    }
}
