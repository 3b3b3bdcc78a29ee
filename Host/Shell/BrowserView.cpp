#include "Host/Shell/BrowserView.h"

#include <utility>

#include "Host/Shell/ShellPages.h"

namespace Shell {

using namespace Host;

namespace {

// What an HbbTV application is served as; WebKit does not list it among the types it can show.
constexpr char kHbbTVMimeType[] = "application/vnd.hbbtv.xhtml+xml";

constexpr char kBlankUrl[] = "about:blank";

const char* wordsFor(WebKitWebProcessTerminationReason reason) {
    switch (reason) {
        case WEBKIT_WEB_PROCESS_EXCEEDED_MEMORY_LIMIT:
            return "the web process exceeded its memory limit";
        case WEBKIT_WEB_PROCESS_TERMINATED_BY_API:
            return "the web process was ended by the shell";
        case WEBKIT_WEB_PROCESS_CRASHED:
        default:
            return "the web process crashed";
    }
}

}  // namespace

BrowserView::BrowserView(std::int32_t id, const Setup& setup, BrowserViewListener& listener)
    : m_id(id), m_listener(listener) {
    m_view.reset(WEBKIT_WEB_VIEW(g_object_ref_sink(g_object_new(
        WEBKIT_TYPE_WEB_VIEW, "web-context", setup.context, "user-content-manager", setup.content, "settings",
        setup.settings, "is-controlled-by-automation", static_cast<gboolean>(setup.automation), nullptr))));
    // The video plane lies beneath the pages.
    const GdkRGBA transparent = {0, 0, 0, 0};
    webkit_web_view_set_background_color(m_view.get(), &transparent);

    g_signal_connect(m_view.get(), "load-changed", G_CALLBACK(onLoadChanged), this);
    g_signal_connect(m_view.get(), "load-failed", G_CALLBACK(onLoadFailed), this);
    g_signal_connect(m_view.get(), "notify::uri", G_CALLBACK(onUriChanged), this);
    g_signal_connect(m_view.get(), "decide-policy", G_CALLBACK(onDecidePolicy), this);
    g_signal_connect(m_view.get(), "create", G_CALLBACK(onCreate), this);
    g_signal_connect(m_view.get(), "web-process-terminated", G_CALLBACK(onProcessTerminated), this);
    g_signal_connect(m_view.get(), "close", G_CALLBACK(onClose), this);
    gtk_widget_show(widget());
}

BrowserView::~BrowserView() {
    g_signal_handlers_disconnect_by_data(m_view.get(), this);
    gtk_widget_destroy(widget());
}

void BrowserView::load(const std::string& url) {
    m_requestedUrl = url;
    webkit_web_view_load_uri(m_view.get(), url.c_str());
}

void BrowserView::reload() {
    webkit_web_view_reload(m_view.get());
}

void BrowserView::showInspector() {
    webkit_web_inspector_show(webkit_web_view_get_inspector(m_view.get()));
}

void BrowserView::showPlainPage() {
    m_ownPageRequested = true;
    webkit_web_view_load_html(m_view.get(), plainPage().c_str(), nullptr);
}

void BrowserView::showError(const std::string& url, const std::string& reason) {
    m_ownPageRequested = true;
    webkit_web_view_load_alternate_html(m_view.get(), errorPage(url, reason).c_str(), url.c_str(), nullptr);
}

std::string BrowserView::url() const {
    const char* uri = webkit_web_view_get_uri(m_view.get());
    return uri ? uri : "";
}

std::uint32_t BrowserView::httpStatus() const {
    WebKitWebResource* resource = webkit_web_view_get_main_resource(m_view.get());
    WebKitURIResponse* response = resource ? webkit_web_resource_get_response(resource) : nullptr;
    return response ? webkit_uri_response_get_status_code(response) : 0;
}

void BrowserView::onLoadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self) {
    auto& view = *static_cast<BrowserView*>(self);
    switch (event) {
        case WEBKIT_LOAD_STARTED:
            view.m_provisional = true;
            view.m_ownPage = std::exchange(view.m_ownPageRequested, false);
            break;
        case WEBKIT_LOAD_COMMITTED:
            view.m_provisional = false;
            if (std::exchange(view.m_hasDocument, true))
                view.m_listener.viewDidReplaceDocument(view);
            onUriChanged(nullptr, nullptr, self);
            break;
        case WEBKIT_LOAD_FINISHED: {
            view.m_provisional = false;
            if (view.m_ownPage)
                break;
            // A forbidden port: WebKit reports no failure, it shows nothing.
            const std::string requested = std::exchange(view.m_requestedUrl, {});
            if (view.url() == kBlankUrl && !requested.empty() && requested != kBlankUrl) {
                view.m_listener.viewDidFailLoad(view, "WebKit refused " + requested);
                break;
            }
            constexpr std::uint32_t kFirstErrorStatus = 400;
            const std::uint32_t status = view.httpStatus();
            if (status < kFirstErrorStatus)
                view.m_listener.viewDidFinishLoad(view);
            else
                view.m_listener.viewDidFailLoad(view, "HTTP status " + std::to_string(status));
            break;
        }
        case WEBKIT_LOAD_REDIRECTED:
        default:
            break;
    }
}

gboolean BrowserView::onLoadFailed(WebKitWebView*, WebKitLoadEvent, const char* url, GError* error,
                                   gpointer self) {
    // Another navigation, or a response that is not shown, took the place of this one.
    if (g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
        g_error_matches(error, WEBKIT_POLICY_ERROR,
                        WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE))
        return FALSE;
    auto& view = *static_cast<BrowserView*>(self);
    g_warning("view %d: cannot load %s: %s", view.m_id, url, error->message);
    view.showError(url, error->message);
    view.m_listener.viewDidFailLoad(view, error->message);
    return TRUE;
}

void BrowserView::onUriChanged(WebKitWebView*, GParamSpec*, gpointer self) {
    auto& view = *static_cast<BrowserView*>(self);
    // A load that has only started may still fail or become a download.
    if (view.m_provisional || view.m_ownPage || view.m_ownPageRequested || view.url() == view.m_reportedUrl)
        return;
    view.m_reportedUrl = view.url();
    view.m_listener.viewDidChangeUrl(view);
}

gboolean BrowserView::onDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                                     WebKitPolicyDecisionType type, gpointer) {
    if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE)
        return FALSE;
    WebKitURIResponse* response =
        webkit_response_policy_decision_get_response(WEBKIT_RESPONSE_POLICY_DECISION(decision));
    if (g_strcmp0(webkit_uri_response_get_mime_type(response), kHbbTVMimeType) != 0)
        return FALSE;
    webkit_policy_decision_use(decision);
    return TRUE;
}

// A television has no windows: applications are started through the application manager.
GtkWidget* BrowserView::onCreate(WebKitWebView*, WebKitNavigationAction*, gpointer self) {
    g_message("view %d: a new window was refused", static_cast<BrowserView*>(self)->m_id);
    return nullptr;
}

void BrowserView::onProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason reason,
                                      gpointer self) {
    auto& view = *static_cast<BrowserView*>(self);
    const char* words = wordsFor(reason);
    g_warning("view %d: %s", view.m_id, words);
    view.showError(view.url(), words);
    view.m_listener.viewDidFailLoad(view, words);
}

void BrowserView::onClose(WebKitWebView*, gpointer self) {
    auto& view = *static_cast<BrowserView*>(self);
    view.m_listener.viewWantsToClose(view);
}

}  // namespace Shell
