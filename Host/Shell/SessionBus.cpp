#include "Host/Shell/SessionBus.h"

#include <cstdlib>

namespace Shell {

using namespace Host;

namespace {

constexpr char kAddressVariable[] = "DBUS_SESSION_BUS_ADDRESS";
constexpr int kStartLimitMs = 5000;

bool userHasBus() {
    if (std::getenv(kAddressVariable))
        return true;
    const char* runtimeFolder = std::getenv("XDG_RUNTIME_DIR");
    return runtimeFolder && g_file_test((std::string(runtimeFolder) + "/bus").c_str(), G_FILE_TEST_EXISTS);
}

}  // namespace

// Not under dbus-run-session: ended by a signal, that would leave its bus behind.
SessionBus::SessionBus() {
    if (!userHasBus()) {
        std::string address;
        m_daemon = ChildProcess::start({"dbus-daemon", "--session", "--nofork", "--print-address=1"});
        if (!m_daemon || !m_daemon->readLine(address, kStartLimitMs)) {
            g_warning("there is no session bus, and none could be started");
            return;
        }
        g_setenv(kAddressVariable, address.c_str(), TRUE);
    }
    GErrorSlot error;
    m_connection.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    if (!m_connection) {
        g_warning("no session bus: %s", error.message());
        return;
    }
    g_dbus_connection_set_exit_on_close(m_connection.get(), FALSE);
}

SessionBus::~SessionBus() = default;

}  // namespace Shell
