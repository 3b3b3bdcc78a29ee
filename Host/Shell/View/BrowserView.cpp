#include "Host/Shell/View/BrowserView.h"

#include <utility>

#include <libsoup/soup.h>

#include "Host/Shell/Content/Ait.h"
#include "Host/Shell/Content/CarouselFile.h"
#include "Host/Shell/View/ShellPages.h"

namespace Shell {

using namespace Host;

namespace {

// What an HbbTV application is served as; WebKit does not list it among the types it can show.
constexpr char kHbbTVMimeType[] = "application/vnd.hbbtv.xhtml+xml";

constexpr char kBlankUrl[] = "about:blank";

constexpr std::uint32_t kFirstErrorStatus = 400;

// Empty for a response that is one.
std::string errorOf(WebKitURIResponse* response) {
    const std::uint32_t status = response ? webkit_uri_response_get_status_code(response) : 0;
    if (status < kFirstErrorStatus)
        return {};
    // The carousel speaks no HTTP to a viewer.
    if (g_str_has_prefix(webkit_uri_response_get_uri(response), "dvb:"))
        return kNoSuchFile;
    return "HTTP status " + std::to_string(status) + " (" + soup_status_get_phrase(status) + ")";
}

// Of files, WebKit knows what the desktop knows, and that is nothing of television.
std::string typeOf(WebKitURIResponse* response) {
    const std::string url = webkit_uri_response_get_uri(response);
    const std::string own = url.starts_with("file:") ? mediaTypeOf(url, {}) : "";
    if (own == kAitMimeType || own == kHbbTVMimeType)
        return own;
    const char* type = webkit_uri_response_get_mime_type(response);
    return type ? type : "";
}

bool isPage(const std::string& type) {
    return type == "text/html" || type == "application/xhtml+xml" || type == kHbbTVMimeType;
}

void tellOfResource(WebKitWebResource* resource, const char* reason) {
    g_message("cannot load %s: %s", webkit_web_resource_get_uri(resource), reason);
}

void onResourceFinished(WebKitWebResource* resource, gpointer) {
    if (const std::string error = errorOf(webkit_web_resource_get_response(resource)); !error.empty())
        tellOfResource(resource, error.c_str());
}

void onResourceFailed(WebKitWebResource* resource, GError* error, gpointer) {
    if (!g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED))
        tellOfResource(resource, error->message);
}

void onResourceStarted(WebKitWebView* webView, WebKitWebResource* resource, WebKitURIRequest*, gpointer) {
    if (resource == webkit_web_view_get_main_resource(webView))
        return;
    g_signal_connect(resource, "finished", G_CALLBACK(onResourceFinished), nullptr);
    g_signal_connect(resource, "failed", G_CALLBACK(onResourceFailed), nullptr);
}

// The screen keeps its size, and the inspector its keyboard: it has a window of its own.
gboolean onAttachInspector(WebKitWebInspector* inspector, gpointer) {
    webkit_web_inspector_detach(inspector);
    return TRUE;
}

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
    // The page keeps its 1280x720 pixels.
    webkit_web_view_set_zoom_level(m_view.get(), setup.zoom);
    // Beneath it are the views of other applications, or black.
    const GdkRGBA transparent = {0, 0, 0, 0};
    webkit_web_view_set_background_color(m_view.get(), &transparent);

    g_signal_connect(m_view.get(), "load-changed", G_CALLBACK(callback<&BrowserView::onLoadChanged>), this);
    g_signal_connect(m_view.get(), "load-failed", G_CALLBACK(callback<&BrowserView::onLoadFailed>), this);
    g_signal_connect(m_view.get(), "resource-load-started", G_CALLBACK(onResourceStarted), this);
    g_signal_connect(m_view.get(), "notify::uri", G_CALLBACK(callback<&BrowserView::onUriChanged>), this);
    g_signal_connect(m_view.get(), "decide-policy", G_CALLBACK(callback<&BrowserView::onDecidePolicy>), this);
    g_signal_connect(m_view.get(), "create", G_CALLBACK(callback<&BrowserView::onCreate>), this);
    g_signal_connect(m_view.get(), "web-process-terminated",
                     G_CALLBACK(callback<&BrowserView::onProcessTerminated>), this);
    g_signal_connect(m_view.get(), "context-menu", G_CALLBACK(callback<&BrowserView::onContextMenu>), this);
    g_signal_connect(m_view.get(), "close", G_CALLBACK(callback<&BrowserView::onClose>), this);
    g_signal_connect(webkit_web_view_get_inspector(m_view.get()), "attach", G_CALLBACK(onAttachInspector),
                     nullptr);
    gtk_widget_show(widget());
}

BrowserView::~BrowserView() {
    g_cancellable_cancel(m_cancellable.get());
    g_signal_handlers_disconnect_by_data(m_view.get(), this);
    gtk_widget_destroy(widget());
}

void BrowserView::loadAit(const std::string& url) {
    load(url);
    m_aitRequested = true;
}

void BrowserView::load(const std::string& url) {
    m_aitRequested = false;
    m_requestedUrl = url;
    webkit_web_view_load_uri(m_view.get(), url.c_str());
}

void BrowserView::loadFile(const std::string& url, const char* type) {
    const GObjectHandle<GFile> file(g_file_new_for_uri(url.substr(0, url.find_first_of("?#")).c_str()));
    GErrorSlot error;
    const GBytesHandle bytes(g_file_load_bytes(file.get(), nullptr, nullptr, error.out()));
    if (bytes)
        webkit_web_view_load_bytes(m_view.get(), bytes.get(), type, nullptr, url.c_str());
    else
        fail(url, error.message());
}

void BrowserView::reload() {
    webkit_web_view_reload_bypass_cache(m_view.get());
}

void BrowserView::showInspector() {
    webkit_web_inspector_show(webkit_web_view_get_inspector(m_view.get()));
}

void BrowserView::showPlainPage(const std::string& heading, const std::string& text) {
    m_ownPageRequested = true;
    m_requestedUrl.clear();
    webkit_web_view_load_html(m_view.get(), plainPage(heading, text).c_str(), nullptr);
}

void BrowserView::fail(const std::string& url, const std::string& reason) {
    g_warning("view %d: cannot show %s: %s", m_id, url.c_str(), reason.c_str());
    m_ownPageRequested = true;
    webkit_web_view_load_alternate_html(m_view.get(), errorPage(url, reason).c_str(), url.c_str(), nullptr);
    m_listener.viewDidFailLoad(*this, !std::exchange(m_requestedUrl, {}).empty());
}

std::string BrowserView::url() const {
    const char* uri = webkit_web_view_get_uri(m_view.get());
    return uri ? uri : "";
}

void BrowserView::onLoadChanged(WebKitWebView*, WebKitLoadEvent event) {
    switch (event) {
        case WEBKIT_LOAD_STARTED:
            m_provisional = true;
            m_isAit = false;
            m_ownPage = std::exchange(m_ownPageRequested, false);
            break;
        case WEBKIT_LOAD_COMMITTED:
            m_provisional = false;
            reportUrl();
            break;
        case WEBKIT_LOAD_FINISHED: {
            m_provisional = false;
            if (showsOwnPage())
                break;
            // A forbidden port: WebKit reports no failure, it shows nothing.
            const std::string requested = m_requestedUrl;
            if (url() == kBlankUrl && !requested.empty() && requested != kBlankUrl) {
                fail(requested, "WebKit forbids its port");
                break;
            }
            if (m_isAit) {
                webkit_web_resource_get_data(webkit_web_view_get_main_resource(m_view.get()),
                                             m_cancellable.get(), onAitRead, this);
                break;
            }
            m_requestedUrl.clear();
            m_listener.viewDidFinishLoad(*this);
            break;
        }
        case WEBKIT_LOAD_REDIRECTED:
        default:
            break;
    }
}

gboolean BrowserView::onLoadFailed(WebKitWebView*, WebKitLoadEvent, const char* url, GError* error) {
    // Another navigation, or a response that is not shown, took the place of this one.
    if (g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
        g_error_matches(error, WEBKIT_POLICY_ERROR,
                        WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE))
        return FALSE;
    fail(url, error->message);
    return TRUE;
}

void BrowserView::reportUrl() {
    // A load that has only started may still fail or become a download.
    if (m_provisional || m_isAit || showsOwnPage() || url() == m_reportedUrl)
        return;
    m_reportedUrl = url();
    m_listener.viewDidChangeUrl(*this);
}

gboolean BrowserView::onDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                                     WebKitPolicyDecisionType type) {
    if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE)
        return FALSE;
    auto* reply = WEBKIT_RESPONSE_POLICY_DECISION(decision);
    WebKitURIResponse* response = webkit_response_policy_decision_get_response(reply);
    const std::string url = webkit_uri_response_get_uri(response);
    const std::string mime = typeOf(response);
    const bool isAit = mime == kAitMimeType;
    const bool known =
        webkit_response_policy_decision_is_mime_type_supported(reply) || mime == kHbbTVMimeType || isAit;
    // What the page around a frame shows is its own affair, but nothing is ever downloaded.
    if (!webkit_response_policy_decision_is_main_frame_main_resource(reply)) {
        known ? webkit_policy_decision_use(decision) : webkit_policy_decision_ignore(decision);
        return TRUE;
    }
    std::string error = errorOf(response);
    if (error.empty() && !known)
        error = "this is no page: " + mime;
    // Its scripts would run before anybody sees that it is no table.
    if (error.empty() && m_aitRequested && isPage(mime))
        error = "this is no AIT but a page: " + mime;
    if (error.empty() && mime == kHbbTVMimeType &&
        g_strcmp0(mime.c_str(), webkit_uri_response_get_mime_type(response)) != 0) {
        webkit_policy_decision_ignore(decision);
        loadFile(url, kHbbTVMimeType);
        return TRUE;
    }
    if (error.empty()) {
        m_isAit = isAit || std::exchange(m_aitRequested, false);
        webkit_policy_decision_use(decision);
        return TRUE;
    }
    webkit_policy_decision_ignore(decision);
    fail(url, error);
    return TRUE;
}

// A television has no windows: applications are started through the application manager.
GtkWidget* BrowserView::onCreate(WebKitWebView*, WebKitNavigationAction*) {
    g_message("view %d: a new window was refused", m_id);
    return nullptr;
}

void BrowserView::onProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason reason) {
    fail(url(), wordsFor(reason));
}

void BrowserView::onAitRead(GObject* resource, GAsyncResult* result, gpointer self) {
    GErrorSlot error;
    gsize length = 0;
    const GChars xml(reinterpret_cast<char*>(
        webkit_web_resource_get_data_finish(WEBKIT_WEB_RESOURCE(resource), result, &length, error.out())));
    // Cancelled: the view is gone.
    if (error.is(G_IO_ERROR, G_IO_ERROR_CANCELLED))
        return;
    auto& view = *static_cast<BrowserView*>(self);
    if (view.m_isAit)
        view.m_listener.viewDidLoadAit(view, view.url(), {xml ? xml.get() : "", length});
}

gboolean BrowserView::onContextMenu(WebKitWebView*, WebKitContextMenu* menu, GdkEvent*,
                                    WebKitHitTestResult*) {
    const GObjectHandle<GSimpleAction> action(g_simple_action_new("remote-control", nullptr));
    g_signal_connect(action.get(), "activate", G_CALLBACK(callback<&BrowserView::onRemotePanelWanted>), this);
    webkit_context_menu_append(
        menu, webkit_context_menu_item_new_from_gaction(G_ACTION(action.get()), "Remote Control", nullptr));
    return FALSE;
}

}  // namespace Shell
