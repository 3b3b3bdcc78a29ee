#include "JavaScript/Src/CApplicationImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiApplicationPrivateData.h"
#include "JavaScript/Src/CApplicationPrivateDataImpl.h"
#include "JavaScript/Src/jiUtility.h"

namespace OipfJavaScript {

const char* CApplicationImpl::CheckViewId() const {
    if (m_viewId != -1)
        return nullptr;
    static constexpr const char* kReason = "ViewId is not correctly initialised";
    HBBTV_LOG_ERROR("%s::%s %s", jiApplication::ID, __func__, kReason);
    return kReason;
}

std::unique_ptr<jiApplicationPrivateData> CApplicationImpl::GetPrivateData() {
    if (const char* reason = CheckViewId()) {
        Fail(reason);
        return nullptr;
    }
    return MakeBinding<jiApplicationPrivateData>();
}

void CApplicationImpl::Show() {
    if (CheckViewId() != nullptr)
        return;
    HBBTV_LOG_INFO("%s::%s view %i", jiApplication::ID, __func__, m_viewId);
    CDAEBrowserAPIWK::GetInstance()->Show(m_viewId);
}

void CApplicationImpl::Hide() {
    if (CheckViewId() != nullptr)
        return;
    HBBTV_LOG_INFO("%s::%s view %i", jiApplication::ID, __func__, m_viewId);
    CDAEBrowserAPIWK::GetInstance()->Hide(m_viewId);
}

std::unique_ptr<jiApplication> CApplicationImpl::CreateApplication(JSContextRef context,
                                                                   const std::string& uri, bool /*child*/) {
    HBBTV_LOG_INFO("%s::%s %s", jiApplication::ID, __func__, uri.c_str());
    if (const char* reason = CheckViewId()) {
        Fail(reason);
        return nullptr;
    }
    std::string absolute = uri;
    jiUtility::MakeAbsolutePath(context, absolute);
    if (!CDAEBrowserAPIWK::GetInstance()->CreateApplication(absolute, m_viewId)) {
        Fail();
        return nullptr;
    }
    // The receiver's answer says only that it worked; the new view is always the parent's neighbour.
    return MakeBinding<jiApplication>(m_viewId + 1);
}

void CApplicationImpl::DestroyApplication() {
    HBBTV_LOG_INFO("%s::%s view %i", jiApplication::ID, __func__, m_viewId);
    CDAEBrowserAPIWK::GetInstance()->DestroyApplication(m_viewId);
}

}  // namespace OipfJavaScript
