#include "Host/Shell/Processes/ReceiverProcess.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <vector>

#include "Host/Inc/ReceiverNames.h"
#include "Host/Shell/Processes/InstalledFiles.h"

namespace Shell {

namespace {

constexpr char kReadyLine[] = "hbbtv-receiver: ready";
constexpr int kReadyLimitMs = 10000;

constexpr const char* kNames[] = {
    "org.vantrel.hbbtv.IDAEBrowserAPI",  "org.vantrel.hbbtv.IBroadcastPlayer",
    "org.vantrel.hbbtv.IAVEventHandler", "org.vantrel.hbbtv.IJSChannelCache",
    "org.vantrel.hbbtv.IMetaDataSearch", "org.vantrel.hbbtv.DSMCC",
};

bool isReceiverRunning(GDBusConnection* bus) {
    return std::all_of(std::begin(kNames), std::end(kNames),
                       [bus](const char* name) { return Host::isNameOwned(bus, name); });
}

void forward(const std::string& line) {
    std::cerr << line << std::endl;
}

}  // namespace

ReceiverProcess::ReceiverProcess(GDBusConnection* bus, const std::optional<std::string>& scenario) {
    if (isReceiverRunning(bus)) {
        if (scenario)
            g_warning("a receiver is running already; --scenario %s is not used", scenario->c_str());
        return;
    }
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
    if (const auto folder = findPictures()) {
        command.emplace_back("--pictures");
        command.push_back(*folder);
    }
    m_child = ChildProcess::start(command);
    if (!m_child)
        return;
    const bool ready = waitUntilReady();
    // Another television than the one that was asked for would only mislead.
    m_refusedScenario = !ready && scenario && m_child->outputEnded();
    if (m_refusedScenario)
        return;
    if (!ready)
        g_warning("the receiver did not become ready; going on without waiting for it");
    m_child->watch(forward, [this] {
        g_warning("the receiver has ended; going on without it");
        m_child.reset();
    });
}

bool ReceiverProcess::waitUntilReady() {
    std::string line;
    while (m_child->readLine(line, kReadyLimitMs)) {
        if (line == kReadyLine)
            return true;
        forward(line);
    }
    return false;
}

}  // namespace Shell
