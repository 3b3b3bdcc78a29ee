#include "Tests/Bus/BusFixture.h"

#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "IPC/DBUS/Src/GLibHandles.h"

namespace {

// The watchdog of the whole program: longer than any of them takes, shorter than a person's patience.
constexpr unsigned kWatchdogSeconds = 120;

std::string BusConfiguration(const std::string& socket) {
    return "<busconfig><type>session</type><listen>unix:path=" + socket +
           "</listen>"
           "<policy context=\"default\">"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/>"
           "</policy></busconfig>\n";
}

struct Home {
    Home() {
        std::string name = std::filesystem::temp_directory_path() / "hbbtv-bus-test-XXXXXX";
        if (mkdtemp(name.data()) != nullptr)
            path = name;
    }
    ~Home() {
        std::error_code ignored;
        if (!path.empty())
            std::filesystem::remove_all(path, ignored);
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

    std::filesystem::path path;
};

class OwnBus : public testing::Environment {
 public:
    void SetUp() override {
        alarm(kWatchdogSeconds);
        g_log_set_always_fatal(
            static_cast<GLogLevelFlags>(G_LOG_FATAL_MASK | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
        // Removed at exit, because a program that is meant to end inside a test sees no TearDown.
        static const Home ownHome;
        ASSERT_FALSE(ownHome.path.empty());
        m_home = ownHome.path;
        for (const char* variable : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            setenv(variable, m_home.c_str(), 1);
        setenv("DBUS_SESSION_BUS_ADDRESS", StartBus().c_str(), 1);
    }

    void TearDown() override {
        kill(m_bus, SIGTERM);
        waitpid(m_bus, nullptr, 0);
    }

 private:
    // Gives the address back.
    std::string StartBus() {
        const std::string configuration = m_home / "bus.conf";
        std::ofstream(configuration) << BusConfiguration(m_home / "bus");
        const std::string option = "--config-file=" + configuration;
        const char* const command[] = {"dbus-daemon", option.c_str(), "--nofork", "--print-address", nullptr};
        int output = -1;
        GErrorPtr error;
        g_spawn_async_with_pipes(
            nullptr, const_cast<char**>(command), nullptr,
            static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD |
                                     G_SPAWN_STDERR_TO_DEV_NULL),
            // Programs that are meant to end in the middle of a test leave no bus behind.
            [](gpointer) { prctl(PR_SET_PDEATHSIG, SIGKILL); }, nullptr, &m_bus, nullptr, &output, nullptr,
            OutPointer(error));
        if (error) {
            ADD_FAILURE() << error->message;
            return "";
        }
        std::string address;
        for (char letter = 0; read(output, &letter, 1) == 1 && letter != '\n';)
            address += letter;
        close(output);
        EXPECT_NE(address, "");
        return address;
    }

    GPid m_bus = 0;
    std::filesystem::path m_home;
};

}  // namespace

bool WaitFor(const std::function<bool()>& fact, std::chrono::milliseconds limit) {
    // Facts that come from another thread wake no main loop: look again now and then.
    constexpr auto tick = std::chrono::milliseconds(5);
    auto left = limit / tick;
    const guint ticks = g_timeout_add(
        tick.count(),
        [](gpointer rest) -> gboolean {
            --*static_cast<decltype(left)*>(rest);
            return G_SOURCE_CONTINUE;
        },
        &left);
    bool holds = fact();
    while (!holds && left > 0) {
        g_main_context_iteration(nullptr, TRUE);
        holds = fact();
    }
    g_source_remove(ticks);
    return holds;
}

void ExpectTakes(std::chrono::milliseconds atLeast, std::chrono::milliseconds atMost,
                 const std::function<void()>& action) {
    using Clock = std::chrono::steady_clock;
    constexpr auto tick = std::chrono::milliseconds(5);
    std::atomic<int> ticks = 0;
    const std::jthread counter([&](const std::stop_token& stop) {
        for (; !stop.stop_requested(); ++ticks)
            std::this_thread::sleep_for(tick);
    });
    const auto start = Clock::now();
    action();
    EXPECT_GE(Clock::now() - start, atLeast);
    EXPECT_LE(ticks.load() * tick, atMost);
}

void GiveTheProgramItsOwnBus() {
    testing::AddGlobalTestEnvironment(new OwnBus);
}
