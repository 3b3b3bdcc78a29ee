#include "Tests/Media/MediaServer.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

namespace MediaTest {

namespace {

constexpr int kThreads = 32;
constexpr gint64 kGlanceMicroseconds = 20000;

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

const char* typeOf(const std::filesystem::path& file) {
    const auto extension = file.extension();
    if (extension == ".mpd")
        return "application/dash+xml";
    if (extension == ".m3u8")
        return "application/vnd.apple.mpegurl";
    return extension == ".mp3" ? "audio/mpeg" : "video/mp4";
}

}  // namespace

struct MediaServer::Request {
    std::string manner;
    std::filesystem::path file;
    std::size_t from = 0;
    bool ranged = false;
};

MediaServer::MediaServer(std::filesystem::path folder)
    : m_folder(std::move(folder)),
      m_service(g_threaded_socket_service_new(kThreads)),
      m_end(g_cancellable_new()) {
    const Host::GObjectHandle<GInetAddress> loopback(g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4));
    const Host::GObjectHandle<GSocketAddress> wanted(g_inet_socket_address_new(loopback.get(), 0));
    GSocketAddress* rawBound = nullptr;
    g_socket_listener_add_address(G_SOCKET_LISTENER(m_service.get()), wanted.get(), G_SOCKET_TYPE_STREAM,
                                  G_SOCKET_PROTOCOL_TCP, nullptr, &rawBound, nullptr);
    const Host::GObjectHandle<GSocketAddress> bound(rawBound);
    m_port = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(bound.get()));
    const auto run = [](GThreadedSocketService*, GSocketConnection* connection, GObject*,
                        gpointer self) -> gboolean {
        static_cast<MediaServer*>(self)->serve(connection);
        return TRUE;
    };
    g_signal_connect(
        m_service.get(), "run",
        G_CALLBACK(
            static_cast<gboolean (*)(GThreadedSocketService*, GSocketConnection*, GObject*, gpointer)>(run)),
        this);
}

MediaServer::~MediaServer() {
    g_socket_service_stop(m_service.get());
    g_socket_listener_close(G_SOCKET_LISTENER(m_service.get()));
    g_cancellable_cancel(m_end.get());
    while (m_busy > 0)
        std::this_thread::yield();
    g_signal_handlers_disconnect_by_data(m_service.get(), this);
}

std::string MediaServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(m_port) + "/" + path;
}

void MediaServer::serve(GSocketConnection* connection) {
    ++m_busy;
    const Host::GObjectHandle<GDataInputStream> input(
        g_data_input_stream_new(g_io_stream_get_input_stream(G_IO_STREAM(connection))));
    g_data_input_stream_set_newline_type(input.get(), G_DATA_STREAM_NEWLINE_TYPE_ANY);
    g_filter_input_stream_set_close_base_stream(G_FILTER_INPUT_STREAM(input.get()), FALSE);
    Request request;
    for (bool first = true;; first = false) {
        const Host::GChars raw(g_data_input_stream_read_line(input.get(), nullptr, m_end.get(), nullptr));
        const std::string line = raw ? raw.get() : "";
        if (line.empty())
            break;
        if (first) {
            // "GET /manner/path HTTP/1.1"
            const auto begin = line.find('/') + 1;
            const auto slash = line.find('/', begin);
            request.manner = line.substr(begin, slash - begin);
            request.file = m_folder / line.substr(slash + 1, line.find(' ', slash) - slash - 1);
        }
        if (g_ascii_strncasecmp(line.c_str(), "Range: bytes=", 13) == 0) {
            request.from = std::strtoul(line.c_str() + 13, nullptr, 10);
            request.ranged = true;
        }
    }
    ++m_requests;
    if (!request.manner.empty())
        answer(connection, request);
    g_io_stream_close(G_IO_STREAM(connection), nullptr, nullptr);
    --m_busy;
}

void MediaServer::answer(GSocketConnection* connection, const Request& request) {
    static const std::atomic<bool> never = false;
    auto* output = g_io_stream_get_output_stream(G_IO_STREAM(connection));
    const auto send = [&](const std::string& bytes) {
        g_output_stream_write_all(output, bytes.data(), bytes.size(), nullptr, m_end.get(), nullptr);
    };
    if (request.manner == "silent") {
        hold(connection, never);
        return;
    }
    if (request.manner == "elsewhere") {
        send("HTTP/1.1 302 Found\r\nLocation: file://" + request.file.string() +
             "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        return;
    }
    if (!std::filesystem::is_regular_file(request.file)) {
        send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        return;
    }
    const bool half = request.manner == "dropped" || request.manner == "stalled";
    if (half && request.from > 0)
        return;
    const auto content = contentOf(request.file);
    const bool part = request.manner == "good" && request.ranged && request.from < content.size();
    const auto from = part ? request.from : 0;
    std::string head = part ? "HTTP/1.1 206 Partial Content\r\nContent-Range: bytes " + std::to_string(from) +
                                  "-" + std::to_string(content.size() - 1) + "/" +
                                  std::to_string(content.size()) + "\r\n"
                            : "HTTP/1.1 200 OK\r\n";
    if (request.manner != "from-start")
        head += "Accept-Ranges: bytes\r\n";
    head += std::string("Content-Type: ") + typeOf(request.file) +
            "\r\nContent-Length: " + std::to_string(content.size() - from) + "\r\nConnection: close\r\n\r\n";
    send(head + content.substr(from, half ? content.size() / 2 : std::string::npos));
    if (half)
        hold(connection, request.manner == "dropped" ? m_dropping : never);
}

void MediaServer::hold(GSocketConnection* connection, const std::atomic<bool>& fact) const {
    auto* socket = g_socket_connection_get_socket(connection);
    while (!fact && !g_cancellable_is_cancelled(m_end.get())) {
        // Readable without a byte to read: the client has closed the connection.
        if (g_socket_condition_timed_wait(socket, G_IO_IN, kGlanceMicroseconds, m_end.get(), nullptr) &&
            g_socket_get_available_bytes(socket) <= 0)
            return;
    }
}

}  // namespace MediaTest
