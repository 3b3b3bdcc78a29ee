// The web process's end of the private connection to the shell.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Host/Inc/GHandles.h"

namespace WebProcess {

class ShellConnection {
 public:
    // Connects at once; without a connection (the reason is logged) messages are dropped and get no reply.
    explicit ShellConnection(const char* address);
    ~ShellConnection();
    ShellConnection(const ShellConnection&) = delete;
    ShellConnection& operator=(const ShellConnection&) = delete;

    // The page is WebKit's page id, 0 before there is one; no body is a null body.
    void post(std::uint64_t page, const std::string& name, const std::optional<std::string>& body);

    // Blocks this thread without running its main loop; gives up after a bounded time.
    [[nodiscard]] std::optional<std::string> postSynchronously(std::uint64_t page, const std::string& name,
                                                               const std::optional<std::string>& body);

    // Tells the shell that this process reads files for the page. Blocks likewise, so that the shell knows
    // before the page asks for any.
    void announcePage(std::uint64_t page);

    // Null without a connection.
    [[nodiscard]] GDBusConnection* connection() const { return m_connection.get(); }

 private:
    Host::GObjectHandle<GDBusConnection> m_connection;
};

}  // namespace WebProcess
