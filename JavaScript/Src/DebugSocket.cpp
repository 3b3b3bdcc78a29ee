#include "JavaScript/Src/DebugSocket.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>

#include "CSP/Inc/PCLog.h"

namespace OipfJavaScript {

namespace {

constexpr std::string_view kHelp = "window.debug() messages should be shown here\n";
constexpr size_t kQueueLimit = 64 * 1024;
constexpr int kLastPort = 65535;

void LogWriteFailure() {
    HBBTV_LOG_WARNING("%s Failed to write to socket", "DebugSocket");
}

int OpenSocket() {
    const int opened = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    if (opened < 0)
        HBBTV_LOG_ERROR("can't open stream socket");
    else if (setsockopt(opened, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0)
        HBBTV_LOG_WARNING("can't set SO_REUSEADDR");
    return opened;
}

}  // namespace

DebugSocket& DebugSocket::GetInstance() {
    static DebugSocket s_socket;
    return s_socket;
}

DebugSocket::DebugSocket() : m_wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

DebugSocket::~DebugSocket() {
    Stop();
    if (m_wake >= 0)
        close(m_wake);
}

void DebugSocket::Start() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_running)
            return;
        m_running = true;
        m_ending = false;
    }
    if (m_thread.joinable())
        m_thread.join();  // an earlier one, which has ended by itself
    try {
        m_thread = std::thread(&DebugSocket::Run, this);
    } catch (const std::system_error& error) {
        HBBTV_LOG_ERROR("can't start the debug socket's thread: %s", error.what());
        const std::lock_guard lock(m_mutex);
        m_running = false;
    }
}

void DebugSocket::Stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    Wake();
    if (m_thread.joinable())
        m_thread.join();
}

int DebugSocket::Port() const {
    const std::lock_guard lock(m_mutex);
    return m_port;
}

void DebugSocket::Write(const std::string& message) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_client < 0)
            return;
    }
    if (Queue(message + '\n'))
        Wake();
    else
        LogWriteFailure();
}

bool DebugSocket::Queue(const std::string& bytes) {
    const std::lock_guard lock(m_mutex);
    if (m_queue.size() + bytes.size() > kQueueLimit)
        return false;
    m_queue += bytes;
    return true;
}

void DebugSocket::Wake() const {
    const uint64_t one = 1;
    // Cannot fail but by overflow, and then the thread is awake anyway.
    [[maybe_unused]] const ssize_t written = write(m_wake, &one, sizeof one);
}

bool DebugSocket::Wait(int descriptor, bool alsoForWriting, int timeoutMs, short& ready) const {
    // The wake-up may already have been taken by the wait before this one.
    if (IsEnding())
        return false;
    const auto events = static_cast<short>(POLLIN | (alsoForWriting ? POLLOUT : 0));
    std::array<pollfd, 2> polled{{{m_wake, POLLIN, 0}, {descriptor, events, 0}}};
    (void)poll(polled.data(), descriptor >= 0 ? 2 : 1, timeoutMs);
    ready = polled[1].revents;
    uint64_t count = 0;
    [[maybe_unused]] const ssize_t drained = read(m_wake, &count, sizeof count);
    return !IsEnding();
}

bool DebugSocket::IsEnding() const {
    const std::lock_guard lock(m_mutex);
    return m_ending;
}

int DebugSocket::Listen() {
    int listener = OpenSocket();
    if (listener < 0)
        return listener;
    HBBTV_LOG_INFO("Attempting to bind local address");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    for (int port = kFirstPort; port <= kLastPort && listener >= 0; ++port) {
        // A port that was ours a moment ago may need the time to become free.
        short ready = 0;
        if (!Wait(-1, false, 1000, ready))
            break;
        address.sin_port = htons(static_cast<uint16_t>(port));
        if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            continue;
        HBBTV_LOG_INFO("Debug socket bound to port %d", port);
        if (listen(listener, 1) == 0) {
            const std::lock_guard lock(m_mutex);
            m_port = port;
            return listener;
        }
        // Another program bound the port in the same moment and listens already. A bound socket stays so.
        close(listener);
        listener = OpenSocket();
    }
    if (!IsEnding())
        HBBTV_LOG_ERROR("Debug socket found no free port from %d upward", kFirstPort);
    if (listener >= 0)
        close(listener);
    return -1;
}

void DebugSocket::Run() {
    const int listener = Listen();
    bool serving = listener >= 0;
    while (serving) {
        short ready = 0;
        if (!Wait(listener, false, -1, ready))
            break;
        if (ready == 0)
            continue;
        const int client = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (client < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        serving = client >= 0;
        if (serving) {
            HBBTV_LOG_INFO("accept() taken...");
            Serve(client);
        } else {
            HBBTV_LOG_ERROR("accept() failed");
        }
    }
    HBBTV_LOG_INFO("Cleanup thread, close socket");
    if (listener >= 0)
        close(listener);
    const std::lock_guard lock(m_mutex);
    m_port = 0;
    m_running = false;
}

void DebugSocket::Serve(int client) {
    {
        const std::lock_guard lock(m_mutex);
        m_client = client;
        m_queue.clear();
    }
    for (;;) {
        bool queued = false;
        {
            const std::lock_guard lock(m_mutex);
            queued = !m_queue.empty();
        }
        short ready = 0;
        if (!Wait(client, queued, -1, ready))
            break;
        Flush();
        if ((ready & ~POLLOUT) == 0)
            continue;
        std::array<char, 100> piece;
        const ssize_t length = read(client, piece.data(), piece.size());
        if (length == 0) {
            HBBTV_LOG_ERROR("read() failed, break?");
            break;
        }
        // A read error is passed over: a connection that was lost reads as closed the next time.
        if (length >= 4 && std::string_view(piece.data(), 4) == "help" && !Queue(std::string(kHelp)))
            LogWriteFailure();
        Flush();
    }
    const std::lock_guard lock(m_mutex);
    close(m_client);
    m_client = -1;
    m_queue.clear();
}

void DebugSocket::Flush() {
    bool failed = false;
    {
        const std::lock_guard lock(m_mutex);
        while (!m_queue.empty()) {
            const ssize_t sent = send(m_client, m_queue.data(), m_queue.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
            if (sent < 0) {
                failed = errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR;
                if (failed)
                    m_queue.clear();
                break;
            }
            m_queue.erase(0, static_cast<size_t>(sent));
        }
    }
    if (failed)
        LogWriteFailure();
}

}  // namespace OipfJavaScript
