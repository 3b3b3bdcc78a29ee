#include "Tests/Bus/BusFixture.h"

#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>

#include <gio/gio.h>
#include <gtest/gtest.h>

namespace {

// The watchdog of the whole program: longer than any of them takes, shorter than a person's patience.
constexpr unsigned kWatchdogSeconds = 120;

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
        // Its own watcher ends it with the program.
        static GTestDBus* const bus = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_up(bus);
        for (const char* variable : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            setenv(variable, ownHome.path.c_str(), 1);
    }
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
