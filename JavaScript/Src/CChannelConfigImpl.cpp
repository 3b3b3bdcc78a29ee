#include "JavaScript/Src/CChannelConfigImpl.h"

#include <cstdint>
#include <list>
#include <utility>
#include <vector>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "InjectedBundle/gen/js/jiChannelList.h"
#include "JavaScript/Src/CChannelImpl.h"
#include "JavaScript/Src/CChannelListImpl.h"

namespace OipfJavaScript {

std::unique_ptr<jiChannelList> CChannelConfigImpl::GetChannelList() const {
    HBBTV_LOG_ENTRY();
    std::list<uint32_t> ids;
    CDAEBrowserAPIWK::GetInstance()->GetChannelList(ids);
    std::vector<jiChannel> channels;
    channels.reserve(
        ids.size());  // a channel that is moved is copied, and would be retained and released anew
    for (const uint32_t id : ids)
        channels.emplace_back(std::make_unique<CChannelImpl>(id));
    return MakeBinding<jiChannelList>(std::move(channels));
}

}  // namespace OipfJavaScript
