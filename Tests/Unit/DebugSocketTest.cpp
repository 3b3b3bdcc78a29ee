// The debug socket: it serves a developer and never holds up a page. ThreadSanitizer runs these too.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <string>

#include "JavaScript/Src/DebugSocket.h"

namespace OipfJavaScript {
namespace {

using namespace std::chrono_literals;

// A developer's terminal on the socket.
class Client {
 public:
    explicit Client(int port) : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        connected = connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~Client() { close(m_socket); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void Send(const std::string& text) const {
        EXPECT_EQ(send(m_socket, text.data(), text.size(), MSG_NOSIGNAL), static_cast<ssize_t>(text.size()));
    }
    // What arrives until the text ends as wanted, or ten seconds have passed.
    std::string ReceiveUntil(const std::string& ending) const {
        std::string text;
        pollfd polled{m_socket, POLLIN, 0};
        char piece[4096];
        while (!text.ends_with(ending) && poll(&polled, 1, 10000) > 0) {
            const ssize_t length = recv(m_socket, piece, sizeof piece, 0);
            if (length <= 0)
                break;
            text.append(piece, static_cast<size_t>(length));
        }
        return text;
    }
    [[nodiscard]] bool HasSomethingWithin(std::chrono::milliseconds time) const {
        pollfd polled{m_socket, POLLIN, 0};
        return poll(&polled, 1, static_cast<int>(time.count())) > 0;
    }

    bool connected = false;

 private:
    int m_socket;
};

class ADebugSocket : public testing::Test {
 protected:
    void SetUp() override {
        socket.Start();
        ASSERT_GE(Port(), DebugSocket::kFirstPort);
    }
    int Port() { return PortOf(socket); }
    static int PortOf(const DebugSocket& started) {
        pollfd nothing{-1, 0, 0};
        for (int i = 0; i < 600 && started.Port() == 0; ++i)
            poll(&nothing, 1, 50);
        return started.Port();
    }
    // Writes until the client is known to be served: a line written before that may be lost.
    std::string FirstLine(const Client& client) {
        for (int i = 0; i < 100 && !client.HasSomethingWithin(50ms); ++i)
            socket.Write("hello");
        return client.ReceiveUntil("\n");
    }

    DebugSocket socket;
};

TEST_F(ADebugSocket, SendsLinesToTheOneClientItServes) {
    {
        const Client client(Port());
        ASSERT_TRUE(client.connected);
        EXPECT_EQ(FirstLine(client).substr(0, 6), "hello\n");
        client.Send("help me");
        EXPECT_TRUE(
            client.ReceiveUntil("shown here\n").ends_with("window.debug() messages should be shown here\n"));
    }
    const Client next(Port());
    EXPECT_EQ(FirstLine(next).substr(0, 6), "hello\n") << "after one client another is served";
}

TEST_F(ADebugSocket, TakesTheNextPortWhenOneIsTaken) {
    DebugSocket second;
    second.Start();
    EXPECT_NE(PortOf(second), Port()) << "another program may hold or free any of them meanwhile";
    EXPECT_GE(second.Port(), DebugSocket::kFirstPort);
}

TEST_F(ADebugSocket, IsNotHeldUpByAClientThatDoesNotRead) {
    const Client client(Port());
    ASSERT_TRUE(client.connected);
    (void)FirstLine(client);
    const auto start = std::chrono::steady_clock::now();
    const std::string line(16 * 1024, 'x');
    for (int i = 0; i < 2000; ++i)
        socket.Write(line);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

TEST_F(ADebugSocket, EndsCleanlyAndStartsAgain) {
    {
        const Client client(Port());
        (void)FirstLine(client);
        socket.Stop();
        EXPECT_EQ(socket.Port(), 0);
        socket.Write("to nobody");
    }
    socket.Start();
    EXPECT_GE(Port(), DebugSocket::kFirstPort);
}

}  // namespace
}  // namespace OipfJavaScript
