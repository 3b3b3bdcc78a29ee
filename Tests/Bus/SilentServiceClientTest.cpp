// A middleware that owns its names and does not answer, as a process that is stopped.

#include <chrono>
#include <future>

#include <gmock/gmock.h>

#include "IPC/DBUS/Src/AVEventHandlerWK_DBus.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "IPC/DBUS/Src/DSMCCWK_DBus.h"
#include "IPC/DBUS/Src/MetadataSearchWK_DBus.h"
#include "IPC/DBUS/Src/Patience.h"
#include "Tests/Bus/FakeService.h"

namespace {

using namespace std::chrono_literals;
constexpr int kFull = 3000;  // instead of the bus's 25 seconds
const std::string kWarning =
    "org.vantrel.hbbtv.IDAEBrowserAPI does not answer: until it does, calls wait a second at most";

class ASilentMiddleware : public testing::Test {
 protected:
    void SetUp() override {
        Patience::Instance().SetFull(kFull);
        api.Reply("IsTrusted", "(true,)");
        cache.Reply("Retain", "(true,)");
        ASSERT_TRUE(client.IsTrusted());
        LogCapture::Clear();
        api.Hang();
        cache.Hang();
    }
    void TearDown() override {
        Patience::Instance().SetFull(-1);
        Patience::Instance().Answered();
    }

    FakeService api{"IDAEBrowserAPI"};
    FakeService cache{"IJSChannelCache"};
    CDAEBrowserAPIWK client;
};

TEST_F(ASilentMiddleware, CostsItsTimeOnceAndASecondACallUntilItAnswers) {
    ExpectTakes(3s, 5s, [&] { EXPECT_FALSE(client.IsTrusted()); });
    EXPECT_EQ(LogCapture::Count(kWarning), 1);
    // For every service, and for one whose proxy is made only now.
    CJSChannelCacheWK channels;
    ExpectTakes(1s, 2s, [&] { EXPECT_FALSE(channels.Retain(1)); });
    ExpectTakes(1s, 2s, [&] { client.Show(1); });
    EXPECT_EQ(LogCapture::Errors(), 3);
    const std::string over = "the receiver answers: calls wait for their answers again";
    EXPECT_EQ(LogCapture::Count(over), 0);

    cache.GoOn();
    EXPECT_TRUE(channels.Retain(2));
    EXPECT_EQ(LogCapture::Count(over), 1);
    EXPECT_THAT(cache.TakeCalls(), testing::ElementsAre("Retain (1,)", "Retain (2,)"));
    // What the other one answers late is for a call that nobody waits for any more.
    api.GoOn();
    api.Reply("GetKeyMask", "(5,)");
    EXPECT_EQ(client.GetKeyMask(), 5U);
    EXPECT_TRUE(client.IsTrusted());
    EXPECT_EQ(LogCapture::Count(kWarning) + LogCapture::Count(over), 2);
    api.Delay("IsTrusted", 1500);
    EXPECT_TRUE(client.IsTrusted()) << "all the patience is back";
}

TEST_F(ASilentMiddleware, IsWaitedForAnewWhenItIsAnotherOne) {
    EXPECT_FALSE(client.IsTrusted());
    // Another one that ends, be it in the middle of a call, says nothing of this one.
    cache.GoOn();
    cache.Delay("Retain", 60000);
    CJSChannelCacheWK channels;
    const auto end = std::async(std::launch::async, [this] {
        (void)cache.TakeCalls(1);
        cache.Stop();
    });
    EXPECT_FALSE(channels.Retain(1));
    end.wait();
    EXPECT_FALSE(channels.Retain(1));
    EXPECT_LT(Patience::Instance().Now(), kFull);
    api.Stop();
    api.Start();
    api.Delay("IsTrusted", 1500);
    EXPECT_TRUE(client.IsTrusted()) << "without the main loop, which does not run while a page does";
    EXPECT_EQ(LogCapture::Count("org.vantrel.hbbtv.IDAEBrowserAPI: calls wait for their answers again"), 1);
}

TEST_F(ASilentMiddleware, IsToldWhatIsReleasedInItsTurnAndNobodyWaits) {
    cache.Fail("Release", "late");
    std::vector<std::string> expected;
    ExpectTakes(0s, 1s, [&] {
        // The answers come when the client has gone.
        CJSChannelCacheWK channels;
        for (uint32_t id = 1; id <= 200; ++id) {
            channels.Release(id);
            expected.push_back("Release (" + std::to_string(id) + ",)");
        }
    });
    EXPECT_EQ(LogCapture::Errors(), 0);
    CJSChannelCacheWK channels;
    expected.push_back("Retain (7,)");
    cache.GoOn();
    EXPECT_TRUE(channels.Retain(7));
    EXPECT_EQ(cache.TakeCalls(), expected);
    // The tests' bus refuses a call when 128 answers are due.
    EXPECT_TRUE(WaitFor([] {
        return LogCapture::Count(
                   "CJSChannelCacheWK::Release failed \"GDBus.Error:org.freedesktop.DBus.Error.Failed: "
                   "late\" with error code 0") == 64;
    }));
    channels.Release(8);
    EXPECT_TRUE(WaitFor([] { return LogCapture::Errors() == 65; }))
        << "those that are answered are due no more";
}

}  // namespace
