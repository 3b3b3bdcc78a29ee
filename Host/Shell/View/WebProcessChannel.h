// The shell's end of the private connections to the web processes: a server that only this user's processes
// reach and that leaves nothing on the disk.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Host/Inc/GCallbacks.h"

namespace Shell {

class WebProcessChannel : Host::Pinned {
 public:
    // Answers a message of the bundle, or nothing. The page is WebKit's page id, 0 before the web process has
    // a page.
    using Answer = std::function<std::optional<std::string>(std::uint64_t page, const std::string& name,
                                                            const std::optional<std::string>& body)>;

    // Without a server (the reason is logged) the address is empty.
    explicit WebProcessChannel(Answer answer);
    ~WebProcessChannel();

    [[nodiscard]] std::string address() const;

    // Until no web process is connected, or for as long as one that hangs is waited for.
    void waitForEnd();

    // To the web process that reads files for the page; null when none does.
    [[nodiscard]] GDBusConnection* fileReaderOf(std::uint64_t page) const;

 private:
    gboolean onNewConnection(GDBusServer*, GDBusConnection* connection);
    void onClosed(GDBusConnection* connection, gboolean, GError*);
    void onMethodCall(GDBusConnection* connection, const char*, const char*, const char*, const char* method,
                      GVariant* parameters, GDBusMethodInvocation* invocation);

    Answer m_answer;
    Host::GNodeInfo m_introspection;
    Host::GObjectHandle<GDBusServer> m_server;
    std::vector<Host::GObjectHandle<GDBusConnection>> m_connections;
    std::map<std::uint64_t, GDBusConnection*> m_fileReaders;  // Among the connections, by page.
};

}  // namespace Shell
