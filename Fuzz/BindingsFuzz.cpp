// Any use of any member of the objects that pages see, with a receiver behind them. The bytes are choices;
// what they choose between stands in Bindings.js.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include <gio/gio.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include "API/Src/IPluginController.h"
#include "Fuzz/Fuzz.h"
#include "Host/Inc/GHandles.h"
#include "Host/Inc/ReceiverNames.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/JSHandles.h"
#include "Tests/Unit/FakeBrowser.h"

namespace {

using namespace Host;
using OipfJavaScript::JSStringHandle;

// The lines of all runs, as Bindings.js describes them.
std::set<std::string> s_met;

std::string fileText(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// One description each.
std::set<std::string> classes() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(HBBTV_IDL_FOLDER))
        names.insert(entry.path().stem());
    names.erase("EventListeners");
    return names;
}

std::string listed(const std::set<std::string>& names) {
    std::string list;
    for (const std::string& name : names)
        list += "'" + name + "',";
    return list;
}

int32_t numberOf(JSContextRef context, size_t count, const JSValueRef values[], size_t index) {
    return index < count ? static_cast<int32_t>(JSValueToNumber(context, values[index], nullptr)) : 0;
}

JSValueRef fire(JSContextRef context, JSObjectRef, JSObjectRef, size_t count, const JSValueRef values[],
                JSValueRef*) {
    const auto code = numberOf(context, count, values, 0);
    CDAEBrowserAPIWK::GetInstance()->SendEventToPlugins(
        event_t::WithData(code, 0, numberOf(context, count, values, 1), numberOf(context, count, values, 2)));
    return JSValueMakeUndefined(context);
}

// Runs the main loop: until the function that is given answers true, or what has come is done.
JSValueRef pump(JSContextRef context, JSObjectRef, JSObjectRef, size_t count, const JSValueRef values[],
                JSValueRef*) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    const JSObjectRef fact = count > 0 ? JSValueToObject(context, values[0], nullptr) : nullptr;
    while (fact && std::chrono::steady_clock::now() < end &&
           !JSValueToBoolean(context, JSObjectCallAsFunction(context, fact, nullptr, 0, nullptr, nullptr))) {
        if (g_main_context_iteration(nullptr, FALSE) == FALSE)
            g_usleep(1000);
    }
    for (int left = 100; left > 0 && g_main_context_iteration(nullptr, FALSE) != FALSE; --left) {
    }
    return JSValueMakeUndefined(context);
}

// The default scenario, with nothing to wait for and nothing to decode.
std::string scenario() {
    auto document = nlohmann::json::parse(std::ifstream(HBBTV_DEFAULT_SCENARIO));
    document["media"]["player"] = "simulated";
    document["media"]["connect_ms"] = document["broadcast"]["tune_ms"] = document["search"]["duration_ms"] =
        0;
    for (auto& source : document["stream_events"])
        source["period_ms"] = 20;
    document["applications"]["trusted_origins"] = {"*"};
    document["drm"]["sas_session_open"] = true;
    document.erase("carousel");
    return document.dump();
}

// For as long as the program lives; both end with it, the bus by its own watcher: to stop it would wait half
// a minute for the bundle to let go of its connection.
void startBusAndReceiver() {
    GErrorSlot error;
    char* name = nullptr;
    const int file = g_file_open_tmp(nullptr, &name, error.out());
    static const std::string path = GChars(name).get();
    close(file);
    std::ofstream(path) << scenario();
    std::atexit([] { std::remove(path.c_str()); });
    static GTestDBus* const bus = g_test_dbus_new(G_TEST_DBUS_NONE);
    g_test_dbus_up(bus);
    static const GObjectHandle<GSubprocess> receiver(g_subprocess_new(
        G_SUBPROCESS_FLAGS_STDOUT_PIPE, error.out(), HBBTV_RECEIVER, "--scenario", path.c_str(), nullptr));
    Require(receiver != nullptr);
    std::atexit([] { g_subprocess_force_exit(receiver.get()); });
    char ready = 0;
    while (ready != '\n')
        Require(g_input_stream_read(g_subprocess_get_stdout_pipe(receiver.get()), &ready, 1, nullptr,
                                    nullptr) == 1);
    // The view of the browser's fake, with an application that may do everything. It goes with its
    // connection.
    static const GObjectHandle<GDBusConnection> connection(
        g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    const GVariantHandle done(g_dbus_connection_call_sync(
        connection.get(), Receiver::Names::Control, Receiver::Names::ControlPath, Receiver::Names::Control,
        "RegisterView", g_variant_new("(is)", 7, "http://application.invalid/"), nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, error.out()));
    Require(done != nullptr);
}

FakePage& page() {
    static auto* const s_page = new FakePage();
    return *s_page;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    startBusAndReceiver();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string script =
        "var classes = [" + listed(classes()) + "];" + fileText(HBBTV_FUZZ_SCRIPT);
    FakeFrame& frame = page().main;
    // As from page to page: players are given back.
    page().StartLoad(frame);
    frame.Navigate();
    for (const auto& [name, function] : {std::pair{"fire", &fire}, {"pump", &pump}})
        frame.SetGlobal(
            name, JSObjectMakeFunctionWithCallback(frame.context, JSStringHandle(name).Get(), function));
    const std::string loaded = frame.Eval(script + "; 'loaded'");
    std::string list;
    for (size_t i = 0; i < size; ++i)
        list += std::to_string(data[i]) + ",";
    const std::string met = frame.Eval("fuzz([" + list + "])");
    if (loaded != "loaded" || met.starts_with("throws: ")) {
        std::fprintf(stderr, "%s, %s\n", loaded.c_str(), met.c_str());
        std::abort();
    }
    std::istringstream lines(met);
    for (std::string line; std::getline(lines, line);)
        s_met.insert(line);
    return 0;
}

// A class that nothing leads to needs a line in Bindings.js.
void RequireEnoughWasMet() {
    bool isComplete = true;
    const auto want = [&](const std::string& line) {
        if (s_met.contains(line))
            return;
        isComplete = false;
        std::fprintf(stderr, "never met: %s\n", line.c_str());
    };
    for (const std::string& name : classes())
        want(name);
    for (const std::string& line : s_met) {
        if (line.starts_with('+'))
            want('-' + line.substr(1));
    }
    Require(isComplete);
}
