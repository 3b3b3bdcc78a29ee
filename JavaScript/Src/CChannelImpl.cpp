#include "JavaScript/Src/CChannelImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiStringCollection.h"
#include "JavaScript/Src/CStringCollectionImpl.h"

namespace OipfJavaScript {

CChannelImpl::CChannelImpl(uint32_t cacheId) : m_cacheEntry(cacheId, [&] { m_record = RecordOf(cacheId); }) {}

CChannelImpl::CChannelImpl(int32_t idType, const std::string& dsd, int32_t sid)
    : m_record{.sid = static_cast<uint32_t>(sid), .idType = static_cast<uint32_t>(idType)}, m_dsd(dsd) {}

CChannelImpl::CChannelImpl(int32_t idType, int32_t onid, int32_t tsid, int32_t sid)
    : m_record{.onid = static_cast<uint32_t>(onid),
               .tsid = static_cast<uint32_t>(tsid),
               .sid = static_cast<uint32_t>(sid),
               .idType = static_cast<uint32_t>(idType)} {}

CChannelImpl::Record CChannelImpl::RecordOf(uint32_t cacheId) {
    Record record;
    bool radio = false;
    if (!IJSChannelCacheWK::GetInstance()->GetChannelInfo(
            cacheId, &record.name, &record.longName, &record.description, &record.idType, &record.nid,
            &record.onid, &record.tsid, &record.sid, &radio, &record.ccid, &record.authorised, &record.hidden,
            &record.locked, &record.manualBlock, &record.channelMaxBitRate, &record.ipBroadcastID,
            &record.majorChannel)) {
        HBBTV_LOG_ERROR("Got channel info FAIL (ID %d)", static_cast<int>(cacheId));
    }
    record.channelType = radio ? TYPE_RADIO : TYPE_TV;
    return record;
}

uint32_t CChannelImpl::GetNid() {
    if (m_record.nid == kAbsent)
        m_status = kUndefined;
    return m_record.nid;
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
