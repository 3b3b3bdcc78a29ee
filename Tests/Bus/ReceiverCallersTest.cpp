// What one client of the bus has of the receiver is its own, and ends with it: each web process is a client.

#include "Tests/Bus/ReceiverFixture.h"

namespace {

using ReceiverTest::Client;
using ReceiverTest::writeFile;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr const char kHousehold[] = R"({
  "applications": {"trusted_origins": ["http://localhost:*"]},
  "broadcast": {"current_channel": 1, "related": true, "tune_ms": 1, "channels": [
    {"id": 1, "name": "One", "id_type": "ID_DVB_T"}, {"id": 2, "name": "Two", "id_type": "ID_DVB_T"}]},
  "media": {"mime_types": ["video/mp4"], "connect_ms": 1, "maximum_players": 2, "items": [
    {"url": "*/song*", "duration_ms": 60000,
     "components": [{"type": "audio", "encoding": "MPEG1_L3", "pid": 1}]},
    {"url": "*/film*", "duration_ms": 600000}]},
  "drm": {"systems": [{"id": "slow", "reply_ms": 60000}, {"id": "quick", "reply_ms": 1}]},
  "carousel": {"folder": ".", "reply_ms": 1},
  "stream_events": [{"url": "dvb://*", "name": "tick", "period_ms": 20, "data": "00"}]
})";

constexpr const char* kKindsOfState[] = {"stream_event_subscriptions",
                                         "drm_messages",
                                         "carousel_requests",
                                         "queries",
                                         "searches",
                                         "search_results"};

constexpr const char kNoPlane[] = ", false, 0, 0, 0, 0, false, '', 'none', '')";

class TwoPages : public ReceiverTest::RunningReceiver {
 protected:
    void SetUp() override {
        RunningReceiver::SetUp();
        other.join();
    }
    void TearDown() override {
        other.leave();
        RunningReceiver::TearDown();
    }
    [[nodiscard]] std::string scenario() const override { return writeFile("household.json", kHousehold); }

    [[nodiscard]] Client& me() { return *this; }
    // Television and a film, both as plugin 1 with a window, and waits for their pictures.
    void watch(Client& page, const std::string& film) {
        const std::string window = "(uint32 1, uint32 0, uint32 0, uint32 16, uint32 9, false)";
        page.forget();
        (void)page.call("IBroadcastPlayer.UpdateLayout", window);
        (void)page.call("IAVEventHandler.UpdateLayout", window);
        ASSERT_EQ(page.ask("IBroadcastPlayer.BindToCurrentChannel", "(uint32 1,)"), "(true,)");
        (void)page.call("IAVEventHandler.SetData", "(uint32 1, 'http://x/" + film + "')");
        ASSERT_EQ(page.ask("IAVEventHandler.GetPlayer", "(uint32 1,)"), "(true,)");
        ASSERT_EQ(page.ask("IAVEventHandler.Play", "(uint32 1, 1.0)"), "(true,)");
        ASSERT_TRUE(WaitFor([&] { return showsBoth(page); })) << testing::PrintToString(page.signals());
    }
    static bool showsBoth(Client& page) {
        return testing::Value(page.signals(), AllOf(Contains("PluginEventData(101, 1, 2, 1000)"),
                                                    Contains("PluginEventData(200, 1, 1, 1000)")));
    }
    [[nodiscard]] static testing::Matcher<std::vector<std::string>> hearNothingOfPlayers() {
        return Not(Contains(HasSubstr("PluginEvent")));
    }

    Client other{"other"};
};

TEST_F(TwoPages, HaveTheirPlayersAndTheirSignalsForThemselvesUnderTheSameIds) {
    watch(me(), "film-a.mp4");
    forget();
    watch(other, "film-b.mp4");
    EXPECT_THAT(signals(), hearNothingOfPlayers());
    EXPECT_EQ(ask("IAVEventHandler.GetData", "(uint32 1,)"), "('http://x/film-a.mp4',)");
    for (const auto& player : {"'broadband', 'me', 1", "'broadband', 'other', 1", "'broadcast', 'me', 1",
                               "'broadcast', 'other', 1"})
        EXPECT_THAT(control("GetPlanes").text(), HasSubstr(player));
    // There are two decoders for all of them.
    EXPECT_EQ(ask("IAVEventHandler.GetPlayer", "(uint32 2,)"), "(false,)");

    // What a new document does first of all.
    forget();
    other.forget();
    (void)other.call("IAVEventHandler.ReleasePlayer", "(uint32 0,)");
    (void)other.call("IBroadcastPlayer.Release", "(uint32 0,)");
    EXPECT_TRUE(other.hears({std::string("PlaneChanged('broadband', 'other', 1") + kNoPlane,
                             "PluginEventData(200, 1, 0, 1000)",
                             std::string("PlaneChanged('broadcast', 'other', 1") + kNoPlane,
                             "PluginEventData(101, 1, 0, 1000)"}));
    EXPECT_EQ(ask("IAVEventHandler.GetPlayState", "(uint32 1,)"), "(1,)");
    EXPECT_EQ(ask("IBroadcastPlayer.GetPlayState", "(uint32 1,)"), "(2,)");
    EXPECT_THAT(signals(), hearNothingOfPlayers());
    EXPECT_EQ(ask("IAVEventHandler.GetPlayer", "(uint32 2,)"), "(true,)");
}

TEST_F(TwoPages, HavePlayersOfTheSameIdApartOnThePlaneAndAllAtOnce) {
    watch(me(), "a/film.mp4?token=/y.z#t");
    forget();
    (void)call("IAVEventHandler.UpdateLayout",
               "(uint32 2, uint32 4294967196, uint32 20, uint32 320, uint32 180, true)");
    (void)call("IAVEventHandler.SetData", "(uint32 2, 'http://x/song.mp3')");
    EXPECT_EQ(ask("IAVEventHandler.GetPlayer", "(uint32 2,)"), "(true,)");
    EXPECT_EQ(ask("IAVEventHandler.Play", "(uint32 2, 1.0)"), "(true,)");
    EXPECT_TRUE(hears({"PluginEventData(200, 2, 3, 1000)",
                       "PlaneChanged('broadband', 'me', 2, true, 4294967196, 20, 320, 180, true, "
                       "'song.mp3', 'audio', '')",
                       "PluginEventData(200, 2, 1, 1000)", "PluginEventFloat(201, 2, 1.0)"}))
        << "the picture before the event";
    const std::string broadcast = "('broadcast', 'me', 1, 0, 0, 16, 9, false, 'One', 'card', '')";
    EXPECT_EQ(control("GetPlanes").text(),
              "([" + broadcast +
                  ", ('broadband', 'me', 1, 0, 0, 16, 9, false, 'film.mp4', 'card', ''), "
                  "('broadband', 'me', 2, 4294967196, 20, 320, 180, true, 'song.mp3', 'audio', '')],)");
    for (const auto& [player, reason] :
         {std::pair("'broadband', 'me', uint32 1", "there are no frames of the broadband player 1"),
          std::pair("'broadband', 'me', uint32 7", "broadband player 7"),
          std::pair("'broadcast', 'me', uint32 1", "broadcast player 1"),
          std::pair("'cable', 'me', uint32 1", "no kind of player \"cable\"")})
        EXPECT_THAT(control("OpenPicture", std::string("(") + player + ")").error, HasSubstr(reason));
    forget();
    (void)call("IAVEventHandler.ReleasePlayer", "(uint32 0,)");
    EXPECT_TRUE(hears(
        {std::string("PlaneChanged('broadband', 'me', 1") + kNoPlane, "PluginEventData(200, 1, 0, 1000)",
         std::string("PlaneChanged('broadband', 'me', 2") + kNoPlane, "PluginEventData(200, 2, 0, 1000)"}));
    EXPECT_EQ(control("GetPlanes").text(), "([" + broadcast + "],)");
}

TEST_F(TwoPages, GetTheirOwnAnswersAndHoldWhatTheyAskedFor) {
    const auto job = other.ask("IDAEBrowserAPI.StreamEventSubscribe", "('dvb://x', 'tick')");
    const auto sent = other.ask("IDAEBrowserAPI.SendDRMMessage", "('', '', 'quick')");
    ASSERT_EQ(other.ask("DSMCC.FileRequest", "(uint32 7, 'dvb:/household.json')"), "(true,)");
    const auto query = other.ask("IMetaDataSearch.QcAddOp", "(uint32 0,)");
    ASSERT_TRUE(WaitFor([this] {
        return testing::Value(other.signals(), AllOf(Contains(HasSubstr("StreamEvent(0, ")),
                                                     Contains(HasSubstr("PlayReadyResponse(")),
                                                     Contains(HasSubstr("FileResponse(7, "))));
    }));
    forget();
    EXPECT_EQ(signals(), std::vector<std::string>());
    const auto id = [](const std::string& tuple) { return tuple.substr(1, tuple.size() - 3); };
    EXPECT_EQ(ask("IDAEBrowserAPI.StreamEventUnsubscribe", "(uint32 " + id(job) + ",)"), "(false,)");
    EXPECT_EQ(ask("IMetaDataSearch.QcRetain", "(uint32 " + id(query) + ",)"), "(false,)");
    EXPECT_EQ(other.ask("IMetaDataSearch.QcRetain", "(uint32 " + id(query) + ",)"), "(true,)");
    EXPECT_EQ(other.ask("IJSChannelCache.Retain", "(uint32 1,)"), "(true,)");
    (void)call("IJSChannelCache.Release", "(uint32 1,)");
    EXPECT_EQ(world("/state/retained_channels"), R"({"other 1":1})");
    // The next receiver gives none of these ids.
    other.leave();
    leave();
    RunningReceiver::TearDown();
    SetUp();
    EXPECT_NE(other.ask("IDAEBrowserAPI.StreamEventSubscribe", "('dvb://x', 'tick')"), job);
    EXPECT_NE(other.ask("IDAEBrowserAPI.SendDRMMessage", "('', '', 'quick')"), sent);
    EXPECT_NE(other.ask("IMetaDataSearch.QcAddOp", "(uint32 0,)"), query);
}

// What a television does: it has one tuner, whose channel everybody sees who watches.
TEST_F(TwoPages, WatchTheSameChannelOfTheOneTuner) {
    watch(me(), "film-a.mp4");
    watch(other, "film-b.mp4");
    forget();
    other.forget();
    const std::string channelTwo = "(uint32 1, uint32 0, '', 0, 0, 0, uint32 2)";
    EXPECT_EQ(other.ask("IBroadcastPlayer.SetChannel", channelTwo), "(2, true)");
    const std::string picture = "', 1, true, 0, 0, 16, 9, false, 'Two', 'card', '')";
    const auto black = std::string("PlaneChanged('broadcast', 'other', 1") + kNoPlane;
    EXPECT_TRUE(hears({black, "PlaneChanged('broadcast', 'me" + picture, "PluginEventData(100, 1, 2, 1000)",
                       "PlaneChanged('broadcast', 'other" + picture}));
    EXPECT_TRUE(
        other.hears({black, "PluginEventData(101, 1, 1, 1000)", "PlaneChanged('broadcast', 'me" + picture,
                     "PluginEventData(100, 1, 2, 1000)", "PlaneChanged('broadcast', 'other" + picture,
                     "PluginEventData(101, 1, 2, 1000)"}));
    // Who stops watching takes nothing away from the other; who takes the channel away does.
    forget();
    (void)other.call("IBroadcastPlayer.Stop", "(uint32 1,)");
    EXPECT_TRUE(hears({black}));
    EXPECT_EQ(ask("IBroadcastPlayer.IsPresenting", "(uint32 1,)"), "(true,)");
    forget();
    (void)other.call("IBroadcastPlayer.SetNullChannel", "(uint32 1, true)");
    EXPECT_TRUE(hears({"PluginEventData(100, 1, 0, 1000)",
                       std::string("PlaneChanged('broadcast', 'me', 1") + kNoPlane,
                       "PluginEventData(101, 1, 0, 1000)"}));
}

TEST_F(TwoPages, GiveEverythingBackWhenTheirProcessEnds) {
    watch(me(), "film-a.mp4");
    watch(other, "film-b.mp4");
    (void)other.call("IJSChannelCache.Retain", "(uint32 2,)");
    (void)other.call("IDAEBrowserAPI.StreamEventSubscribe", "('dvb://x', 'tick')");
    (void)other.call("IDAEBrowserAPI.SendDRMMessage", "('', '', 'slow')");
    setWorld("/carousel/reply_ms", "60000");
    (void)other.call("DSMCC.FileRequest", "(uint32 7, 'dvb:/household.json')");
    (void)other.call("IMetaDataSearch.QcAddOp", "(uint32 0,)");
    const auto search = other.ask("IMetaDataSearch.MdsAdd", "(1,)");
    (void)other.call("IMetaDataSearch.SrAdd", "(uint32 " + search.substr(1));
    for (const char* kind : kKindsOfState)
        ASSERT_EQ(world(std::string("/state/") + kind), "1") << kind;
    ASSERT_TRUE(control("DelayMethod", "('IJSChannelCache.Retain', uint32 3600000)").value);
    (void)other.callLater("IJSChannelCache.Retain", "(uint32 1,)");
    other.forget();
    forget();

    other.leave();
    EXPECT_TRUE(hears({std::string("PlaneChanged('broadband', 'other', 1") + kNoPlane,
                       std::string("PlaneChanged('broadcast', 'other', 1") + kNoPlane}));
    // Not even what it was still waiting for.
    ASSERT_TRUE(control("ResetMethods").value);
    EXPECT_THAT(world("/state/callers"), AllOf(HasSubstr("film-a"), Not(HasSubstr("film-b"))));
    EXPECT_EQ(world("/state/retained_channels"), "{}");
    for (const char* kind : kKindsOfState)
        EXPECT_EQ(world(std::string("/state/") + kind), "0") << kind;
    EXPECT_EQ(ask("IAVEventHandler.GetPlayer", "(uint32 2,)"), "(true,)") << "a decoder is free again";
}

// The same client stands for the shell and its page here.
TEST_F(TwoPages, GoOnWithTheirOwnViewsWhenTheOtherShellIsKilled) {
    const auto isTrusted = [this] { return ask("IDAEBrowserAPI.IsTrusted"); };
    ASSERT_TRUE(control("RegisterView", "(1, 'http://localhost/')").value);
    const auto before = world("/state/views");
    ASSERT_TRUE(other.control("RegisterView", "(65, 'https://portal.invalid/')").value);
    ASSERT_EQ(other.ask("IDAEBrowserAPI.CreateApplication", "('https://portal.invalid/child', 65)"),
              "(true,)");
    (void)other.call("IBroadcastPlayer.SetNullChannel", "(uint32 1, true)");
    EXPECT_EQ(isTrusted(), "(false,)");
    // What one shell says of another's view does not make it its own.
    ASSERT_TRUE(other.control("RegisterView", "(1, 'http://localhost/')").value);
    ASSERT_TRUE(other.control("RegisterView", "(66, 'https://portal.invalid/child')").value);
    forget();
    other.leave();
    EXPECT_TRUE(WaitFor([&] { return isTrusted() == "(true,)"; }));
    EXPECT_EQ(world("/state/views"), before);
    EXPECT_EQ(signals(), std::vector<std::string>());
    // The next shell's views have the same numbers, and begin as new ones do.
    other.join();
    EXPECT_EQ(control("GetRunningChannel").text(), "('', 'none')");
    ASSERT_TRUE(other.control("RegisterView", "(65, 'http://localhost/')").value);
    EXPECT_EQ(control("GetRunningChannel").text(), "('One', 'card')");
}

}  // namespace
