#include "JavaScript/Src/COipfGatewayInfoImpl.h"

#include <sstream>
#include <string>
#include <vector>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiStringCollection.h"
#include "JavaScript/Src/CStringCollectionImpl.h"

namespace OipfJavaScript {

namespace {

constexpr const char* kTag = "GATEWAYINFO";

// Empty items are kept, except one behind the last comma.
std::vector<std::string> Items(const std::string& list) {
    std::vector<std::string> items;
    std::istringstream stream(list);
    for (std::string item; std::getline(stream, item, ',');)
        items.push_back(item);
    return items;
}

}  // namespace

COipfGatewayInfoImpl::COipfGatewayInfoImpl() : COipfGatewayInfoBase("UNKNOWN") {
    HBBTV_LOG_INFO("[%s:%d] %s COipfGatewayInfoImpl::%s", kTag, __LINE__, __func__, __func__);
    // Before asking: a session that opens in between is then heard of.
    CDAEBrowserAPIWK::GetInstance()->SubscribeEvents(this);
    m_discovered = CDAEBrowserAPIWK::GetInstance()->IsSASSessionOpen();
}

COipfGatewayInfoImpl::~COipfGatewayInfoImpl() {
    CDAEBrowserAPIWK::GetInstance()->UnsubscribeEvents(this);
}

bool COipfGatewayInfoImpl::IsTrusted(const char* property) {
    if (CDAEBrowserAPIWK::GetInstance()->IsTrusted())
        return true;
    HBBTV_LOG_ERROR("[%s:%d] %s %s - app is not trusted", kTag, __LINE__, __func__, property);
    Fail("Application not trusted");
    return false;
}

bool COipfGatewayInfoImpl::GetIsCSPGCIPlusDiscovered() {
    return IsTrusted("isCSPGCIPlusDiscovered") && m_discovered;
}

bool COipfGatewayInfoImpl::GetIsCSPGCIPlusSupported() {
    return IsTrusted("isCSPGCIPlusSupported");
}

std::unique_ptr<jiStringCollection> COipfGatewayInfoImpl::GetCSPGCIPlusDRMType() {
    if (!IsTrusted("CSPGCIPlusDRMType"))
        return nullptr;
    std::string types;
    CDAEBrowserAPIWK::GetInstance()->GetCIPlusDrmType(types);
    return MakeBinding<jiStringCollection>(Items(types));
}

void COipfGatewayInfoImpl::OnEvent(event_t event) {
    if (event.event == E_SAS_SESSION_STATE)
        m_OnSASSession(event.Unsigned() != 0);
}

void COipfGatewayInfoImpl::m_OnSASSession(bool open) {
    HBBTV_LOG_INFO("[%s:%d] %s COipfGatewayInfoImpl::%s(%s)", kTag, __LINE__, __func__, __func__,
                   open ? "open" : "closed");
    m_discovered = open;
    DispatchEvent("DiscoverCSPGCIPlus", nullptr);
}

}  // namespace OipfJavaScript
