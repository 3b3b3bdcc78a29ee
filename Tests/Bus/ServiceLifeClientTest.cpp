// Services that are not there, die, come back; and clients that outlive the program.

#include <chrono>
#include <cstdlib>

#include <gtest/gtest.h>

#include "IPC/DBUS/Src/AVEventHandlerWK_DBus.h"
#include "IPC/DBUS/Src/CBroadcastPlayerWK_DBus.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "IPC/DBUS/Src/DBusUtils.h"
#include "IPC/DBUS/Src/DSMCCWK_DBus.h"
#include "Tests/Bus/FakeService.h"

namespace {

using namespace std::chrono_literals;

class AClient : public testing::Test {
 protected:
    void SetUp() override { LogCapture::Clear(); }

    static std::unique_ptr<FakeService> NewService() {
        auto service = std::make_unique<FakeService>("IDAEBrowserAPI");
        service->Reply("IsTrusted", "(true,)");
        return service;
    }

    struct Counter final : IPluginController {
        void OnEvent(event_t) override { ++events; }
        uint64_t events = 0;
    } counter;
};

TEST_F(AClient, MadeBeforeItsServiceFailsAtOnceAndReachesItWhenItAppears) {
    CDAEBrowserAPIWK client;
    ExpectTakes(0s, 5s, [&] { EXPECT_FALSE(client.IsTrusted()); });
    EXPECT_EQ(LogCapture::Errors(), 1);

    const auto service = NewService();
    EXPECT_TRUE(client.IsTrusted());
    service->Stop();
    service->Start();
    EXPECT_TRUE(client.IsTrusted());
    EXPECT_EQ(client.Life(), 1U) << "who had answered was known, though no main loop ran";
}

TEST_F(AClient, ReachesAServiceThatDiedAndCameBackAndHearsItsSignals) {
    const auto service = NewService();
    CDAEBrowserAPIWK client;
    client.SubscribeEvents(&counter);
    for (uint64_t life = 0; life < 3; ++life) {
        EXPECT_TRUE(WaitFor([&] { return client.IsTrusted(); }));
        EXPECT_TRUE(WaitFor([&] {
            service->Emit("PluginEvent", "(400, 0)");
            return counter.events > life;
        }));
        EXPECT_EQ(client.Life(), life) << "what was known before it was heard of does not count again";
        service->Stop();
        EXPECT_FALSE(client.IsTrusted());
        service->Start();
        EXPECT_TRUE(client.IsTrusted()) << "at once: no main loop runs while a page does";
    }
    client.UnsubscribeEvents(&counter);
}

TEST_F(AClient, MakesAConnectionThatTheBusClosedAnew) {
    const auto service = NewService();
    CDAEBrowserAPIWK client;
    CJSChannelCacheWK other;
    client.SubscribeEvents(&counter);
    EXPECT_TRUE(client.IsTrusted());
    const uint64_t life = client.Life();
    const auto close = [] { g_dbus_connection_close_sync(GetDBus().get(), nullptr, nullptr); };

    const std::string address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    close();
    // Nobody waits for a bus here.
    ExpectTakes(0s, 1s, [&] {
        for (int i = 0; i < 20; ++i)
            EXPECT_FALSE(client.IsTrusted());
    });
    EXPECT_EQ(LogCapture::Errors(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    EXPECT_FALSE(client.IsTrusted()) << "one attempt a second";
    EXPECT_TRUE(WaitFor([&] { return client.IsTrusted(); }));

    close();
    EXPECT_TRUE(WaitFor([&] { return client.IsTrusted(); }));
    EXPECT_FALSE(other.Retain(1)) << "there is no such service";
    EXPECT_EQ(LogCapture::Count("The bus had closed the connection; there is a new one"), 2);
    EXPECT_EQ(client.Life(), life + 2);
    service->Emit("PluginEvent", "(400, 0)");
    EXPECT_TRUE(WaitFor([&] { return counter.events == 1; }));
    client.UnsubscribeEvents(&counter);
}

TEST(AConnection, AsksForANameAndLogsWhetherItGotIt) {
    LogCapture::Clear();
    const auto connection = GetDBusAndName("org.vantrel.hbbtv.Test");
    ASSERT_NE(connection, nullptr);
    EXPECT_EQ(connection, GetDBus());
    EXPECT_TRUE(WaitFor([] {
        return LogCapture::Count("Acquired the name org.vantrel.hbbtv.Test on the session bus") == 1;
    }));

    const FakeService owner("DSMCC");
    EXPECT_NE(GetDBusAndName("org.vantrel.hbbtv.DSMCC"), nullptr);
    EXPECT_TRUE(WaitFor(
        [] { return LogCapture::Count("Lost the name org.vantrel.hbbtv.DSMCC on the session bus") == 1; }));
}

TEST_F(AClient, OfEveryKindSurvivesTheEndOfTheProgram) {
    EXPECT_EXIT(
        {
            const auto service = NewService();
            static_cast<void>(CDAEBrowserAPIWK::GetInstance()->IsTrusted());
            CBroadcastPlayerWK::GetInstance()->Stop(1);
            CAVEventHandlerWK::GetInstance()->Stop(1);
            IJSChannelCacheWK::GetInstance()->Release(1);
            InitDSMCCDBus();
            // Deliveries may be on their way.
            service->Emit("PluginEvent", "(400, 0)");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
