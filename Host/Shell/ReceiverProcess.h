// The simulated receiver as the shell's child.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Host/Inc/GHandles.h"
#include "Host/Shell/ChildProcess.h"

namespace Shell {

class ReceiverProcess {
 public:
    // Runs a receiver unless somebody already owns all its names, and returns when it is ready, has failed or
    // takes too long; failures are logged and the shell goes on.
    ReceiverProcess(GDBusConnection* bus, const std::optional<std::string>& scenario);
    ReceiverProcess(const ReceiverProcess&) = delete;
    ReceiverProcess& operator=(const ReceiverProcess&) = delete;

 private:
    [[nodiscard]] bool waitUntilReady();

    std::unique_ptr<ChildProcess> m_child;
};

}  // namespace Shell
