// What the bundle adds to the start of a web process: from dlopen to the end of WKBundleInitialize, beside
// what it does with the bus in that time, written plainly. Each is measured in processes of its own, by
// turns. Prints JSON, in milliseconds. Takes the library's path. Run it under dbus-run-session.
#include <dlfcn.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <vector>

#include <gio/gio.h>

#include "Benchmarks/OwnProcess.h"
#include "IPC/DBUS/Src/DBusLink.h"
#include "Platform/Inc/WKBundle.h"

namespace {

constexpr int kRounds = 25;

const char* s_library = nullptr;

void startBundle() {
    void* const library = dlopen(s_library, RTLD_LAZY);
    const auto initialize =
        library != nullptr
            ? reinterpret_cast<decltype(&WKBundleInitialize)>(dlsym(library, "WKBundleInitialize"))
            : nullptr;
    if (initialize == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        _exit(1);
    }
    initialize(nullptr, nullptr);
}

void connectToBus() {
    constexpr char kService[] = "org.vantrel.hbbtv.DSMCC";
    constexpr auto kFlags = static_cast<GDBusProxyFlags>(G_DBUS_PROXY_FLAGS_DO_NOT_LOAD_PROPERTIES |
                                                         G_DBUS_PROXY_FLAGS_DO_NOT_CONNECT_SIGNALS);
    GDBusConnection* const connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (connection == nullptr || g_dbus_proxy_new_sync(connection, kFlags, nullptr, kService, kObjectPath,
                                                       kService, nullptr, nullptr) == nullptr)
        _exit(1);
}

double millisecondsOf(void (*work)()) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

void print(const char* name, const std::vector<double>& times, const char* end) {
    std::printf("\"%s\": [", name);
    for (size_t i = 0; i < times.size(); ++i)
        std::printf("%s%.4f", i == 0 ? "" : ", ", times[i]);
    std::printf("]%s", end);
}

}  // namespace

// What the start asks of the browser.
void WKBundleSetClient(WKBundleRef, WKBundleClientBase*) {}
WKStringRef WKStringCreateWithUTF8CString(const char*) {
    return nullptr;
}
void WKBundlePostMessage(WKBundleRef, WKStringRef, WKTypeRef) {}
void WKRelease(WKTypeRef) {}

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: StartUp LIBRARY\n");
        return 2;
    }
    s_library = argv[1];
    std::vector<double> bundle;
    std::vector<double> bus;
    for (int i = 0; i < kRounds; ++i) {
        bundle.push_back(Benchmarks::InOwnProcess([] { return millisecondsOf(&startBundle); }));
        bus.push_back(Benchmarks::InOwnProcess([] { return millisecondsOf(&connectToBus); }));
        if (bundle.back() < 0 || bus.back() < 0)
            return 1;
    }
    std::printf("{");
    print("bundle", bundle, ", ");
    print("bus", bus, "}\n");
    return 0;
}
