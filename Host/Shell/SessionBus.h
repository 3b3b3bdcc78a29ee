// The session bus: the user's, or one of the shell's own where the user has none.
#pragma once

#include <memory>
#include <string>

#include "Host/Inc/GHandles.h"
#include "Host/Shell/ChildProcess.h"

namespace Shell {

class SessionBus {
 public:
    // Finds or starts a bus. Must be made before anything that may use one, because it sets the environment.
    SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;
    ~SessionBus();

    // Null without a bus; the reason has been logged.
    [[nodiscard]] GDBusConnection* connection() const { return m_connection.get(); }

 private:
    std::unique_ptr<ChildProcess> m_daemon;
    Host::GObjectHandle<GDBusConnection> m_connection;
};

}  // namespace Shell
