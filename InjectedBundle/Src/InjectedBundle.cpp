#include "InjectedBundle/Src/InjectedBundle.h"

#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "CSP/Inc/PCLog.h"
#include "CSP/Inc/PCRecord.h"
#include "IPC/DBUS/Src/AVEventHandlerWK_DBus.h"
#include "IPC/DBUS/Src/CBroadcastPlayerWK_DBus.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "IPC/DBUS/Src/DSMCCWK_DBus.h"
#include "InjectedBundle/Src/BindingObject.h"
#include "InjectedBundle/Src/BootstrapScript.h"
#include "InjectedBundle/Src/PageHandlers.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "InjectedBundle/gen/js/jiKeyEvent.h"
#include "InjectedBundle/gen/js/jiKeyset.h"
#include "InjectedBundle/gen/js/jiPrivateObjectFactory.h"
#include "JavaScript/Src/PlayerHold.h"
#include "JavaScript/Src/jiDebug.h"
#include "Platform/Inc/WKBundle.h"

namespace OipfJavaScript {

namespace {

WKBundleRef s_globalBundle = nullptr;
JSGlobalContextRef s_globalJSContext = nullptr;

PageHandlers& Handlers() {
    static auto* const s_handlers = new PageHandlers();
    return *s_handlers;
}

// UTF-8 of a string of the browser, without its terminator.
std::string TextOf(WKStringRef string) {
    std::vector<char> buffer(WKStringGetMaximumUTF8CStringSize(string) + 1);
    const size_t written = WKStringGetUTF8CString(string, buffer.data(), buffer.size());
    return {buffer.data(), written > 0 ? written - 1 : 0};
}

void jiRegister(JSContextRef context) {
    jiPrivateObjectFactory::Register(context);
    jiKeyEvent::Register(context);
    jiKeyset::Register(context);
    jiDebug::Register(context);
    jiChannel::Register(context);
}

void willAddMessageToConsole(WKBundlePageRef, WKStringRef message, uint32_t lineNumber, const void*) {
    HBBTV_LOG_INFO("[console.log:%u] %s ", lineNumber, TextOf(message).c_str());
}

void BundlePageDidStartProvisionalLoadForFrameCallback(WKBundlePageRef, WKBundleFrameRef frame, WKTypeRef*,
                                                       const void*) {
    HBBTV_LOG_ENTRY();
    if (!WKBundleFrameIsMainFrame(frame))
        return;
    HBBTV_LOG_INFO("%s() - Ensure AV/VBO and API are released/unsubscribed.", __func__);
    CAVEventHandlerWK::GetInstance()->ReleasePlayer(0);
    CBroadcastPlayerWK::GetInstance()->Release(0);
    PlayerHold::EndAll();
    CDAEBrowserAPIWK::GetInstance()->UnsubscribeEvents(nullptr);
}

void BundlePageDidClearWindowObjectForFrame(WKBundlePageRef page, WKBundleFrameRef frame,
                                            WKBundleScriptWorldRef, const void*) {
    HBBTV_LOG_ENTRY();
    JSGlobalContextRef context = WKBundleFrameGetJavaScriptContext(frame);
    const bool isMainFrame = WKBundleFrameIsMainFrame(frame);
    Handlers().WindowObjectCleared(page, frame, isMainFrame, context);
    if (isMainFrame)
        HBBTV_LOG_INFO("native objects alive: %lu", static_cast<unsigned long>(BindingObject::AliveCount()));
    jiRegister(context);
}

void BundlePageDidRemoveFrameFromHierarchy(WKBundlePageRef, WKBundleFrameRef frame, WKTypeRef*, const void*) {
    HBBTV_LOG_ENTRY();
    Handlers().FrameRemoved(frame);
}

void didCreatePage(WKBundleRef, WKBundlePageRef page, const void*) {
    HBBTV_LOG_ENTRY();
    WKBundlePageUIClientV2 uiClient{};
    uiClient.base.version = 2;
    uiClient.willAddMessageToConsole = willAddMessageToConsole;
    WKBundlePageSetUIClient(page, &uiClient.base);

    s_globalJSContext = WKBundleFrameGetJavaScriptContext(WKBundlePageGetMainFrame(page));

    WKBundlePageLoaderClientV6 loaderClient{};
    loaderClient.base.version = 6;
    loaderClient.didStartProvisionalLoadForFrame = BundlePageDidStartProvisionalLoadForFrameCallback;
    loaderClient.didRemoveFrameFromHierarchy = BundlePageDidRemoveFrameFromHierarchy;
    loaderClient.didClearWindowObjectForFrame = BundlePageDidClearWindowObjectForFrame;
    WKBundlePageSetPageLoaderClient(page, &loaderClient.base);
}

void didInitializePageGroup(WKBundleRef bundle, WKBundlePageGroupRef pageGroup, const void*) {
    HBBTV_LOG_ENTRY();
    // The script's own lines cost more than what they tell of; they are made where they can be seen.
    const bool logs = HbbTVPlatform::LogShows(kPlatformLogInfo);
    const std::string script =
        std::string(logs ? "" : "var _hbbtv_vantrel_logs = false;\n").append(s_bootstrapScript);
    WKStringRef source = WKStringCreateWithUTF8CString(script.c_str());
    WKBundleAddUserScript(bundle, pageGroup, WKBundleScriptWorldNormalWorld(), source, nullptr, nullptr,
                          nullptr, kWKInjectAtDocumentStart, kWKInjectInAllFrames);
    WKRelease(source);
}

}  // namespace

bool BundleGetWKViewFromWKManager(int& viewId) {
    if (s_globalBundle == nullptr) {
        HBBTV_LOG_ERROR("InjectedBundle::%s() s_globalBundle is NULL", __func__);
        return false;
    }
    WKStringRef name = WKStringCreateWithUTF8CString("GetViewId");
    WKTypeRef reply = nullptr;
    WKBundlePostSynchronousMessage(s_globalBundle, name, nullptr, &reply);
    WKRelease(name);
    if (reply == nullptr)
        return false;
    viewId = static_cast<int>(std::strtol(TextOf(static_cast<WKStringRef>(reply)).c_str(), nullptr, 10));
    WKRelease(reply);
    HBBTV_LOG_INFO("InjectedBundle::%s(), got viewId: %d", __func__, viewId);
    return true;
}

namespace {

void Initialize(WKBundleRef bundle) {
    HBBTV_LOG_ERROR(
        "\n***************************************\n*** HbbTV INJECTED BUNDLE\n*** DATE built: %s\n*** TIME "
        "built: "
        "%s\n***************************************",
        __DATE__, __TIME__);
    HBBTV_LOG_INFO("%s()", "WKBundleInitialize");
    HBBTV_LOG_ERROR("HbbTV injected bundle, version %s", HBBTV_VERSION);
    HbbTVPlatform::PCRecord::Open();
    InitDSMCCDBus();

    s_globalBundle = bundle;
    WKBundleClientV1 client{};
    client.base.version = 1;
    client.didCreatePage = didCreatePage;
    client.didInitializePageGroup = didInitializePageGroup;
    WKBundleSetClient(bundle, &client.base);

    const auto pid = static_cast<unsigned long>(getpid());
    HBBTV_LOG_INFO("InjectedBundle - passing WebProcess PID (%lu) to the WebKitManager", pid);
    std::ostringstream text;
    text << pid;
    WKStringRef name = WKStringCreateWithUTF8CString("WebProcessPID");
    WKStringRef body = WKStringCreateWithUTF8CString(text.str().c_str());
    WKBundlePostMessage(bundle, name, body);
    WKRelease(body);
    WKRelease(name);
}

}  // namespace

}  // namespace OipfJavaScript

// A platform's own headers declare no more than its type, so linkage and visibility are given here.
extern "C" __attribute__((visibility("default"))) void WKBundleInitialize(
    WKBundleRef bundle, WKTypeRef /*initializationUserData*/) {
    OipfJavaScript::Initialize(bundle);
}
