// The TCP socket that echoes debug() messages to one client at a time, for a developer with a terminal.
//
// It never holds up a page: messages go into a bounded buffer that the socket's own thread sends, and a
// client that does not read loses lines.
#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace OipfJavaScript {

class DebugSocket {
 public:
    static constexpr int kFirstPort = 9900;

    [[nodiscard]] static DebugSocket& GetInstance();

    DebugSocket();
    DebugSocket(const DebugSocket&) = delete;
    DebugSocket& operator=(const DebugSocket&) = delete;
    ~DebugSocket();

    // Starts the thread unless it runs already.
    void Start();
    // Ends the thread and closes both sockets.
    void Stop();
    // Sends the message and a newline to the client, if there is one.
    void Write(const std::string& message);
    // The port it listens on, 0 while it does not.
    [[nodiscard]] int Port() const;

 private:
    void Run();
    // A socket that listens on the first free port, or -1.
    [[nodiscard]] int Listen();
    void Serve(int client);
    // Waits for the descriptor or a wake-up; false when the thread shall end.
    [[nodiscard]] bool Wait(int descriptor, bool alsoForWriting, int timeoutMs, short& ready) const;
    [[nodiscard]] bool IsEnding() const;
    [[nodiscard]] bool Queue(const std::string& bytes);
    // Sends what is queued as far as the client takes it.
    void Flush();
    void Wake() const;

    int m_wake;  // an event descriptor: something was queued, or the thread shall end
    std::thread m_thread;

    mutable std::mutex m_mutex;  // guards everything below
    bool m_running = false;
    bool m_ending = false;
    int m_client = -1;
    int m_port = 0;
    std::string m_queue;
};

}  // namespace OipfJavaScript
