#include "JavaScript/Src/CChannelListImpl.h"

#include <utility>

#include "CSP/Inc/PCLog.h"
#include "JavaScript/Src/CChannelImpl.h"

namespace OipfJavaScript {

CChannelListImpl::CChannelListImpl(std::vector<jiChannel> channels) : BindingCollection(std::move(channels)) {
    HBBTV_LOG_INFO("%s::%s %lu channels in the ChannelList", jiChannelList::ID, __func__,
                   static_cast<unsigned long>(m_items.size()));
}

std::vector<uint32_t> CChannelListImpl::CacheIds() const {
    std::vector<uint32_t> ids;
    ids.reserve(m_items.size());
    for (const jiChannel& channel : m_items)
        ids.push_back(channel.Implementation().CacheId());
    return ids;
}

std::unique_ptr<jiChannel> CChannelListImpl::GetChannel(const std::string& channelID) {
    return First([&](const CChannelImpl& channel) { return channel.MatchesChannelID(channelID); });
}

std::unique_ptr<jiChannel> CChannelListImpl::GetChannelByTriplet(uint32_t onid, uint32_t tsid, uint32_t sid) {
    return First([&](const CChannelImpl& channel) { return channel.MatchesTriplet(onid, tsid, sid); });
}

}  // namespace OipfJavaScript
