#include "Host/WebProcess/BundleHost.h"

#include <dlfcn.h>

#include <algorithm>

#include "Host/Inc/GCallbacks.h"
#include "Host/Inc/ShellChannel.h"
#include "Host/WebProcess/JSHandles.h"

namespace WebProcess {

using namespace Host;

namespace {

// WebKit's own name for them in messages and stack traces.
constexpr char kUserScriptName[] = "user-script";

// The bundle looks its functions up in the global scope, whereas a module of the web process is opened
// locally.
bool makeOwnSymbolsGlobal() {
    Dl_info own{};
    return dladdr(reinterpret_cast<const void*>(&WKBundleSetClient), &own) != 0 &&
           dlopen(own.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL) != nullptr;
}

std::string lastLinkError() {
    const char* error = dlerror();
    return error ? error : "unknown error";
}

}  // namespace

BundleHost::BundleHost(WebKitWebExtension* extension, const char* shellAddress, bool automation,
                       bool showsConsole)
    : m_shell(shellAddress), m_automation(automation), m_showsConsole(showsConsole) {
    g_signal_connect(extension, "page-created", G_CALLBACK(callback<&BundleHost::onPageCreated>), this);
    g_signal_connect(webkit_script_world_get_default(), "window-object-cleared",
                     G_CALLBACK(callback<&BundleHost::onWindowObjectCleared>), this);
}

std::optional<std::string> BundleHost::loadBundle(const char* path) {
    if (!makeOwnSymbolsGlobal())
        return lastLinkError();
    // Never closed: WebKit's callbacks lead into it until the process ends.
    void* module = dlopen(path, RTLD_NOW);
    if (!module)
        return lastLinkError();
    const auto initialize =
        reinterpret_cast<decltype(&WKBundleInitialize)>(dlsym(module, "WKBundleInitialize"));
    if (!initialize)
        return lastLinkError();
    m_carousel.initialiseWith([&] { initialize(toRef<WKBundleRef>(this), nullptr); });
    const auto requestFile =
        reinterpret_cast<decltype(&s_soupDsmccFileRequest)>(dlsym(module, "s_soupDsmccFileRequest"));
    if (requestFile && m_shell.connection())
        m_carousel.serve(m_shell.connection(), requestFile);
    return std::nullopt;
}

void BundleHost::addUserScript(std::string source, WKUserScriptInjectionTime time,
                               WKUserContentInjectedFrames frames) {
    m_userScripts.push_back({std::move(source), time, frames});
}

void BundleHost::post(const std::string& name, const std::optional<std::string>& body) {
    m_shell.post(pageId(), name, body);
}

std::optional<std::string> BundleHost::postSynchronously(const std::string& name,
                                                         const std::optional<std::string>& body) {
    return m_shell.postSynchronously(pageId(), name, body);
}

WKBundleScriptWorldRef BundleHost::normalWorld() {
    static WKObject s_normalWorld;
    return toRef<WKBundleScriptWorldRef>(&s_normalWorld);
}

void BundleHost::onPageCreated(WebKitWebExtension*, WebKitWebPage* webPage) {
    const auto page = WKRetained<HostPage>::adopt(new HostPage(webPage, !m_showsConsole));
    m_pages.insert_or_assign(webPage, page);
    g_object_weak_ref(G_OBJECT(webPage), onPageGone, this);
    g_signal_connect(webPage, "user-message-received", G_CALLBACK(callback<&BundleHost::onUserMessage>),
                     this);
    if (m_carousel.serves())
        m_shell.announcePage(page->id());

    const auto bundle = toRef<WKBundleRef>(this);
    if (!m_pageGroup) {
        m_pageGroup = WKRetained<WKObject>::adopt(new WKObject);
        if (m_client.didInitializePageGroup)
            m_client.didInitializePageGroup(bundle, toRef<WKBundlePageGroupRef>(m_pageGroup.get()),
                                            m_client.base.clientInfo);
    }
    if (m_client.didCreatePage)
        m_client.didCreatePage(bundle, toRef<WKBundlePageRef>(page.get()), m_client.base.clientInfo);
}

gboolean BundleHost::onUserMessage(WebKitWebPage*, WebKitUserMessage* message) {
    GVariant* value = webkit_user_message_get_parameters(message);
    if (!g_str_equal(webkit_user_message_get_name(message), ShellChannel::kIsLowest) || !value ||
        !g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN))
        return FALSE;
    m_glass.setLowest(g_variant_get_boolean(value));
    return TRUE;
}

void BundleHost::onPageGone(gpointer self, GObject* whereThePageWas) {
    auto& host = *static_cast<BundleHost*>(self);
    const auto found = host.m_pages.find(reinterpret_cast<WebKitWebPage*>(whereThePageWas));
    if (found == host.m_pages.end())
        return;
    const WKRetained<HostPage> page = std::move(found->second);
    host.m_pages.erase(found);
    page->detach();
    if (host.m_client.willDestroyPage)
        host.m_client.willDestroyPage(toRef<WKBundleRef>(&host), toRef<WKBundlePageRef>(page.get()),
                                      host.m_client.base.clientInfo);
}

void BundleHost::onWindowObjectCleared(WebKitScriptWorld*, WebKitWebPage* webPage, WebKitFrame* webFrame) {
    const auto found = m_pages.find(webPage);
    if (found == m_pages.end())
        return;
    const WKRetained<HostPage> page = found->second;
    const WKRetained<HostFrame> frame(&page->frame(webFrame));
    const JSGlobalContextRef context = frame->scriptContext();
    if (!context)
        return;
    std::set<JSGlobalContextRef> contexts;
    for (const auto& [webKitPage, known] : m_pages)
        known->addScriptContexts(contexts);
    m_glass.keepOnly(contexts);
    runBrowserExtensions(context, m_glass.makeScriptSide(context),
                         m_automation ? functionOf<&BundleHost::letsKey>(context, this) : nullptr);
    if (m_automation)
        defineCollectGarbage(context);
    page->didClearWindowObject(*frame, normalWorld());
    defineKeyNames(context);
    runUserScripts(context, kWKInjectAtDocumentStart, frame->isMainFrame());
    if (hasUserScripts(kWKInjectAtDocumentEnd))
        listenForDocumentEnd(context, functionOf<&BundleHost::reachedDocumentEnd>(context, this));
}

JSValueRef BundleHost::reachedDocumentEnd(JSContextRef context, std::span<const JSValueRef> arguments) {
    runUserScripts(JSContextGetGlobalContext(context), kWKInjectAtDocumentEnd,
                   !arguments.empty() && JSValueToBoolean(context, arguments[0]));
    return JSValueMakeUndefined(context);
}

JSValueRef BundleHost::letsKey(JSContextRef context, std::span<const JSValueRef> arguments) {
    const auto keyCode = static_cast<unsigned>(JSValueToNumber(context, arguments[0], nullptr));
    const bool pressed = JSValueToBoolean(context, arguments[1]);
    const auto answer =
        postSynchronously(pressed ? ShellChannel::kDriverKeyPressed : ShellChannel::kDriverKeyReleased,
                          std::to_string(keyCode));
    return JSValueMakeBoolean(context, answer.has_value());
}

void BundleHost::runUserScripts(JSGlobalContextRef context, WKUserScriptInjectionTime time,
                                bool isMainFrame) {
    for (const UserScript& script : m_userScripts) {
        if (script.time == time && (isMainFrame || script.frames == kWKInjectInAllFrames))
            runScript(context, script.source, kUserScriptName);
    }
}

bool BundleHost::hasUserScripts(WKUserScriptInjectionTime time) const {
    return std::any_of(m_userScripts.begin(), m_userScripts.end(),
                       [time](const UserScript& script) { return script.time == time; });
}

// A view has a web process of its own, and a page of its own in it.
std::uint64_t BundleHost::pageId() const {
    return m_pages.empty() ? 0 : m_pages.begin()->second->id();
}

}  // namespace WebProcess
