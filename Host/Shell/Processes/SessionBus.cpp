#include "Host/Shell/Processes/SessionBus.h"

#include <unistd.h>

namespace Shell {

using namespace Host;

namespace {

constexpr int kStartLimitMs = 5000;

// As the session's, but it starts no services: what a desktop offers on its bus would run a second time.
constexpr char kConfiguration[] =
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
    "<policy context='default'><allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
    "<allow own='*'/></policy></busconfig>";

// The address; empty without a bus, for a reason that has been logged.
std::string startBus(std::unique_ptr<ChildProcess>& daemon) {
    GErrorSlot error;
    char* path = nullptr;
    const int file = g_file_open_tmp("hbbtv-bus-XXXXXX", &path, error.out());
    if (file < 0) {
        g_warning("no bus: %s", error.message());
        return {};
    }
    const GChars owned(path);
    std::string address;
    if (write(file, kConfiguration, sizeof kConfiguration - 1) > 0)
        daemon = ChildProcess::start({"dbus-daemon", std::string("--config-file=") + path, "--nofork",
                                      "--nopidfile", "--print-address=1"},
                                     ChildProcess::Errors::Hidden);
    if (!daemon || !daemon->readLine(address, kStartLimitMs))
        g_warning("no bus could be started; going on without a receiver");
    close(file);
    unlink(path);
    return address;
}

// False when somebody else owns it.
bool ownName(GDBusConnection* bus, const std::string& name) {
    constexpr std::uint32_t kDoNotQueue = 4;
    constexpr std::uint32_t kInUse = 3;
    GErrorSlot error;
    const GVariantHandle reply(g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name.c_str(), kDoNotQueue), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1,
        nullptr, error.out()));
    std::uint32_t answer = 0;
    if (reply)
        g_variant_get(reply.get(), "(u)", &answer);
    return answer != kInUse;
}

}  // namespace

// Not under dbus-run-session: ended by a signal, that would leave its bus behind.
SessionBus::SessionBus(bool shared) {
    if (!shared) {
        const std::string address = startBus(m_daemon);
        if (address.empty())
            return;
        g_setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), TRUE);
        g_message("to look behind the page: export DBUS_SESSION_BUS_ADDRESS=%s", address.c_str());
    }
    GErrorSlot error;
    m_connection.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    if (!m_connection) {
        g_warning("no session bus: %s", error.message());
        return;
    }
    g_dbus_connection_set_exit_on_close(m_connection.get(), FALSE);
    while (!ownName(m_connection.get(), "org.vantrel.hbbtv.Shell" + std::to_string(m_number)))
        ++m_number;
    const GChars address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (address)
        m_published.emplace(address.get());
}

SessionBus::~SessionBus() = default;

}  // namespace Shell
