#include "JavaScript/Src/CSearchResultsImpl.h"

#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiProgramme.h"
#include "JavaScript/Src/CProgrammeImpl.h"

namespace OipfJavaScript {

bool CSearchResultsImpl::GetResults(uint32_t offset, uint32_t count) {
    m_session->GetResults(offset, count);
    return false;
}

std::unique_ptr<jiProgramme> CSearchResultsImpl::Item(uint32_t index) {
    if (index >= m_session->Length()) {
        m_status = kUndefined;
        return nullptr;
    }
    const SearchSession::Found* found = m_session->At(index);
    if (found == nullptr) {
        Fail();
        return nullptr;
    }
    return MakeBinding<jiProgramme>(found->info, found->channelId, found->ccid);
}

}  // namespace OipfJavaScript
