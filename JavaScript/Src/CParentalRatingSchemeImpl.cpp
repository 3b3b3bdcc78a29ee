#include "JavaScript/Src/CParentalRatingSchemeImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiParentalRating.h"
#include "JavaScript/Src/CParentalRatingImpl.h"

namespace OipfJavaScript {

namespace {

// The receiver's word for a lock that is off.
constexpr int kNoLock = 255;

}  // namespace

std::unique_ptr<jiParentalRating> CParentalRatingSchemeImpl::GetThreshold() {
    HBBTV_LOG_INFO("[%s:%d] %s", "PARENTALCONTROLMANAGER", __LINE__, __func__);
    if (m_name != CParentalRatingImpl::kDvbSi) {
        Fail();
        return nullptr;
    }
    const int status = CDAEBrowserAPIWK::GetInstance()->GetParentalLockStatus();
    return MakeBinding<jiParentalRating>(status == kNoLock ? 0 : status);
}

std::string CParentalRatingSchemeImpl::IconUri(uint32_t) {
    Fail();
    return {};
}

std::string CParentalRatingSchemeImpl::Item(uint32_t) {
    m_status = kUndefined;
    return {};
}

}  // namespace OipfJavaScript
