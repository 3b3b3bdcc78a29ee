// The functions that a bundle finds in its web process; each only unwraps its references.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <optional>

#include <glib.h>

#include "Host/WebProcess/BundleHost.h"
#include "Host/WebProcess/HostFrame.h"
#include "Host/WebProcess/HostPage.h"
#include "Host/WebProcess/WKObjects.h"
#include "Platform/Inc/WKBundle.h"

using namespace WebProcess;

namespace {

// Copies the part of a client structure that its version says is there; the base begins every structure.
template <typename Client, typename Base>
Client copyClient(const Base* base, std::initializer_list<size_t> sizeByVersion) {
    Client client{};
    if (!base || base->version < 0)
        return client;
    const size_t newest = sizeByVersion.size() - 1;
    const size_t version = std::min(static_cast<size_t>(base->version), newest);
    std::memcpy(&client, base, *(sizeByVersion.begin() + version));
    return client;
}

std::optional<std::string> textOf(WKTypeRef body) {
    if (!body)
        return std::nullopt;
    const auto* text = dynamic_cast<const Text*>(fromRef<WKObject>(body));
    g_return_val_if_fail(text != nullptr, std::nullopt);
    return text->utf8();
}

}  // namespace

extern "C" {

void WKRelease(WKTypeRef type) {
    g_return_if_fail(type != nullptr);
    fromRef<WKObject>(type)->release();
}

WKStringRef WKStringCreateWithUTF8CString(const char* text) {
    return toRef<WKStringRef>(new Text(text));
}

size_t WKStringGetMaximumUTF8CStringSize(WKStringRef string) {
    return fromRef<Text>(string)->utf8().size() + 1;
}

size_t WKStringGetUTF8CString(WKStringRef string, char* buffer, size_t bufferSize) {
    return fromRef<Text>(string)->copy(buffer, bufferSize);
}

void WKBundleSetClient(WKBundleRef bundle, WKBundleClientBase* client) {
    fromRef<BundleHost>(bundle)->setClient(copyClient<WKBundleClientV1>(
        client, {offsetof(WKBundleClientV1, didReceiveMessageToPage), sizeof(WKBundleClientV1)}));
}

void WKBundleAddUserScript(WKBundleRef bundle, WKBundlePageGroupRef, WKBundleScriptWorldRef,
                           WKStringRef source, WKURLRef, WKArrayRef, WKArrayRef,
                           WKUserScriptInjectionTime injectionTime,
                           WKUserContentInjectedFrames injectedFrames) {
    fromRef<BundleHost>(bundle)->addUserScript(fromRef<Text>(source)->utf8(), injectionTime, injectedFrames);
}

WKBundleScriptWorldRef WKBundleScriptWorldNormalWorld() {
    return BundleHost::normalWorld();
}

void WKBundlePostMessage(WKBundleRef bundle, WKStringRef name, WKTypeRef body) {
    fromRef<BundleHost>(bundle)->post(fromRef<Text>(name)->utf8(), textOf(body));
}

void WKBundlePostSynchronousMessage(WKBundleRef bundle, WKStringRef name, WKTypeRef body,
                                    WKTypeRef* returnData) {
    const auto reply =
        fromRef<BundleHost>(bundle)->postSynchronously(fromRef<Text>(name)->utf8(), textOf(body));
    if (returnData)
        *returnData = reply ? toRef<WKTypeRef>(new Text(reply->c_str())) : nullptr;
}

void WKBundlePageSetUIClient(WKBundlePageRef page, WKBundlePageUIClientBase* client) {
    using Client = WKBundlePageUIClientV2;
    fromRef<HostPage>(page)->setUIClient(
        copyClient<Client>(client, {offsetof(Client, didReachApplicationCacheOriginQuota),
                                    offsetof(Client, didExceedDatabaseQuota), sizeof(Client)}));
}

void WKBundlePageSetPageLoaderClient(WKBundlePageRef page, WKBundlePageLoaderClientBase* client) {
    using Client = WKBundlePageLoaderClientV6;
    fromRef<HostPage>(page)->setLoaderClient(copyClient<Client>(
        client,
        {offsetof(Client, didLayoutForFrame), offsetof(Client, didFinishProgress),
         offsetof(Client, unavailable2), offsetof(Client, didLayout), offsetof(Client, featuresUsedInPage),
         offsetof(Client, willLoadURLRequest), sizeof(Client)}));
}

WKBundleFrameRef WKBundlePageGetMainFrame(WKBundlePageRef page) {
    return toRef<WKBundleFrameRef>(fromRef<HostPage>(page)->mainFrame());
}

JSGlobalContextRef WKBundleFrameGetJavaScriptContext(WKBundleFrameRef frame) {
    return fromRef<HostFrame>(frame)->scriptContext();
}

bool WKBundleFrameIsMainFrame(WKBundleFrameRef frame) {
    return fromRef<HostFrame>(frame)->isMainFrame();
}
}
