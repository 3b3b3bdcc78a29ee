#include "JavaScript/Src/CKeysetImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"

namespace OipfJavaScript {

uint32_t CKeysetImpl::GetValue() const {
    return CDAEBrowserAPIWK::GetInstance()->GetKeyMask();
}

uint32_t CKeysetImpl::GetMaximumValue() const {
    return CDAEBrowserAPIWK::GetInstance()->GetMaxKeyMask();
}

uint32_t CKeysetImpl::SetValue(int32_t value) {
    HBBTV_LOG_INFO("%s::%s set value %i", jiKeyset::ID, __func__, value);
    auto* api = CDAEBrowserAPIWK::GetInstance();
    api->SetKeyMask(value);
    return api->GetKeyMask();
}

}  // namespace OipfJavaScript
