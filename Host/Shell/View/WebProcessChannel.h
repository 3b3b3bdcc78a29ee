// The shell's end of the private connections to the web processes: a server that only this user's processes
// reach and that leaves nothing on the disk.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Host/Inc/GHandles.h"

namespace Shell {

// Takes the bundle's messages. The page is WebKit's page id, 0 before the web process has a page.
class WebProcessMessages {
 public:
    virtual void didReceiveMessage(std::uint64_t page, const std::string& name,
                                   const std::optional<std::string>& body) = 0;
    // Nothing when there is no answer.
    [[nodiscard]] virtual std::optional<std::string> answerMessage(
        std::uint64_t page, const std::string& name, const std::optional<std::string>& body) = 0;

 protected:
    ~WebProcessMessages() = default;
};

class WebProcessChannel {
 public:
    // Without a server (the reason is logged) the address is empty.
    explicit WebProcessChannel(WebProcessMessages& messages);
    ~WebProcessChannel();
    WebProcessChannel(const WebProcessChannel&) = delete;
    WebProcessChannel& operator=(const WebProcessChannel&) = delete;

    [[nodiscard]] std::string address() const;

    // Until no web process is connected, or for as long as one that hangs is waited for.
    void waitForEnd();

    // To the web process that reads files for the page; null when none does.
    [[nodiscard]] GDBusConnection* fileReaderOf(std::uint64_t page) const;

 private:
    static gboolean onNewConnection(GDBusServer* server, GDBusConnection* connection, gpointer self);
    static void onClosed(GDBusConnection* connection, gboolean remotePeerVanished, GError* error,
                         gpointer self);
    static void onMethodCall(GDBusConnection* connection, const char* sender, const char* path,
                             const char* interface, const char* method, GVariant* parameters,
                             GDBusMethodInvocation* invocation, gpointer self);

    WebProcessMessages& m_messages;
    Host::GNodeInfo m_introspection;
    Host::GObjectHandle<GDBusServer> m_server;
    std::vector<Host::GObjectHandle<GDBusConnection>> m_connections;
    std::map<std::uint64_t, GDBusConnection*> m_fileReaders;  // Among the connections, by page.
};

}  // namespace Shell
