#include "JavaScript/Src/CChannelImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiStringCollection.h"
#include "JavaScript/Src/CStringCollectionImpl.h"

namespace OipfJavaScript {

CChannelImpl::CChannelImpl(uint32_t cacheId) : m_cacheEntry(cacheId, [&] { ReadFrom(cacheId); }) {}

void CChannelImpl::ReadFrom(uint32_t cacheId) {
    bool radio = false;
    if (!IJSChannelCacheWK::GetInstance()->GetChannelInfo(
            cacheId, &m_name, &m_longName, &m_description, &m_idType, &m_nid, &m_onid, &m_tsid, &m_sid,
            &radio, &m_ccid, &m_authorised, &m_hidden, &m_locked, &m_manualBlock, &m_channelMaxBitRate,
            &m_ipBroadcastID, &m_majorChannel)) {
        HBBTV_LOG_ERROR("Got channel info FAIL (ID %d)", static_cast<int>(cacheId));
    }
    m_channelType = radio ? TYPE_RADIO : TYPE_TV;
}

CChannelImpl::CChannelImpl(int32_t idType, const std::string& dsd, int32_t sid)
    : m_dsd(dsd), m_sid(static_cast<uint32_t>(sid)), m_idType(static_cast<uint32_t>(idType)) {}

CChannelImpl::CChannelImpl(int32_t idType, int32_t onid, int32_t tsid, int32_t sid)
    : m_onid(static_cast<uint32_t>(onid)),
      m_tsid(static_cast<uint32_t>(tsid)),
      m_sid(static_cast<uint32_t>(sid)),
      m_idType(static_cast<uint32_t>(idType)) {}

uint32_t CChannelImpl::GetNid() {
    if (m_nid == kAbsent)
        m_status = kUndefined;
    return m_nid;
}

JSValueRef CChannelImpl::getCustomDsd(JSContextRef context, JSObjectRef /*channel*/) const {
    for (const char byte : m_dsd)
        HBBTV_LOG_DEBUG("dsd %02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    return MakeByteString(context, m_dsd);
}

std::unique_ptr<jiStringCollection> CChannelImpl::GetGenre() const {
    return nullptr;
}

}  // namespace OipfJavaScript
