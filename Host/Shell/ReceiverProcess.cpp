#include "Host/Shell/ReceiverProcess.h"

#include <iostream>
#include <utility>
#include <vector>

#include "Host/Shell/InstalledFiles.h"
#include "Host/Shell/ReceiverControl.h"

namespace Shell {

using namespace Host;

namespace {

constexpr char kReadyLine[] = "hbbtv-receiver: ready";
constexpr unsigned kReadyLimitSeconds = 10;

constexpr const char* kNames[] = {
    "org.vantrel.hbbtv.IDAEBrowserAPI",  "org.vantrel.hbbtv.IBroadcastPlayer",
    "org.vantrel.hbbtv.IAVEventHandler", "org.vantrel.hbbtv.IJSChannelCache",
    "org.vantrel.hbbtv.IMetaDataSearch", "org.vantrel.hbbtv.DSMCC",
};

}  // namespace

bool isReceiverRunning(GDBusConnection* bus) {
    for (const char* name : kNames) {
        if (!isNameOwned(bus, name))
            return false;
    }
    return true;
}

ReceiverProcess::ReceiverProcess(const std::optional<std::string>& scenario, std::function<void()> settled) {
    const auto program = findReceiver();
    if (!program) {
        g_warning("hbbtv-receiver is not installed beside this program; going on without a receiver");
        return;
    }
    std::vector<std::string> command = {*program};
    if (const auto file = scenario ? scenario : findDefaultScenario()) {
        command.emplace_back("--scenario");
        command.push_back(*file);
    }
    m_child = ChildProcess::start(command);
    if (!m_child)
        return;
    m_settled = std::move(settled);
    m_timeout.reset(g_timeout_add_seconds(kReadyLimitSeconds, onTimeout, this));
    m_child->watch(
        [this](const std::string& line) {
            if (line == kReadyLine)
                settle();
            else
                std::cerr << line << std::endl;
        },
        [this] {
            g_warning("the receiver has ended; going on without it");
            settle();
        });
}

void ReceiverProcess::settle() {
    m_timeout.reset();
    if (const auto settled = std::exchange(m_settled, nullptr))
        settled();
}

gboolean ReceiverProcess::onTimeout(gpointer self) {
    auto& receiver = *static_cast<ReceiverProcess*>(self);
    receiver.m_timeout.forget();
    g_warning("the receiver was not ready within %u s; going on without waiting", kReadyLimitSeconds);
    receiver.settle();
    return G_SOURCE_REMOVE;
}

}  // namespace Shell
