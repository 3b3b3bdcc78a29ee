// Live television from a page's call to the simulated receiver and back.

#include <algorithm>
#include <map>
#include <set>

#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "Tests/Bus/LogCapture.h"
#include "Tests/Bus/ReceiverFixture.h"
#include "Tests/Unit/FakeBrowser.h"

namespace {

using ReceiverTest::writeFile;

class AThousandChannels : public ReceiverTest::RunningReceiver, protected TestedPage {
 protected:
    void SetUp() override {
        RunningReceiver::SetUp();
        // The clients outlive the receiver of the test before; they learn in the main loop who has the names
        // now.
        Eval("var log = []; var tv = PrivateObjectFactory.createVideoBroadcastObject();");
        ASSERT_TRUE(WaitFor([this] {
            IJSChannelCacheWK::GetInstance()->Retain(0);
            Eval("tv.stop(); tv.setFullScreen(false)");
            const auto reached = calls();
            return std::set(reached.begin(), reached.end()).size() == 3;
        }));
        ASSERT_TRUE(control("ClearCalls").value);
    }

    static constexpr int kChannels = 1000;

    [[nodiscard]] std::string scenario() const override {
        std::string channels;
        for (int id = 1; id <= kChannels; ++id) {
            const std::string number = std::to_string(id);
            channels += std::string(id > 1 ? "," : "") + "{\"id\": " + number + ", \"name\": \"Channel " +
                        number + "\", \"ccid\": \"ccid://" + number + "\", \"onid\": " + number +
                        ", \"tsid\": 2, \"sid\": 3, \"id_type\": \"ID_DVB_T\"}";
        }
        return writeFile("thousand.json",
                         R"({"broadcast": {"current_channel": 1, "channels": [)" + channels + "]}}");
    }
};

TEST_F(AThousandChannels, AreReadIndexedSearchedAndGivenBackToTheLast) {
    Eval(R"((function() {
        var list = tv.getChannelConfig().channelList;
        log.push(list.length, list[999].name, list.item(0).ccid, list.getChannel('ccid://1000').name,
                 list.getChannelByTriplet(500, 2, 3).name, typeof list.getChannel('ccid://1001'));
        list = null;
    })())");
    EXPECT_EQ(Eval("log.join()"), "1000,Channel 1000,ccid://1,Channel 1000,Channel 500,undefined");
    std::map<std::string, int> balance;
    int retained = 0;
    int read = 0;
    const auto settled = [&] {
        page.main.CollectGarbage();
        balance.clear();
        retained = read = 0;
        for (const std::string& call : calls()) {
            const std::string id = call.substr(call.find('('));
            if (call.starts_with("IJSChannelCache.Retain"))
                ++retained;
            if (call.starts_with("IJSChannelCache.GetChannelInfo"))
                ++read;
            else if (call.starts_with("IJSChannelCache."))
                balance[id] += call.find("Retain") != std::string::npos ? 1 : -1;
        }
        return std::ranges::all_of(balance, [](const auto& each) { return each.second == 0; });
    };
    EXPECT_TRUE(WaitFor(settled));
    EXPECT_EQ(balance.size(), size_t{kChannels});
    EXPECT_EQ(retained, kChannels + 4) << "once for each, and once for each copy";
    EXPECT_EQ(read, kChannels);
}

TEST_F(AThousandChannels, AreNotFoundSilentlyByADescriptorThatANulCuts) {
    LogCapture::Clear();
    const auto tunes = [this](const std::string& dsd) {
        Eval("tv.setChannel(tv.createChannelObject(Channel.ID_DVB_SI_DIRECT, '" + dsd + "', 5))");
        return std::ranges::count_if(
            calls(), [](const std::string& call) { return call.find("SetChannel(1, 13, 'a'") != call.npos; });
    };
    const std::string warning =
        "org.vantrel.hbbtv.IBroadcastPlayer.SetChannel: a text with a NUL is cut there, D-Bus carries none";
    EXPECT_EQ(tunes("a"), 1);
    EXPECT_EQ(LogCapture::Count(warning), 0);
    EXPECT_EQ(tunes("a\\0b\\0"), 2);
    EXPECT_EQ(LogCapture::Count(warning), 1) << "once for the call";
}

}  // namespace
