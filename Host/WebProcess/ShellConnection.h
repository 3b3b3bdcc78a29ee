// The web process's end of the private connection to the shell.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Host/Inc/GCallbacks.h"

namespace WebProcess {

class ShellConnection : Host::Pinned {
 public:
    // Connects at once; without a connection (the reason is logged) messages are dropped and get no reply.
    explicit ShellConnection(const char* address);

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
    [[nodiscard]] Host::GVariantHandle call(const char* method, GVariant* arguments, const char* replyType,
                                            Host::GErrorSlot& error);

    Host::GObjectHandle<GDBusConnection> m_connection;
};

}  // namespace WebProcess
