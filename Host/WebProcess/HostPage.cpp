#include "Host/WebProcess/HostPage.h"

#include <libsoup/soup.h>

#include "Host/Inc/GCallbacks.h"
#include "Host/WebProcess/DeprecatedWebKit.h"

namespace WebProcess {

using namespace Host;

namespace {

// Whether a request for the page's own URL is for its document: it may also be a script's, an image's or that
// of an iframe. WebKit tells the destination where the origin is trustworthy, which includes the local host;
// elsewhere the headers that only documents are requested with have to do, and an iframe passes for the page.
bool isMainDocument(SoupMessageHeaders* headers) {
    if (!headers)
        return true;
    if (const char* destination = soup_message_headers_get_one(headers, "Sec-Fetch-Dest"))
        return g_str_equal(destination, "document");
    const char* accept = soup_message_headers_get_list(headers, "Accept");
    return accept && g_str_has_prefix(accept, "text/html,") &&
           soup_message_headers_get_one(headers, "Upgrade-Insecure-Requests");
}

}  // namespace

HostPage::HostPage(WebKitWebPage* page, bool hearsConsole)
    : m_page(page), m_id(webkit_web_page_get_id(page)) {
    if (hearsConsole)
        g_signal_connect(page, "console-message-sent", G_CALLBACK(callback<&HostPage::onConsoleMessage>),
                         this);
    g_signal_connect(page, "send-request", G_CALLBACK(callback<&HostPage::onSendRequest>), this);
    g_signal_connect(page, "notify::uri", G_CALLBACK(callback<&HostPage::onUriChanged>), this);
}

HostPage::~HostPage() {
    detach();
}

void HostPage::detach() {
    for (auto& [frame, wrapper] : m_frames) {
        g_object_weak_unref(G_OBJECT(frame), onFrameGone, this);
        wrapper->detach();
    }
    m_frames.clear();
    m_page = nullptr;
}

HostFrame* HostPage::mainFrame() {
    WebKitFrame* main = m_page ? mainFrameOf(m_page) : nullptr;
    return main ? &frame(main) : nullptr;
}

HostFrame& HostPage::frame(WebKitFrame* frame) {
    auto [entry, isNew] = m_frames.try_emplace(frame);
    if (isNew) {
        entry->second = WKRetained<HostFrame>::adopt(new HostFrame(frame));
        g_object_weak_ref(G_OBJECT(frame), onFrameGone, this);
    }
    return *entry->second;
}

void HostPage::addScriptContexts(std::set<JSGlobalContextRef>& contexts) const {
    for (const auto& [frame, wrapper] : m_frames)
        contexts.insert(wrapper->scriptContext());
}

void HostPage::onFrameGone(gpointer self, GObject* whereTheFrameWas) {
    auto& page = *static_cast<HostPage*>(self);
    const auto found = page.m_frames.find(reinterpret_cast<WebKitFrame*>(whereTheFrameWas));
    if (found == page.m_frames.end())
        return;
    const WKRetained<HostFrame> frame = std::move(found->second);
    page.m_frames.erase(found);
    frame->detach();
    // WebKitGTK has no signal for it, but gives up its object for the frame as soon as the frame is out of
    // its page.
    page.tell(page.m_loaderClient.didRemoveFrameFromHierarchy, *frame);
}

void HostPage::tell(WKBundlePageFrameCallback function, HostFrame& frame) {
    if (!function)
        return;
    WKTypeRef userData = nullptr;
    function(toRef<WKBundlePageRef>(this), toRef<WKBundleFrameRef>(&frame), &userData,
             m_loaderClient.base.clientInfo);
    if (userData)
        fromRef<WKObject>(userData)->release();
}

void HostPage::didClearWindowObject(HostFrame& frame, WKBundleScriptWorldRef world) {
    if (m_loaderClient.didClearWindowObjectForFrame)
        m_loaderClient.didClearWindowObjectForFrame(toRef<WKBundlePageRef>(this),
                                                    toRef<WKBundleFrameRef>(&frame), world,
                                                    m_loaderClient.base.clientInfo);
}

void HostPage::onConsoleMessage(WebKitWebPage*, WebKitConsoleMessage* message) {
    if (!m_uiClient.willAddMessageToConsole)
        return;
    const auto text = WKRetained<Text>::adopt(new Text(webkit_console_message_get_text(message)));
    m_uiClient.willAddMessageToConsole(toRef<WKBundlePageRef>(this), toRef<WKStringRef>(text.get()),
                                       webkit_console_message_get_line(message), m_uiClient.base.clientInfo);
}

gboolean HostPage::onSendRequest(WebKitWebPage* webPage, WebKitURIRequest* request,
                                 WebKitURIResponse* redirect) {
    const bool isOfThePage =
        g_strcmp0(webkit_uri_request_get_uri(request), webkit_web_page_get_uri(webPage)) == 0;
    // A redirect goes on with a load that has been announced.
    if (isOfThePage && !redirect && isMainDocument(webkit_uri_request_get_http_headers(request)))
        didStartProvisionalLoad();
    return FALSE;
}

// Blank documents are loaded without a request.
void HostPage::onUriChanged(WebKitWebPage* webPage, GParamSpec*) {
    const char* uri = webkit_web_page_get_uri(webPage);
    if (uri && g_str_has_prefix(uri, "about:"))
        didStartProvisionalLoad();
}

void HostPage::didStartProvisionalLoad() {
    if (HostFrame* main = mainFrame())
        tell(m_loaderClient.didStartProvisionalLoadForFrame, *main);
}

}  // namespace WebProcess
