// Live television on the wire: tuning and its events, blocked channels, components, subscriptions.
#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/ReceiverFixture.h"

namespace {

using ReceiverTest::writeFile;
using testing::HasSubstr;

constexpr const char smallTelevision[] = R"({
  "locale": {"audio_languages": "eng,deu"},
  "parental": {"lock_status": 16},
  "broadcast": {
    "current_channel": 1, "tune_ms": 30,
    "channels": [
      {"id": 1, "name": "One", "id_type": "ID_DVB_T", "onid": 1, "tsid": 2, "sid": 10,
       "components": [
         {"type": "video", "encoding": "H264", "pid": 100, "aspect_ratio": 178, "ca_sid": 7, "tag": 1},
         {"type": "audio", "encoding": "HEAAC", "pid": 101, "language": "deu", "channels": 2},
         {"type": "audio", "encoding": "AC3", "pid": 102, "language": "eng", "audio_description": true},
         {"type": "audio", "encoding": "HEAAC", "pid": 103, "language": "eng", "channels": 2},
         {"type": "subtitle", "pid": 104, "language": "deu", "hearing_impaired": true}]},
      {"id": 2, "name": "Two", "id_type": "ID_DVB_T", "onid": 1, "tsid": 2, "sid": 11,
       "programmes": [{"name": "P", "start_minutes": 0, "duration_minutes": 60, "parental_rating": 12}]},
      {"id": 3, "name": "Broken", "id_type": "ID_DVB_T", "tuning_error": 1},
      {"id": 4, "name": "Paid", "id_type": "ID_DVB_T", "authorised": false},
      {"id": 5, "name": "Adult", "id_type": "ID_DVB_T",
       "programmes": [{"name": "A", "start_minutes": 0, "duration_minutes": 60, "parental_rating": 18}]},
      {"id": 6, "name": "Engineers", "id_type": "ID_DVB_T", "hidden": true}]
  },
  "stream_events": [{"url": "dvb://*", "name": "tick", "event_id": 3, "period_ms": 20, "data": "0AFF"}]
})";

class ATelevision : public ReceiverTest::RunningReceiver {
 protected:
    [[nodiscard]] std::string scenario() const override { return writeFile("small.json", smallTelevision); }

    void present(unsigned pluginId) {
        const auto id = std::to_string(pluginId);
        ASSERT_EQ(call("IBroadcastPlayer.BindToCurrentChannel", "(uint32 " + id + ",)").text(), "(true,)");
        ASSERT_TRUE(hears(
            {"PluginEventData(101, " + id + ", 1, 1000)", "PluginEventData(101, " + id + ", 2, 1000)"}));
        forget();
    }
};

TEST_F(ATelevision, ConnectsAndThenPresentsAChannelAndSaysSo) {
    EXPECT_EQ(call("IBroadcastPlayer.GetPlayState", "(uint32 1,)").text(), "(0,)");
    EXPECT_EQ(call("IBroadcastPlayer.GetChannel", "(uint32 1,)").text(), "(0, false)");
    EXPECT_EQ(call("IBroadcastPlayer.SetChannel", "(uint32 1, uint32 12, '', 1, 2, 11, uint32 0)").text(),
              "(2, true)");
    EXPECT_EQ(call("IBroadcastPlayer.GetPlayState", "(uint32 1,)").text(), "(1,)");
    EXPECT_TRUE(hears({"PluginEventData(101, 1, 1, 1000)", "PluginEventData(100, 1, 2, 1000)",
                       "PluginEventData(101, 1, 2, 1000)", "PluginEventData(106, 1, 12, 0)"}));
    EXPECT_EQ(call("IBroadcastPlayer.IsPresenting", "(uint32 1,)").text(), "(true,)");
    EXPECT_EQ(call("IDAEBrowserAPI.CurrentChannel").text(), "(2, true)");
    EXPECT_EQ(call("IBroadcastPlayer.IsPresenting", "(uint32 2,)").text(), "(false,)") << "another player";
}

TEST_F(ATelevision, ReportsWhyAChannelCannotBeShownAndKeepsTheOneBefore) {
    struct Blocked {
        const char* channel;
        const char* error;
    };
    for (const auto& [channel, error] : {Blocked{"3", "1"}, Blocked{"4", "4"}, Blocked{"5", "3"}}) {
        forget();
        (void)call("IBroadcastPlayer.SetChannel",
                   std::string("(uint32 1, uint32 0, '', 0, 0, 0, uint32 ") + channel + ")");
        std::vector<std::string> expected = {
            "PluginEventData(101, 1, 1, 1000)",
            std::string("PluginEventData(100, 1, ") + channel + ", " + error + ")",
            std::string("PluginEventData(101, 1, 0, ") + error + ")"};
        if (std::string(channel) == "5")
            expected.push_back("PluginEventData(106, 1, 18, 0)");
        EXPECT_TRUE(hears(expected));
    }
    forget();
    EXPECT_EQ(call("IBroadcastPlayer.SetChannel", "(uint32 1, uint32 0, '', 0, 0, 0, uint32 77)").text(),
              "(77, false)");
    EXPECT_TRUE(hears({"PluginEventData(100, 1, 77, 5)"}));
    EXPECT_EQ(call("IDAEBrowserAPI.CurrentChannel").text(), "(1, true)");
}

TEST_F(ATelevision, StepsThroughTheChannelsThatAreNotHidden) {
    present(1);
    EXPECT_EQ(call("IBroadcastPlayer.NextOrPrevChannel", "(uint32 1, true)").text(), "('', true)");
    EXPECT_TRUE(hears({"PluginEventData(101, 1, 1, 1000)", "PluginEventData(100, 1, 2, 1000)",
                       "PluginEventData(101, 1, 2, 1000)", "PluginEventData(106, 1, 12, 0)"}));
    ASSERT_TRUE(control("SetWorld", "('/broadcast/current_channel', '1')").value);
    forget();
    // Before the first comes the last that a viewer may see: not the engineers' one.
    (void)call("IBroadcastPlayer.NextOrPrevChannel", "(uint32 2, false)");
    const auto& heard = signals();
    const auto isStepToFive = [&heard] {
        return std::find(heard.begin(), heard.end(), "PluginEventData(100, 2, 5, 3)") != heard.end();
    };
    EXPECT_TRUE(WaitFor(isStepToFive));
}

TEST_F(ATelevision, TheNullChannelMakesTheApplicationIndependentUntilItSelectsAChannel) {
    present(1);
    (void)call("IBroadcastPlayer.SetNullChannel", "(uint32 1, true)");
    EXPECT_TRUE(hears({"PluginEventData(100, 1, 0, 1000)", "PluginEventData(101, 1, 0, 1000)"}));
    EXPECT_EQ(call("IDAEBrowserAPI.CurrentChannel").text(), "(0, false)");
    EXPECT_EQ(call("IDAEBrowserAPI.IsBroadcastRelated").text(), "(false,)");
    EXPECT_EQ(call("IBroadcastPlayer.BindToCurrentChannel", "(uint32 1,)").text(), "(false,)");
    // A new application gets what an application gets at its start.
    ASSERT_TRUE(control("RegisterView", "(1, 'http://localhost/')").value);
    EXPECT_EQ(call("IDAEBrowserAPI.IsBroadcastRelated").text(), "(true,)");
    EXPECT_EQ(call("IDAEBrowserAPI.CurrentChannel").text(), "(1, true)");
}

TEST_F(ATelevision, PlayersFollowTheRemoteControl) {
    present(1);
    ASSERT_TRUE(control("SetWorld", "('/broadcast/current_channel', '2')").value);
    EXPECT_TRUE(hears({"PluginEventData(101, 1, 1, 1000)", "PluginEventData(100, 1, 2, 1000)",
                       "PluginEventData(101, 1, 2, 1000)", "PluginEventData(106, 1, 12, 0)"}));
}

TEST_F(ATelevision, ListsComponentsAndRemembersWhichAreSelected) {
    EXPECT_EQ(call("IBroadcastPlayer.GetVideoComponents", "(uint32 1, false)").text(), "([],)")
        << "an unrealized player has none";
    present(1);
    EXPECT_EQ(call("IBroadcastPlayer.GetVideoComponents", "(uint32 1, false)").text(),
              "([(0, 'H264', false, 100, 7, 0x01, '', false, 178)],)");
    EXPECT_EQ(call("IBroadcastPlayer.GetSbtComponents", "(uint32 1, false)").text(),
              "([(2, '', false, 104, 0, 0x00, 'deu', true, 0)],)");
    const auto activeAudio = [this] {
        return call("IBroadcastPlayer.GetAudioComponents", "(uint32 1, true)").text();
    };
    EXPECT_THAT(activeAudio(), HasSubstr(" 103, 0, 0x00")) << "the preferred language, and no description";
    EXPECT_EQ(call("IBroadcastPlayer.GetSbtComponents", "(uint32 1, true)").text(), "([],)");

    (void)call("IBroadcastPlayer.SelectComponent", "(uint32 1, 1, 101)");
    EXPECT_THAT(activeAudio(), HasSubstr(" 101, 0, 0x00"));
    (void)call("IBroadcastPlayer.SelectComponent", "(uint32 1, 1, 9999)");
    (void)call("IBroadcastPlayer.SelectComponent", "(uint32 1, 17, 101)");
    EXPECT_THAT(activeAudio(), HasSubstr(" 101, 0, 0x00"));
    (void)call("IBroadcastPlayer.UnselectComponent", "(uint32 1, 1, -1)");
    EXPECT_EQ(activeAudio(), "([],)");
    (void)call("IBroadcastPlayer.SelectComponent", "(uint32 1, 1, -1)");
    EXPECT_THAT(activeAudio(), HasSubstr(" 103, 0, 0x00"));
    EXPECT_TRUE(hears(std::vector<std::string>(3, "PluginEventSigned(108, 1, 1)")));
}

TEST_F(ATelevision, SendsStreamEventsToWhoSubscribedUntilTheyUnsubscribe) {
    EXPECT_EQ(call("IDAEBrowserAPI.StreamEventSubscribe", "('dvb://x', 'other')").text(), "(0,)");
    EXPECT_EQ(call("IDAEBrowserAPI.StreamEventSubscribe", "('http://x', 'tick')").text(), "(0,)");
    const auto job = call("IDAEBrowserAPI.StreamEventSubscribe", "('dvb://x', 'tick')").text();
    const auto trigger = "StreamEvent(0, 3, 'tick', [0x0a, 0xff], " + job.substr(1, job.find(',') - 1) + ")";
    ASSERT_TRUE(WaitFor([&] { return signals().size() >= 2; }));
    EXPECT_THAT(signals(), testing::Each(trigger));
    const auto unsubscribe = "(uint32 " + job.substr(1);
    EXPECT_EQ(call("IDAEBrowserAPI.StreamEventUnsubscribe", unsubscribe).text(), "(true,)");
    EXPECT_EQ(call("IDAEBrowserAPI.StreamEventUnsubscribe", unsubscribe).text(), "(false,)");
    forget();
    present(1);
    EXPECT_EQ(signals(), std::vector<std::string>());
}

}  // namespace
