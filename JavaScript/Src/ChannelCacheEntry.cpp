#include "JavaScript/Src/ChannelCacheEntry.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"

namespace OipfJavaScript {

ChannelCacheEntry::ChannelCacheEntry(uint32_t id) : m_id(id) {
    if (m_id != 0 && !IJSChannelCacheWK::GetInstance()->Retain(m_id))
        HBBTV_LOG_ERROR("ChannelCache does not know channel with id %ud.", m_id);
}

ChannelCacheEntry::~ChannelCacheEntry() {
    if (m_id != 0)
        IJSChannelCacheWK::GetInstance()->Release(m_id);
}

}  // namespace OipfJavaScript
