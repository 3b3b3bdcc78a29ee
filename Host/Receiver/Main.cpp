// hbbtv-receiver: a simulated television receiver on the session bus.
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include <gio/gio.h>
#include <glib-unix.h>

#include <nlohmann/json.hpp>

#include "Host/Inc/CommandLine.h"
#include "Host/Receiver/BusReceiver.h"
#include "Host/Receiver/World/JsonReader.h"

namespace {

using Host::GErrorSlot;
using Host::GMainLoopHandle;
using Host::GObjectHandle;

constexpr const char kProgramName[] = "hbbtv-receiver: ";

struct Loop {
    GMainLoopHandle main{g_main_loop_new(nullptr, FALSE)};
    int exitCode = 0;
};

int complain(const std::string& problem) {
    std::cerr << kProgramName << problem << std::endl;
    return 1;
}

gboolean onTerminate(gpointer loop) {
    g_main_loop_quit(static_cast<Loop*>(loop)->main.get());
    return G_SOURCE_CONTINUE;
}

void onBusClosed(GDBusConnection*, gboolean, GError*, gpointer user) {
    auto& loop = *static_cast<Loop*>(user);
    loop.exitCode = complain("lost the session bus");
    g_main_loop_quit(loop.main.get());
}

nlohmann::json readFile(const std::string& name) {
    errno = 0;
    std::ifstream file(name, std::ios::binary);
    if (!file)
        throw Receiver::ScenarioError("", std::string("cannot open it: ") + std::strerror(errno));
    std::string text;
    try {
        text.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    } catch (const std::ios_base::failure&) {
        // The buffer throws whatever the stream was told, for a folder to begin with.
        throw Receiver::ScenarioError("", std::string("cannot read it: ") + std::strerror(errno));
    }
    return Receiver::parseJson(text);
}

GObjectHandle<GDBusConnection> connectToBus(std::string& problem) {
    GErrorSlot error;
    GObjectHandle<GDBusConnection> connection(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    if (!connection) {
        problem = std::string("there is no session bus: ") + error.message();
        return nullptr;
    }
    g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    return connection;
}

int serve(const std::string& scenario, const std::string& pictures) {
    Loop loop;
    // First of all, so that an early signal ends the program as a late one does.
    g_unix_signal_add(SIGTERM, onTerminate, &loop);
    g_unix_signal_add(SIGINT, onTerminate, &loop);
    try {
        const auto document = readFile(scenario);
        const auto folder = std::filesystem::absolute(scenario).parent_path().string();
        // The scenario is judged before the bus is needed.
        (void)Receiver::readScenario(document, folder);
        std::string problem;
        const auto connection = connectToBus(problem);
        if (!connection)
            return complain(problem);
        Receiver::BusReceiver receiver(connection.get(), document, folder, pictures);
        if (!receiver.start(problem))
            return complain(problem);
        g_signal_connect(connection.get(), "closed", G_CALLBACK(onBusClosed), &loop);
        std::cout << kProgramName << "ready" << std::endl;
        g_main_loop_run(loop.main.get());
        g_signal_handlers_disconnect_by_data(connection.get(), &loop);
        return loop.exitCode;
    } catch (const Receiver::ScenarioError& error) {
        return complain(scenario + ": " + error.what());
    }
}

}  // namespace

int main(int count, char** arguments) {
    const Host::CommandLine line = {
        "hbbtv-receiver", HBBTV_VERSION, nullptr,
        "Simulates a television receiver on the session bus, in the world that the scenario describes.\n"
        "Prints \"hbbtv-receiver: ready\" once all its names are owned; SIGTERM or SIGINT ends it.",
        "Exit codes: 0 ended as asked, 1 could not start or lost the bus, 2 wrong arguments."};
    std::string scenario;
    std::string pictures;
    Host::OptionTexts texts;
    const GOptionEntry entries[] = {
        {"scenario", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(scenario), "The world, a JSON file", "FILE"},
        {"pictures", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(pictures),
         "Where pictures of channels are that are not in the scenario's folder", "FOLDER"},
        {}};
    std::string problem =
        Host::parseCommandLine(line, entries, {arguments + 1, arguments + std::max(count, 1)});
    texts.take();
    if (problem.empty() && scenario.empty())
        problem = "--scenario needs a file";
    return problem.empty() ? serve(scenario, pictures) : Host::refuseCommandLine(line, problem);
}
