#include "JavaScript/Src/CPrivateObjectFactoryImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannelConfig.h"
#include "InjectedBundle/gen/js/jiOipfAVControl.h"
#include "InjectedBundle/gen/js/jiOipfApplicationManager.h"
#include "InjectedBundle/gen/js/jiOipfCapabilities.h"
#include "InjectedBundle/gen/js/jiOipfConfiguration.h"
#include "InjectedBundle/gen/js/jiOipfDrmAgent.h"
#include "InjectedBundle/gen/js/jiOipfGatewayInfo.h"
#include "InjectedBundle/gen/js/jiOipfParentalControlManager.h"
#include "InjectedBundle/gen/js/jiOipfSearchManager.h"
#include "InjectedBundle/gen/js/jiOipfVideoBroadcast.h"
#include "JavaScript/Src/CChannelConfigImpl.h"
#include "JavaScript/Src/COipfAVControlImpl.h"
#include "JavaScript/Src/COipfApplicationManagerImpl.h"
#include "JavaScript/Src/COipfCapabilitiesImpl.h"
#include "JavaScript/Src/COipfConfigurationImpl.h"
#include "JavaScript/Src/COipfDrmAgentImpl.h"
#include "JavaScript/Src/COipfGatewayInfoImpl.h"
#include "JavaScript/Src/COipfParentalControlManagerImpl.h"
#include "JavaScript/Src/COipfSearchManagerImpl.h"
#include "JavaScript/Src/COipfVideoBroadcastImpl.h"

namespace OipfJavaScript {

namespace {

// Whether the receiver has the objects that are not part of every profile.
bool HasOptionalObjects() {
    return CDAEBrowserAPIWK::GetInstance()->IsProfileSupported(0, 1, 2, 1);
}

}  // namespace

std::unique_ptr<jiOipfVideoBroadcast> CPrivateObjectFactoryImpl::CreateVideoBroadcastObject(
    JSContextRef context) {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiOipfVideoBroadcast>(context);
}

std::unique_ptr<jiOipfAVControl> CPrivateObjectFactoryImpl::CreateVideoMpegObject(JSContextRef context) {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiOipfAVControl>(context);
}

std::unique_ptr<jiOipfApplicationManager> CPrivateObjectFactoryImpl::CreateApplicationManagerObject() {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiOipfApplicationManager>();
}

std::unique_ptr<jiOipfCapabilities> CPrivateObjectFactoryImpl::CreateCapabilitiesObject() {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiOipfCapabilities>();
}

std::unique_ptr<jiChannelConfig> CPrivateObjectFactoryImpl::CreateChannelConfig() {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiChannelConfig>();
}

std::unique_ptr<jiOipfConfiguration> CPrivateObjectFactoryImpl::CreateConfigurationObject() {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiOipfConfiguration>();
}

std::unique_ptr<jiOipfGatewayInfo> CPrivateObjectFactoryImpl::CreateGatewayInfoObject() {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiOipfGatewayInfo>();
}

std::unique_ptr<jiOipfParentalControlManager>
CPrivateObjectFactoryImpl::CreateParentalControlManagerObject() {
    HBBTV_LOG_ENTRY();
    return MakeBinding<jiOipfParentalControlManager>();
}

std::unique_ptr<jiOipfDrmAgent> CPrivateObjectFactoryImpl::CreateDrmAgentObject() {
    HBBTV_LOG_ENTRY();
    if (!HasOptionalObjects()) {
        Fail("TypeError", "application/oipfdrmagent is not supported");
        return nullptr;
    }
    return MakeBinding<jiOipfDrmAgent>();
}

std::unique_ptr<jiOipfSearchManager> CPrivateObjectFactoryImpl::CreateSearchManagerObject() {
    HBBTV_LOG_ENTRY();
    if (!HasOptionalObjects()) {
        Fail("TypeError", "application/oipfSearchManager is not supported");
        return nullptr;
    }
    return MakeBinding<jiOipfSearchManager>();
}

}  // namespace OipfJavaScript
