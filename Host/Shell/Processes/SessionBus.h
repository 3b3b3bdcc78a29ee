// The bus on which the receiver is: one of the shell's own, or the session's.
#pragma once

#include <memory>
#include <optional>

#include "Host/Inc/GCallbacks.h"
#include "Host/Shell/Processes/ChildProcess.h"
#include "Host/Shell/Processes/PublishedAddress.h"

namespace Shell {

class SessionBus : Host::Pinned {
 public:
    // Starts a bus of its own unless the session's is to be shared. Must be made before anything that may use
    // one, because it sets the environment.
    explicit SessionBus(bool shared);
    ~SessionBus();

    // Shells that share a bus have numbers, from 1.
    [[nodiscard]] int number() const { return m_number; }

    // Null without a bus; the reason has been logged.
    [[nodiscard]] GDBusConnection* connection() const { return m_connection.get(); }

 private:
    std::unique_ptr<ChildProcess> m_daemon;
    Host::GObjectHandle<GDBusConnection> m_connection;
    int m_number = 1;
    std::optional<PublishedAddress> m_published;
};

}  // namespace Shell
