// A page as a bundle sees it: its clients, its frames, and the translation of WebKitGTK's signals into
// callbacks.
#pragma once

#include <set>
#include <unordered_map>

#include <webkit2/webkit-web-extension.h>

#include "Host/WebProcess/HostFrame.h"
#include "Host/WebProcess/WKObjects.h"
#include "Platform/Inc/WKBundleClients.h"

namespace WebProcess {

class HostPage final : public WKObject {
 public:
    // What WebKit writes to the terminal, the bundle need not log as well.
    HostPage(WebKitWebPage* page, bool hearsConsole);
    ~HostPage() override;

    // WebKit's page is gone: nothing more arrives, and its frames go with it.
    void detach();

    void setUIClient(const WKBundlePageUIClientV2& client) { m_uiClient = client; }
    void setLoaderClient(const WKBundlePageLoaderClientV6& client) { m_loaderClient = client; }

    [[nodiscard]] std::uint64_t id() const { return m_id; }
    [[nodiscard]] HostFrame* mainFrame();
    // The one object for this frame, made when it is first met.
    [[nodiscard]] HostFrame& frame(WebKitFrame* frame);

    // Those of its frames.
    void addScriptContexts(std::set<JSGlobalContextRef>& contexts) const;

    void didClearWindowObject(HostFrame& frame, WKBundleScriptWorldRef world);

 private:
    static void onFrameGone(gpointer self, GObject* whereTheFrameWas);
    void onConsoleMessage(WebKitWebPage*, WebKitConsoleMessage* message);
    gboolean onSendRequest(WebKitWebPage* page, WebKitURIRequest* request, WebKitURIResponse* redirect);
    void onUriChanged(WebKitWebPage* page, GParamSpec*);

    void didStartProvisionalLoad();
    // Calls a function of the loader client, or none.
    void tell(WKBundlePageFrameCallback function, HostFrame& frame);

    WebKitWebPage* m_page;  // Not owned: its end is reported through detach().
    std::uint64_t m_id;
    WKBundlePageUIClientV2 m_uiClient{};
    WKBundlePageLoaderClientV6 m_loaderClient{};
    std::unordered_map<WebKitFrame*, WKRetained<HostFrame>> m_frames;
};

}  // namespace WebProcess
