// A machine without a session bus. The attempts to reach it take ten seconds, so one test tells it all.

#include <chrono>
#include <cstdlib>
#include <optional>

#include <gtest/gtest.h>

#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/LogCapture.h"

namespace {

using namespace std::chrono_literals;

void UseAClientWithoutABus() {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    std::optional<CDAEBrowserAPIWK> made;
    ExpectTakes(9s, 18s, [&] { made.emplace(); });
    CDAEBrowserAPIWK& client = *made;
    EXPECT_EQ(LogCapture::Count("Failed to get a DBus connection"), 1);
    EXPECT_EQ(LogCapture::Errors(), 11);

    uint32_t id = 5;
    EXPECT_FALSE(client.CurrentChannel(id));
    EXPECT_EQ(id, 5U);
    EXPECT_EQ(client.GetKeyMask(), 0U);
    EXPECT_EQ(client.GetProgCollection(1), nullptr);
    client.Show(1);
    EXPECT_EQ(LogCapture::Errors(), 12);
}

// In a process of its own, because the others of this program have reached their bus for good.
TEST(AClientWithoutABus, GivesItsFailureValuesAndSaysSoOnce) {
    EXPECT_EXIT(
        {
            UseAClientWithoutABus();
            std::exit(testing::Test::HasFailure() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
