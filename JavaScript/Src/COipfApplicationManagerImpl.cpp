#include "JavaScript/Src/COipfApplicationManagerImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/Src/InjectedBundle.h"
#include "InjectedBundle/gen/js/jiApplication.h"
#include "JavaScript/Src/CApplicationImpl.h"

namespace OipfJavaScript {

namespace {

constexpr const char* kTag = "APPLICATIONMANAGER";

}  // namespace

COipfApplicationManagerImpl::COipfApplicationManagerImpl()
    : COipfApplicationManagerBase(jiOipfApplicationManager::ID) {
    if (!BundleGetWKViewFromWKManager(m_viewId)) {
        HBBTV_LOG_ERROR("[%s:%d] %s %s() - no valid view ID returned", kTag, __LINE__, __func__, __func__);
        return;
    }
    HBBTV_LOG_INFO("%s(view id = %i)", __func__, m_viewId);
    CDAEBrowserAPIWK::GetInstance()->SubscribeEvents(this);
}

COipfApplicationManagerImpl::~COipfApplicationManagerImpl() {
    CDAEBrowserAPIWK::GetInstance()->UnsubscribeEvents(this);
}

std::unique_ptr<jiApplication> COipfApplicationManagerImpl::GetOwnerApplication() const {
    HBBTV_LOG_INFO("[%s:%d] %s view %i", kTag, __LINE__, __func__, m_viewId);
    if (m_viewId == -1)
        return nullptr;
    return MakeBinding<jiApplication>(m_viewId);
}

void COipfApplicationManagerImpl::OnEvent(event_t event) {
    if (event.event == E_APP_LOW_MEMORY) {
        DispatchEvent("LowMemory", nullptr);
        return;
    }
    if (event.event != E_APP_LOAD_ERROR)
        return;
    JSContextRef context = ContextFor("ApplicationLoadError");
    if (context == nullptr)
        return;
    // The argument never names the application that failed: it has no view to be named by.
    JSObjectRef application =
        jiApplication::CreateObject(context, MakeBinding<jiApplication>(-1).release(), nullptr);
    DispatchEvent("ApplicationLoadError", "app", application, nullptr);
}

}  // namespace OipfJavaScript
