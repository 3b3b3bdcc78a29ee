// Live television from a page's call to the simulated receiver and back.

#include <algorithm>
#include <map>
#include <string>

#include <gmock/gmock.h>

#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/ReceiverFixture.h"
#include "Tests/Unit/FakeBrowser.h"

namespace {

using ReceiverTest::writeFile;

class ALivingRoom : public ReceiverTest::RunningReceiver {
 protected:
    void SetUp() override {
        RunningReceiver::SetUp();
        // The clients outlive the receiver of the test before; they learn in the main loop who has the names
        // now.
        Eval("var log = []; var tv = PrivateObjectFactory.createVideoBroadcastObject();");
        ASSERT_TRUE(WaitFor([this] {
            IJSChannelCacheWK::GetInstance()->Retain(0);
            Eval("tv.stop(); tv.setFullScreen(false)");
            return Calls().size() == 3;
        }));
        ASSERT_TRUE(control("ClearCalls").value);
    }

    std::string Eval(const std::string& script) { return page.main.Eval(script); }
    std::string Value(const std::string& expression) { return page.main.Value(expression); }
    [[nodiscard]] testing::AssertionResult Becomes(const std::string& expression, const std::string& value) {
        if (WaitFor([&] { return Value(expression) == value; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << expression << " is " << Value(expression) << ", not " << value;
    }

    // How often each method was called with which arguments: "IJSChannelCache.Retain(7,)".
    std::map<std::string, int> Calls() {
        std::map<std::string, int> calls;
        const auto answer = control("GetCalls");
        const Host::GVariantHandle entries(g_variant_get_child_value(answer.value.get(), 0));
        for (size_t i = 0; i < g_variant_n_children(entries.get()); ++i) {
            const char* method = nullptr;
            const char* arguments = nullptr;
            const Host::GVariantHandle entry(g_variant_get_child_value(entries.get(), i));
            g_variant_get(entry.get(), "(&s&st)", &method, &arguments, nullptr);
            ++calls[std::string(method) + arguments];
        }
        return calls;
    }

    FakePage page;
};

class AThousandChannels : public ALivingRoom {
 protected:
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
        // The collector takes words that are left on the stack for references: leave others there.
        Eval("(function deep(n) { return n && [deep(n - 1)]; })(100)");
        page.main.CollectGarbage();
        balance.clear();
        retained = read = 0;
        for (const auto& [call, count] : Calls()) {
            const std::string id = call.substr(call.find('('));
            if (call.starts_with("IJSChannelCache.Retain"))
                retained += count;
            if (call.starts_with("IJSChannelCache.GetChannelInfo"))
                read += count;
            else if (call.starts_with("IJSChannelCache."))
                balance[id] += call.find("Retain") != std::string::npos ? count : -count;
        }
        return std::ranges::all_of(balance, [](const auto& each) { return each.second == 0; });
    };
    EXPECT_TRUE(WaitFor(settled));
    EXPECT_EQ(balance.size(), size_t{kChannels});
    EXPECT_EQ(retained, kChannels + 4) << "once for each, and once for each copy";
    EXPECT_EQ(read, kChannels);
}

class AnEvening : public ALivingRoom {
 protected:
    [[nodiscard]] std::string scenario() const override {
        return writeFile("evening.json", R"({
          "broadcast": {
            "current_channel": 1, "tune_ms": 10,
            "channels": [
              {"id": 1, "name": "One", "id_type": "ID_DVB_T", "ccid": "ccid://1",
               "onid": 1, "tsid": 2, "sid": 10,
               "components": [
                 {"type": "video", "encoding": "H264", "pid": 100, "aspect_ratio": 178, "tag": 1},
                 {"type": "audio", "encoding": "HEAAC", "pid": 101, "language": "deu", "channels": 2},
                 {"type": "audio", "encoding": "AC3", "pid": 102, "language": "eng", "channels": 6}],
               "programmes": [{"name": "Now", "event_id": 7, "start_minutes": 0, "duration_minutes": 60,
                               "parental_rating": 12}]},
              {"id": 2, "name": "Two", "type": "radio", "id_type": "ID_IPTV_URI",
               "ip_broadcast_id": "ip-two", "onid": 1, "tsid": 2, "sid": 11},
              {"id": 3, "name": "Broken", "id_type": "ID_DVB_T", "onid": 1, "tsid": 2, "sid": 12,
               "tuning_error": 1}]},
          "stream_events": [{"url": "dvb://*", "name": "tick", "event_id": 3, "period_ms": 20,
                             "data": "0AFF"}]
        })");
    }

    void SetUp() override {
        ALivingRoom::SetUp();
        Eval(
            "tv.onPlayStateChange = function(s, e) { log.push(s + '/' + e); }; "
            "tv.onChannelChangeSucceeded = function(c) { log.push(c && c.name); }; "
            "tv.onChannelChangeError = function(c, e) { log.push('error ' + c + '/' + e); }; "
            "tv.bindToCurrentChannel()");
        ASSERT_TRUE(Becomes("log.join()", "string 1/undefined,2/undefined"));
        Eval("log = []");
    }
};

TEST_F(AnEvening, GoesFromChannelToChannel) {
    EXPECT_EQ(Value("tv.currentChannel.name + tv.currentChannel.channelType + tv.playState"), "string One02");
    Eval("tv.setChannel(tv.getChannelConfig().channelList.getChannel('ip-two'), false)");
    EXPECT_TRUE(Becomes("log.join()", "string 1/undefined,Two,2/undefined"));
    EXPECT_EQ(Value("tv.currentChannel.channelType"), "number 1");
    Eval("log = []; tv.prevChannel()");
    EXPECT_TRUE(Becomes("log.join()", "string 1/undefined,One,2/undefined"));
    Eval("log = []; tv.setChannel(tv.createChannelObject(12, 1, 2, 12))");
    EXPECT_TRUE(Becomes("log[1]", "string error 3/1"));
    Eval("log = []; tv.setChannel(null, false)");
    EXPECT_TRUE(Becomes("log.indexOf(null) >= 0", "boolean true"));
}

TEST_F(AnEvening, GoesOnOnAnotherPageWhenOneIsLeftWhileTuning) {
    Eval("tv.setChannel(tv.getChannelConfig().channelList[1])");
    page.StartLoad(page.main);
    page.main.Navigate();
    Eval(
        "var log = []; var tv = PrivateObjectFactory.createVideoBroadcastObject(); "
        "tv.onPlayStateChange = function(s) { log.push(s); }; tv.bindToCurrentChannel()");
    EXPECT_TRUE(Becomes("log.join()", "string 1,2"));
    EXPECT_EQ(Value("tv.playState"), "number 2");
    EXPECT_EQ(Calls()["IBroadcastPlayer.Release(0,)"], 1);
}

TEST_F(AnEvening, TellsWhatIsOnAndWhichComponentsItHas) {
    EXPECT_EQ(
        Value("[tv.programmes[0].name, tv.programmes[0].channelID, tv.programmes[0].parentalRating[0].value, "
              "tv.programmes[0].duration, Math.abs(tv.programmes[0].startTime - Date.now() / 1000) < "
              "3700].join()"),
        "string Now,ccid://1,12,3600,true");
    // A parental rating descriptor: tag, length, country, and the age less three.
    EXPECT_EQ(
        Value(
            "(function(d) { return [d.length, d[0].charCodeAt(0), d[0].length, d[0].charCodeAt(5)].join(); })"
            "(tv.programmes[0].getSIDescriptors(0x55))"),
        "string 1,85,6,9");
    EXPECT_EQ(Value("tv.programmes[0].getSIDescriptors(0x70)"), "null");
    Eval(
        "tv.onSelectedComponentChanged = function(t) { log.push('selected ' + t); }; "
        "tv.selectComponent(tv.getComponents(tv.COMPONENT_TYPE_AUDIO)[1])");
    EXPECT_TRUE(Becomes("log.join()", "string selected 1"));
    EXPECT_EQ(Value("tv.getCurrentActiveComponents(1)[0].language"), "string eng");
    EXPECT_EQ(Value("tv.getComponents()[0].aspectRatio"), "number 1.78");
}

TEST_F(AnEvening, BringsTriggersWhileAListenerIsThere) {
    Eval(
        "function f(e) { log.push([e.name, e.data, e.status].join()); } "
        "tv.addStreamEventListener('dvb://1.2.a/x', 'tick', f); tv.addStreamEventListener('http://x', "
        "'tick', f);");
    EXPECT_TRUE(Becomes("log[1]", "string tick,0AFF,trigger"));
    Eval("tv.removeStreamEventListener('dvb://1.2.a/x', 'tick', f); log = []");
    EXPECT_EQ(Calls()["IDAEBrowserAPI.StreamEventUnsubscribe(1,)"], 1);
    EXPECT_EQ(Value("log.length"), "number 0");
}

}  // namespace
