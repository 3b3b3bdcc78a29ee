#include "Host/Shell/View/CarouselScheme.h"

#include <memory>
#include <string>
#include <string_view>

#include "Host/Inc/ShellChannel.h"
#include "Host/Shell/Content/CarouselFile.h"
#include "Host/Shell/View/ShellPages.h"

namespace Shell {

using namespace Host;

namespace {

using ShellChannel::FileOutcome;

constexpr unsigned kFound = 200;
constexpr unsigned kNotFound = 404;

// A request on its way. WebKit may have given it up meanwhile; it then ignores the answer.
struct Waiting {
    GObjectHandle<WebKitURISchemeRequest> request;
    std::uint32_t handle;
    int limitSeconds;
};

std::string withoutFragment(const char* url) {
    const std::string_view text(url);
    return std::string(text.substr(0, text.find('#')));
}

// WebKit names the origin of who wants to read another origin's file. It checks the answer of its own accord,
// except that of a synchronous request.
bool comesFromAnotherOrigin(WebKitURISchemeRequest* request) {
    SoupMessageHeaders* headers = webkit_uri_scheme_request_get_http_headers(request);
    const char* reader = headers ? soup_message_headers_get_one(headers, "Origin") : nullptr;
    if (!reader)
        return false;
    WebKitSecurityOrigin* origin =
        webkit_security_origin_new_for_uri(webkit_uri_scheme_request_get_uri(request));
    const GChars own(webkit_security_origin_to_string(origin));
    webkit_security_origin_unref(origin);
    return g_strcmp0(own.get(), reader) != 0;
}

void finish(WebKitURISchemeRequest* request, unsigned status, const std::string& type, GBytes* bytes) {
    const GObjectHandle<GInputStream> stream(g_memory_input_stream_new_from_bytes(bytes));
    const GObjectHandle<WebKitURISchemeResponse> response(
        webkit_uri_scheme_response_new(stream.get(), static_cast<gint64>(g_bytes_get_size(bytes))));
    webkit_uri_scheme_response_set_status(response.get(), status, nullptr);
    webkit_uri_scheme_response_set_content_type(response.get(), type.c_str());
    // The broadcaster exchanges files at any time. One document still reads each only once while it loads.
    SoupMessageHeaders* headers = soup_message_headers_new(SOUP_MESSAGE_HEADERS_RESPONSE);
    // Scripts read the type here; the response's own is only for WebKit.
    soup_message_headers_append(headers, "Content-Type", type.c_str());
    soup_message_headers_append(headers, "Cache-Control", "no-cache");
    webkit_uri_scheme_response_set_http_headers(response.get(), headers);
    webkit_uri_scheme_request_finish_with_response(request, response.get());
}

void finishMissing(WebKitURISchemeRequest* request) {
    const std::string page = errorPage(webkit_uri_scheme_request_get_uri(request), kNoSuchFile);
    const GBytesHandle bytes(g_bytes_new(page.data(), page.size()));
    finish(request, kNotFound, "text/html; charset=utf-8", bytes.get());
}

void fail(WebKitURISchemeRequest* request, const std::string& reason) {
    const GErrorHandle error(
        g_error_new_literal(WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_FAILED, reason.c_str()));
    webkit_uri_scheme_request_finish_error(request, error.get());
}

void finishWith(WebKitURISchemeRequest* request, GVariant* reply) {
    guchar outcome = 0;
    GVariant* content = nullptr;
    g_variant_get(reply, "(y@ay)", &outcome, &content);
    const GVariantHandle owned(content);
    switch (static_cast<FileOutcome>(outcome)) {
        case FileOutcome::Read: {
            const GBytesHandle bytes(g_variant_get_data_as_bytes(content));
            gsize size = 0;
            const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
            finish(request, kFound,
                   mediaTypeOf(webkit_uri_scheme_request_get_uri(request), {data ? data : "", size}),
                   bytes.get());
            return;
        }
        case FileOutcome::Missing:
            finishMissing(request);
            return;
        case FileOutcome::Incomplete:
            fail(request, "The object carousel delivered only a part of the file.");
            return;
        case FileOutcome::Refused:
        default:
            fail(request, "The receiver has no object carousel for this address.");
            return;
    }
}

}  // namespace

CarouselScheme::CarouselScheme(WebKitWebContext* context, const WebProcessChannel& channel, int limitSeconds)
    : m_channel(channel),
      m_limitSeconds(limitSeconds),
      m_nextHandle(g_random_int()),
      m_end(g_cancellable_new()) {
    webkit_web_context_register_uri_scheme(context, "dvb", callback<&CarouselScheme::onRequest>, this,
                                           nullptr);
}

CarouselScheme::~CarouselScheme() {
    g_cancellable_cancel(m_end.get());
}

void CarouselScheme::onRequest(WebKitURISchemeRequest* request) {
    if (comesFromAnotherOrigin(request)) {
        fail(request, "Only pages of the same service may read this file.");
        return;
    }
    WebKitWebView* view = webkit_uri_scheme_request_get_web_view(request);
    GDBusConnection* reader = view ? m_channel.fileReaderOf(webkit_web_view_get_page_id(view)) : nullptr;
    if (!reader) {
        fail(request, "The object carousel needs the bundle, and this page runs without one.");
        return;
    }
    auto waiting = std::make_unique<Waiting>(Waiting{retain(request), m_nextHandle++, m_limitSeconds});
    const std::string url = withoutFragment(webkit_uri_scheme_request_get_uri(request));
    constexpr int kMilliseconds = 1000;
    GVariant* arguments = g_variant_new("(us)", waiting->handle, url.c_str());
    g_dbus_connection_call(reader, nullptr, ShellChannel::kPath, ShellChannel::kFilesInterface,
                           ShellChannel::kReadFile, arguments, G_VARIANT_TYPE(ShellChannel::kFileReplyType),
                           G_DBUS_CALL_FLAGS_NONE, m_limitSeconds * kMilliseconds, m_end.get(), onReply,
                           waiting.release());
}

void CarouselScheme::onReply(GObject* connection, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Waiting> waiting(static_cast<Waiting*>(data));
    auto* reader = G_DBUS_CONNECTION(connection);
    GErrorSlot error;
    const GVariantHandle reply(g_dbus_connection_call_finish(reader, result, error.out()));
    if (reply) {
        finishWith(waiting->request.get(), reply.get());
        return;
    }
    if (error.is(G_IO_ERROR, G_IO_ERROR_CANCELLED))
        return;
    if (!error.is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT)) {
        fail(waiting->request.get(), error.message());
        return;
    }
    g_dbus_connection_call(reader, nullptr, ShellChannel::kPath, ShellChannel::kFilesInterface,
                           ShellChannel::kAbandonFile, g_variant_new("(u)", waiting->handle), nullptr,
                           G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
    fail(waiting->request.get(), "The object carousel did not deliver the file within " +
                                     std::to_string(waiting->limitSeconds) + " s.");
}

}  // namespace Shell
