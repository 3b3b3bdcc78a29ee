#include "JavaScript/Src/CQueryImpl.h"

#include "InjectedBundle/Src/BindingCall.h"

namespace OipfJavaScript {

std::unique_ptr<jiQuery> CQueryImpl::And(const jiQuery* query) {
    uint32_t id = 0;
    const bool isMade = m_query && IQueryCacheWK::GetInstance()->And(Id(), query->Implementation().Id(), id);
    return Made(isMade, id);
}

std::unique_ptr<jiQuery> CQueryImpl::Or(const jiQuery* query) {
    uint32_t id = 0;
    const bool isMade = m_query && IQueryCacheWK::GetInstance()->Or(Id(), query->Implementation().Id(), id);
    return Made(isMade, id);
}

std::unique_ptr<jiQuery> CQueryImpl::Not() {
    uint32_t id = 0;
    const bool isMade = m_query && IQueryCacheWK::GetInstance()->Not(Id(), id);
    return Made(isMade, id);
}

std::unique_ptr<jiQuery> CQueryImpl::Made(bool isMade, uint32_t id) {
    if (RetainedId<IQueryCacheWK> query(isMade ? id : 0); query)
        return MakeBinding<jiQuery>(PageContext(), std::move(query));
    Fail();
    return nullptr;
}

}  // namespace OipfJavaScript
