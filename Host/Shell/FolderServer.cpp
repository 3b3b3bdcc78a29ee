#include "Host/Shell/FolderServer.h"

#include <string_view>
#include <system_error>

#include "Host/Shell/Content/CarouselFile.h"
#include "Host/Shell/Processes/InstalledFiles.h"

namespace Shell {

using namespace Host;

namespace {

namespace fs = std::filesystem;

// Digital text is not for a server: the default scenario broadcasts it with its first channel.
constexpr char kBroadcastExample[] = "carousel";
constexpr char kBroadcastFolder[] = "dvb://3070.3e9.65/";

std::string typeOf(const std::string& name, GBytes* bytes) {
    size_t size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
    std::string type = mediaTypeOf(name, {data ? data : "", size});
    if (type.starts_with("text/") || type.ends_with("xml"))
        type += "; charset=utf-8";
    return type;
}

}  // namespace

std::unique_ptr<FolderServer> FolderServer::start(const std::string& folder, std::string& problem) {
    std::error_code error;
    const fs::path path = fs::canonical(folder, error);
    if (error || !fs::is_directory(path, error)) {
        problem = "not a folder: " + folder;
        return nullptr;
    }
    std::unique_ptr<FolderServer> server(new FolderServer(path));
    GErrorSlot refused;
    if (!soup_server_listen_local(server->m_server.get(), 0, SOUP_SERVER_LISTEN_IPV4_ONLY, refused.out())) {
        problem = "cannot serve " + folder + ": " + refused.message();
        return nullptr;
    }
    GSList* addresses = soup_server_get_uris(server->m_server.get());
    server->m_address = GChars(g_uri_to_string(static_cast<GUri*>(addresses->data))).get();
    g_slist_free_full(addresses, reinterpret_cast<GDestroyNotify>(&g_uri_unref));
    return server;
}

FolderServer::FolderServer(fs::path folder)
    : m_folder(std::move(folder)), m_server(soup_server_new("server-header", nullptr, nullptr)) {
    soup_server_add_handler(m_server.get(), nullptr, callback<&FolderServer::onRequest>, this, nullptr);
}

std::string FolderServer::addressOf(const std::string& path) const {
    const GChars address(g_uri_resolve_relative(m_address.c_str(), path.c_str(), G_URI_FLAGS_NONE, nullptr));
    return address ? address.get() : m_address;
}

void FolderServer::onRequest(SoupServer*, SoupServerMessage* message, const char* decoded, GHashTable*) {
    const std::string path = decoded;
    const std::string_view method = soup_server_message_get_method(message);
    SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
    soup_message_headers_replace(headers, "Cache-Control", "no-store");
    soup_server_message_set_status(message, SOUP_STATUS_NOT_FOUND, nullptr);
    if (method != "GET" && method != "HEAD") {
        soup_server_message_set_status(message, SOUP_STATUS_METHOD_NOT_ALLOWED, nullptr);
        return;
    }
    std::error_code error;
    fs::path file = m_folder / fs::path(path).relative_path();
    if (fs::is_directory(file, error)) {
        if (!path.ends_with('/')) {
            const GChars target(g_uri_escape_string((path + "/").c_str(), "/", FALSE));
            soup_server_message_set_redirect(message, SOUP_STATUS_MOVED_PERMANENTLY, target.get());
            return;
        }
        file /= "index.html";
    }
    // A path must not climb out of the folder, whatever dots and links it goes through.
    file = fs::canonical(file, error);
    if (error || *file.lexically_relative(m_folder).begin() == ".." || !fs::is_regular_file(file, error))
        return;
    char* content = nullptr;
    size_t size = 0;
    // Read and not mapped: its developer may cut it short at any moment.
    if (!g_file_get_contents(file.c_str(), &content, &size, nullptr))
        return;
    // Parts of it ("Range") are the library's to cut out.
    const GBytesHandle bytes(g_bytes_new_take(content, size));
    soup_message_headers_replace(headers, "Accept-Ranges", "bytes");
    soup_message_headers_replace(headers, "Content-Type", typeOf(file.filename(), bytes.get()).c_str());
    soup_message_body_append_bytes(soup_server_message_get_response_body(message), bytes.get());
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
}

std::unique_ptr<FolderServer> serveFor(Options& options, std::string& problem) {
    if (options.example) {
        options.folder = findExamples();
        options.url = *options.example + "/";
        const auto page = options.folder.value_or("") + "/" + options.url + "index.html";
        if (!g_file_test(page.c_str(), G_FILE_TEST_IS_REGULAR)) {
            problem = "there is no example " + *options.example;
            return nullptr;
        }
    }
    if (!options.folder)
        return nullptr;
    auto server = FolderServer::start(*options.folder, problem);
    if (server)
        options.url = options.example == kBroadcastExample ? kBroadcastFolder + options.url
                                                           : server->addressOf(options.url);
    return server;
}

}  // namespace Shell
