// The simulated receiver as the shell's child.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Host/Inc/GHandles.h"
#include "Host/Shell/ChildProcess.h"

namespace Shell {

// Whether somebody already owns all six names of the receiver.
[[nodiscard]] bool isReceiverRunning(GDBusConnection* bus);

class ReceiverProcess {
 public:
    // Runs it; `settled` is called once, through the main loop, when it is ready, has failed, or takes too
    // long.
    ReceiverProcess(const std::optional<std::string>& scenario, std::function<void()> settled);

    // Nothing is going to happen: it could not be run.
    [[nodiscard]] bool settled() const { return !m_settled; }

 private:
    static gboolean onTimeout(gpointer self);

    void settle();

    std::unique_ptr<ChildProcess> m_child;
    std::function<void()> m_settled;  // Empty once it has been called.
    Host::GSourceHandle m_timeout;
};

}  // namespace Shell
