#include "JavaScript/Src/ChannelCacheEntry.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"

namespace OipfJavaScript {

ChannelCacheEntry::ChannelCacheEntry(uint32_t id, const std::function<void()>& meanwhile) : m_id(id) {
    if (m_id == 0)
        return;
    IJSChannelCacheCommon& cache = *IJSChannelCacheWK::GetInstance();
    const bool isKnown = cache.RetainWhile(m_id, [&] {
        m_life = cache.Life();
        meanwhile();
    });
    if (!isKnown)
        HBBTV_LOG_ERROR("ChannelCache does not know channel with id %ud.", m_id);
}

ChannelCacheEntry::ChannelCacheEntry(const ChannelCacheEntry& other)
    : ChannelCacheEntry(other.IsHeld() ? other.m_id : 0, [] {}) {
    m_id = other.m_id;
}

ChannelCacheEntry::~ChannelCacheEntry() {
    if (IsHeld())
        IJSChannelCacheWK::GetInstance()->Release(m_id);
}

bool ChannelCacheEntry::IsHeld() const {
    return m_id != 0 && m_life == IJSChannelCacheWK::GetInstance()->Life();
}

}  // namespace OipfJavaScript
