// The simulated receiver as the shell's child.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Host/Inc/GCallbacks.h"
#include "Host/Shell/Processes/ChildProcess.h"

namespace Shell {

class ReceiverProcess : Host::Pinned {
 public:
    // Runs a receiver unless somebody already owns all its names, and returns when it is ready, has failed or
    // takes too long; failures are logged and the shell goes on.
    ReceiverProcess(GDBusConnection* bus, const std::optional<std::string>& scenario);

    // The receiver has said that the scenario which was asked for is no good.
    [[nodiscard]] bool refusedScenario() const { return m_refusedScenario; }

 private:
    [[nodiscard]] bool waitUntilReady();

    std::unique_ptr<ChildProcess> m_child;
    bool m_refusedScenario = false;
};

}  // namespace Shell
