// The web process as a bundle sees it: loads the bundle, keeps its client, its user scripts and its pages,
// and runs what has to run whenever a window object is new. One for each web process, kept until the process
// ends.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <webkit2/webkit-web-extension.h>

#include "Host/WebProcess/CarouselLoader.h"
#include "Host/WebProcess/FrameScripts.h"
#include "Host/WebProcess/Glass.h"
#include "Host/WebProcess/HostPage.h"
#include "Host/WebProcess/ShellConnection.h"
#include "Host/WebProcess/WKObjects.h"
#include "Platform/Inc/WKBundle.h"

namespace WebProcess {

class BundleHost final : public WKObject {
 public:
    BundleHost(WebKitWebExtension* extension, const char* shellAddress, bool automation, bool showsConsole);

    // Why not, when the bundle cannot be loaded; pages work without it.
    [[nodiscard]] std::optional<std::string> loadBundle(const char* path);

    void setClient(const WKBundleClientV1& client) { m_client = client; }
    void addUserScript(std::string source, WKUserScriptInjectionTime time,
                       WKUserContentInjectedFrames frames);

    void post(const std::string& name, const std::optional<std::string>& body);
    [[nodiscard]] std::optional<std::string> postSynchronously(const std::string& name,
                                                               const std::optional<std::string>& body);

    // The world of the page's own scripts; a bundle only passes the reference on.
    [[nodiscard]] static WKBundleScriptWorldRef normalWorld();

 private:
    struct UserScript {
        std::string source;
        WKUserScriptInjectionTime time;
        WKUserContentInjectedFrames frames;
    };

    void onPageCreated(WebKitWebExtension*, WebKitWebPage* page);
    gboolean onUserMessage(WebKitWebPage*, WebKitUserMessage* message);
    static void onPageGone(gpointer self, GObject* whereThePageWas);
    void onWindowObjectCleared(WebKitScriptWorld*, WebKitWebPage* page, WebKitFrame* frame);
    JSValueRef reachedDocumentEnd(JSContextRef context, std::span<const JSValueRef> arguments);
    JSValueRef letsKey(JSContextRef context, std::span<const JSValueRef> arguments);

    void runUserScripts(JSGlobalContextRef context, WKUserScriptInjectionTime time, bool isMainFrame);
    [[nodiscard]] bool hasUserScripts(WKUserScriptInjectionTime time) const;
    [[nodiscard]] std::uint64_t pageId() const;

    ShellConnection m_shell;
    CarouselLoader m_carousel;
    Glass m_glass;
    bool m_automation;
    bool m_showsConsole;
    WKBundleClientV1 m_client{};
    WKRetained<WKObject> m_pageGroup;  // Made with the first page.
    std::vector<UserScript> m_userScripts;
    std::map<WebKitWebPage*, WKRetained<HostPage>> m_pages;
};

}  // namespace WebProcess
