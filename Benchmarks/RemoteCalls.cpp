// A call through the DAE client against the generated call it makes, answered by a process of its own on the session
// bus. Run it under dbus-run-session.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include <benchmark/benchmark.h>

#include <gio/gio.h>

#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "IPC/DBUS/Src/DBusUtils.h"
#include "IPC/DBUS/Src/GLibHandles.h"
#include "gen/dbus/daebrowserapi-generated.h"

namespace {

constexpr char kName[] = "org.vantrel.hbbtv.IDAEBrowserAPI";
constexpr char kPath[] = "/org/vantrel/hbbtv";
constexpr guint kMask = 0x1f;

gboolean AnswerKeyMask(IDAEBrowserAPI* skeleton, GDBusMethodInvocation* invocation, gpointer /*data*/) {
    idaebrowser_api_complete_get_key_mask(skeleton, invocation, kMask);
    return TRUE;
}

// The middleware's side. Writes a byte to `ready` once the name is owned, and serves until it is killed.
[[noreturn]] void Serve(int ready) {
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    IDAEBrowserAPI* skeleton = idaebrowser_api_skeleton_new();
    g_signal_connect(skeleton, "handle-get-key-mask", G_CALLBACK(&AnswerKeyMask), nullptr);
    const GObjectPtr<GDBusConnection> bus = GetDBus();
    if (!bus || !g_dbus_interface_skeleton_export(G_DBUS_INTERFACE_SKELETON(skeleton), bus.get(), kPath, nullptr))
        _exit(1);
    g_bus_own_name_on_connection(
        bus.get(), kName, G_BUS_NAME_OWNER_FLAGS_NONE,
        [](GDBusConnection*, const gchar*, gpointer descriptor) {
            const int end = GPOINTER_TO_INT(descriptor);
            if (write(end, "", 1) != 1)
                _exit(1);
        },
        nullptr, GINT_TO_POINTER(ready), nullptr);
    g_main_loop_run(loop);
    _exit(0);
}

void ClientCall(benchmark::State& state) {
    auto* client = CDAEBrowserAPIWK::GetInstance();
    for (auto _ : state) {
        if (client->GetKeyMask() != kMask)
            state.SkipWithError("the client got no answer");
    }
}

void BareCall(benchmark::State& state) {
    const GObjectPtr<GDBusConnection> bus = GetDBus();
    const GObjectPtr<IDAEBrowserAPI> proxy(idaebrowser_api_proxy_new_sync(
        bus.get(), G_DBUS_PROXY_FLAGS_NONE, kName, kPath, nullptr, nullptr));
    for (auto _ : state) {
        guint mask = 0;
        if (!idaebrowser_api_call_get_key_mask_sync(proxy.get(), &mask, nullptr, nullptr) || mask != kMask)
            state.SkipWithError("the bare call got no answer");
    }
}

BENCHMARK(ClientCall)->UseRealTime();
BENCHMARK(BareCall)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    int ready[2];
    if (pipe(ready) != 0)
        return 1;
    // Before anything else: a process that already has GLib's threads must not fork and go on.
    const pid_t server = fork();
    if (server == 0) {
        close(ready[0]);
        Serve(ready[1]);
    }
    close(ready[1]);
    char byte = 0;
    const bool serving = server > 0 && read(ready[0], &byte, 1) == 1;
    if (serving) {
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
    } else {
        std::fputs("RemoteCalls: no session bus, or the name is taken\n", stderr);
    }
    if (server > 0) {
        kill(server, SIGTERM);
        waitpid(server, nullptr, 0);
    }
    return serving ? 0 : 1;
}
