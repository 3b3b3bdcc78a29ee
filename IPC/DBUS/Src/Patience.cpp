#include "IPC/DBUS/Src/Patience.h"

#include "CSP/Inc/PCLog.h"

Patience& Patience::Instance() {
    static auto* const instance = new Patience;
    return *instance;
}

void Patience::TimedOut(const char* service) {
    const std::lock_guard guard(m_mutex);
    if (m_silent.load() != nullptr)
        return;
    m_silent = service;
    HBBTV_LOG_WARNING("%s does not answer: until it does, calls wait a second at most", service);
}

void Patience::End(const char* service) {
    const std::lock_guard guard(m_mutex);
    const char* const silent = m_silent;
    if (silent == nullptr || (service != nullptr && service != silent))
        return;
    m_silent = nullptr;
    HBBTV_LOG_INFO("%s: calls wait for their answers again",
                   service != nullptr ? service : "the receiver answers");
}
