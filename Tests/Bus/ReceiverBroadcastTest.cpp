// Live television on the wire: tuning and its events, blocked channels, components, subscriptions.
#include <map>

#include "Tests/Bus/ReceiverFixture.h"

namespace {

using ReceiverTest::writeFile;
using testing::HasSubstr;

constexpr const char kSmallTelevision[] = R"({
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
    [[nodiscard]] std::string scenario() const override { return writeFile("small.json", kSmallTelevision); }

    void present(unsigned pluginId) {
        const auto id = std::to_string(pluginId);
        ASSERT_EQ(ask("IBroadcastPlayer.BindToCurrentChannel", "(uint32 " + id + ",)"), "(true,)");
        ASSERT_TRUE(hears(
            {"PluginEventData(101, " + id + ", 1, 1000)", "PluginEventData(101, " + id + ", 2, 1000)"}));
        forget();
    }
};

TEST_F(ATelevision, ConnectsAndThenPresentsAChannelAndSaysSo) {
    EXPECT_EQ(ask("IBroadcastPlayer.GetPlayState", "(uint32 1,)"), "(0,)");
    EXPECT_EQ(ask("IBroadcastPlayer.GetChannel", "(uint32 1,)"), "(0, false)");
    EXPECT_EQ(ask("IBroadcastPlayer.SetChannel", "(uint32 1, uint32 12, '', 1, 2, 11, uint32 0)"),
              "(2, true)");
    EXPECT_TRUE(hears({"PluginEventData(101, 1, 1, 1000)", "PluginEventData(100, 1, 2, 1000)",
                       "PluginEventData(101, 1, 2, 1000)", "PluginEventData(106, 1, 12, 0)"}));
    EXPECT_EQ(ask("IBroadcastPlayer.IsPresenting", "(uint32 1,)"), "(true,)");
    EXPECT_EQ(ask("IDAEBrowserAPI.CurrentChannel"), "(2, true)");
    EXPECT_EQ(ask("IBroadcastPlayer.IsPresenting", "(uint32 2,)"), "(false,)") << "another player";
    setWorld("/broadcast/tune_ms", "60000");
    (void)call("IBroadcastPlayer.SetChannel", "(uint32 1, uint32 0, '', 0, 0, 0, uint32 1)");
    EXPECT_EQ(ask("IBroadcastPlayer.GetPlayState", "(uint32 1,)"), "(1,)") << "while it tunes";
}

TEST_F(ATelevision, ReportsWhyAChannelCannotBeShownAndKeepsTheOneBefore) {
    for (const auto& [channel, error] :
         std::map<std::string, std::string>{{"3", "1"}, {"4", "4"}, {"5", "3"}}) {
        forget();
        (void)call("IBroadcastPlayer.SetChannel",
                   "(uint32 1, uint32 0, '', 0, 0, 0, uint32 " + channel + ")");
        std::vector<std::string> expected = {"PluginEventData(101, 1, 1, 1000)",
                                             "PluginEventData(100, 1, " + channel + ", " + error + ")",
                                             "PluginEventData(101, 1, 0, " + error + ")"};
        if (channel == "5")
            expected.push_back("PluginEventData(106, 1, 18, 0)");
        EXPECT_TRUE(hears(expected));
    }
    forget();
    EXPECT_EQ(ask("IBroadcastPlayer.SetChannel", "(uint32 1, uint32 0, '', 0, 0, 0, uint32 77)"),
              "(77, false)");
    EXPECT_TRUE(hears({"PluginEventData(100, 1, 77, 5)"}));
    EXPECT_EQ(ask("IDAEBrowserAPI.CurrentChannel"), "(1, true)");
}

TEST_F(ATelevision, StepsThroughTheChannelsThatAreNotHidden) {
    present(1);
    EXPECT_EQ(ask("IBroadcastPlayer.NextOrPrevChannel", "(uint32 1, true)"), "('', true)");
    const std::vector<std::string> change = {
        "PluginEventData(101, 1, 1, 1000)", "PluginEventData(100, 1, 2, 1000)",
        "PluginEventData(101, 1, 2, 1000)", "PluginEventData(106, 1, 12, 0)"};
    EXPECT_TRUE(hears(change));
    setWorld("/broadcast/current_channel", "1");
    ASSERT_TRUE(WaitFor([this] { return signals().size() == 7; }));
    forget();
    // It follows the remote control.
    setWorld("/broadcast/current_channel", "2");
    EXPECT_TRUE(hears(change));
    setWorld("/broadcast/current_channel", "1");
    forget();
    // Before the first comes the last that a viewer may see: not the engineers' one.
    (void)call("IBroadcastPlayer.NextOrPrevChannel", "(uint32 2, false)");
    EXPECT_TRUE(WaitFor(
        [this] { return testing::Value(signals(), testing::Contains("PluginEventData(100, 2, 5, 3)")); }));
}

TEST_F(ATelevision, TheNullChannelMakesTheApplicationIndependentUntilItSelectsAChannel) {
    present(1);
    (void)call("IBroadcastPlayer.SetNullChannel", "(uint32 1, true)");
    EXPECT_TRUE(hears({"PluginEventData(100, 1, 0, 1000)", "PluginEventData(101, 1, 0, 1000)"}));
    EXPECT_EQ(ask("IDAEBrowserAPI.CurrentChannel"), "(0, false)");
    EXPECT_EQ(ask("IDAEBrowserAPI.IsBroadcastRelated"), "(false,)");
    EXPECT_EQ(ask("IBroadcastPlayer.BindToCurrentChannel", "(uint32 1,)"), "(false,)");
    // A new application gets what an application gets at its start.
    ASSERT_TRUE(control("RegisterView", "(1, 'http://localhost/')").value);
    EXPECT_EQ(ask("IDAEBrowserAPI.IsBroadcastRelated"), "(true,)");
    EXPECT_EQ(ask("IDAEBrowserAPI.CurrentChannel"), "(1, true)");
}

TEST_F(ATelevision, ListsComponentsAndRemembersWhichAreSelected) {
    EXPECT_EQ(ask("IBroadcastPlayer.GetVideoComponents", "(uint32 1, false)"), "([],)")
        << "an unrealized player has none";
    present(1);
    EXPECT_EQ(ask("IBroadcastPlayer.GetVideoComponents", "(uint32 1, false)"),
              "([(0, 'H264', false, 100, 7, 0x01, '', false, 178)],)");
    EXPECT_EQ(ask("IBroadcastPlayer.GetSbtComponents", "(uint32 1, false)"),
              "([(2, '', false, 104, 0, 0x00, 'deu', true, 0)],)");
    const auto activeAudio = [this] {
        return ask("IBroadcastPlayer.GetAudioComponents", "(uint32 1, true)");
    };
    EXPECT_THAT(activeAudio(), HasSubstr(" 103, 0, 0x00")) << "the preferred language, and no description";
    EXPECT_EQ(ask("IBroadcastPlayer.GetSbtComponents", "(uint32 1, true)"), "([],)");

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
    EXPECT_EQ(ask("IDAEBrowserAPI.StreamEventSubscribe", "('dvb://x', 'other')"), "(0,)");
    EXPECT_EQ(ask("IDAEBrowserAPI.StreamEventSubscribe", "('http://x', 'tick')"), "(0,)");
    const auto job = ask("IDAEBrowserAPI.StreamEventSubscribe", "('dvb://x', 'tick')");
    const auto trigger = "StreamEvent(0, 3, 'tick', [0x0a, 0xff], " + job.substr(1, job.find(',') - 1) + ")";
    ASSERT_TRUE(WaitFor([&] { return signals().size() >= 2; }));
    EXPECT_THAT(signals(), testing::Each(trigger));
    const auto unsubscribe = "(uint32 " + job.substr(1);
    EXPECT_EQ(ask("IDAEBrowserAPI.StreamEventUnsubscribe", unsubscribe), "(true,)");
    EXPECT_EQ(ask("IDAEBrowserAPI.StreamEventUnsubscribe", unsubscribe), "(false,)");
    forget();
    present(1);
    EXPECT_EQ(signals(), std::vector<std::string>());
}

}  // namespace
