#include "JavaScript/Src/COipfSearchManagerImpl.h"

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannelConfig.h"
#include "InjectedBundle/gen/js/jiMetadataSearch.h"
#include "JavaScript/Src/CChannelConfigImpl.h"
#include "JavaScript/Src/CMetadataSearchImpl.h"

namespace OipfJavaScript {

namespace {

constexpr int32_t kTargetBroadcast = 1;
constexpr int32_t kTargetOnDemand = 2;

}  // namespace

COipfSearchManagerImpl::COipfSearchManagerImpl()
    : COipfSearchManagerBase(jiOipfSearchManager::ID),
      m_link(std::make_shared<SearchManagerLink>(SearchManagerLink{this})) {}

COipfSearchManagerImpl::~COipfSearchManagerImpl() {
    m_link->manager = nullptr;
}

JSValueRef COipfSearchManagerImpl::customCreateSearch(const CallArguments& call) {
    if (call.count != 1 || !JSValueIsNumber(call.context, call.values[0]))
        return Call::RefuseArguments(jiOipfSearchManager::ID, "t_CreateSearch", call);
    const int32_t target = ToInt32(JSValueToNumber(call.context, call.values[0], nullptr));
    if (target != kTargetBroadcast && target != kTargetOnDemand)
        return JSValueMakeNull(call.context);
    RetainedId<IMetadataSearchCacheWK> id(IMetadataSearchCacheWK::GetInstance()->Add(target));
    if (!id) {
        HBBTV_LOG_OBJECT(ERROR, "the receiver refused a search of target %d", target);
        return JSValueMakeNull(call.context);
    }
    const auto session =
        std::make_shared<SearchSession>(call.context, std::move(id), m_link, SearchSession::Patience());
    JSObjectRef search = MakeObject<jiMetadataSearch>(call.context, target, session);
    session->SetPageObject(search);
    return search;
}

std::unique_ptr<jiChannelConfig> COipfSearchManagerImpl::GetChannelConfig() {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiChannelConfig>();
}

}  // namespace OipfJavaScript
