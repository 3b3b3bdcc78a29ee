// One view of the browser: a web view that shows one application, with the settings of a television.
#pragma once

#include <cstdint>
#include <string>

#include <webkit2/webkit2.h>

#include "Host/Inc/GCallbacks.h"

namespace Shell {

class BrowserView;

class BrowserViewListener {
 public:
    // The main frame shows another URL, by a navigation or by a fragment.
    virtual void viewDidChangeUrl(BrowserView& view) = 0;
    virtual void viewDidFinishLoad(BrowserView& view) = 0;
    // An error page is shown instead, and the terminal has a line of it. Beginning: no page of the
    // application that the view was told to load has been shown before.
    virtual void viewDidFailLoad(BrowserView& view, bool isBeginning) = 0;
    // A table came instead of a page; another page is to be loaded.
    virtual void viewDidLoadAit(BrowserView& view, const std::string& url, const std::string& xml) = 0;
    // The page asked to be closed (a WebDriver closes windows in this way).
    virtual void viewWantsToClose(BrowserView& view) = 0;
    // From the menu of the right mouse button.
    virtual void viewWantsRemotePanel() = 0;

 protected:
    ~BrowserViewListener() = default;
};

class BrowserView : Host::Pinned {
 public:
    struct Setup {
        WebKitWebContext* context;
        WebKitUserContentManager* content;
        WebKitSettings* settings;
        bool automation;
        double zoom;
    };

    BrowserView(std::int32_t id, const Setup& setup, BrowserViewListener& listener);
    ~BrowserView();

    void load(const std::string& url);
    // Whatever its type is, except for a page.
    void loadAit(const std::string& url);
    void reload();
    void showInspector();
    // For a view whose application is gone, or has not begun.
    void showPlainPage(const std::string& heading, const std::string& text);
    // An error page with the reason, which the terminal is told too.
    void fail(const std::string& url, const std::string& reason);

    [[nodiscard]] std::int32_t id() const { return m_id; }
    [[nodiscard]] std::string url() const;
    [[nodiscard]] std::uint64_t pageId() const { return webkit_web_view_get_page_id(m_view.get()); }
    [[nodiscard]] WebKitWebView* webView() const { return m_view.get(); }
    [[nodiscard]] GtkWidget* widget() const { return GTK_WIDGET(m_view.get()); }

 private:
    void onLoadChanged(WebKitWebView*, WebKitLoadEvent event);
    gboolean onLoadFailed(WebKitWebView*, WebKitLoadEvent, const char* url, GError* error);
    void onUriChanged(WebKitWebView*, GParamSpec*) { reportUrl(); }
    gboolean onDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
    GtkWidget* onCreate(WebKitWebView*, WebKitNavigationAction*);
    void onProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason reason);
    static void onAitRead(GObject* resource, GAsyncResult* result, gpointer self);
    gboolean onContextMenu(WebKitWebView*, WebKitContextMenu* menu, GdkEvent*, WebKitHitTestResult*);
    void onRemotePanelWanted(GSimpleAction*, GVariant*) { m_listener.viewWantsRemotePanel(); }
    void onClose(WebKitWebView*) { m_listener.viewWantsToClose(*this); }

    // Unless it has been reported, or is not that of a page.
    void reportUrl();

    // As what it is, which WebKit does not know.
    void loadFile(const std::string& url, const char* type);

    [[nodiscard]] bool showsOwnPage() const { return m_ownPage || m_ownPageRequested; }

    std::int32_t m_id;
    BrowserViewListener& m_listener;
    Host::GObjectHandle<WebKitWebView> m_view;
    std::string m_requestedUrl;  // Of a load(), until its first page has come, or failed.
    std::string m_reportedUrl;
    // Loads of the shell's own pages (errors, the plain page) are nobody's business.
    bool m_ownPageRequested = false;
    bool m_ownPage = false;
    bool m_aitRequested = false;
    bool m_isAit = false;
    // Of what is asked of WebKit on this object's behalf.
    Host::GObjectHandle<GCancellable> m_cancellable{g_cancellable_new()};
    bool m_provisional = false;
};

}  // namespace Shell
