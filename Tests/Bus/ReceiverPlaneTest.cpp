// What the receiver tells of the video plane.

#include "Tests/Bus/ReceiverFixture.h"

namespace {

using ReceiverTest::writeFile;
using testing::HasSubstr;

constexpr const char kFilms[] = R"({
  "broadcast": {"current_channel": 1, "tune_ms": 1,
    "channels": [{"id": 1, "name": "One", "id_type": "ID_DVB_T"}]},
  "media": {"mime_types": ["video/mp4"], "connect_ms": 1, "maximum_players": 2, "items": [
    {"url": "*/song*", "duration_ms": 60000,
     "components": [{"type": "audio", "encoding": "MPEG1_L3", "pid": 1}]},
    {"url": "*/film*", "duration_ms": 60000}]}
})";

class ThePlane : public ReceiverTest::RunningReceiver {
 protected:
    [[nodiscard]] std::string scenario() const override { return writeFile("films.json", kFilms); }

    void play(const std::string& player, const std::string& url) {
        forget();
        EXPECT_TRUE(call("IAVEventHandler.SetData", "(uint32 " + player + ", '" + url + "')").value);
        EXPECT_TRUE(call("IAVEventHandler.GetPlayer", "(uint32 " + player + ",)").value);
        EXPECT_TRUE(call("IAVEventHandler.Play", "(uint32 " + player + ", 1.0)").value);
    }
};

TEST_F(ThePlane, TellsPlayersOfTheSameIdApartAndShowsAllAtOnce) {
    const std::string window = "(uint32 1, uint32 0, uint32 0, uint32 16, uint32 9, false)";
    ASSERT_TRUE(call("IBroadcastPlayer.UpdateLayout", window).value);
    ASSERT_TRUE(call("IAVEventHandler.UpdateLayout", window).value);
    ASSERT_TRUE(call("IAVEventHandler.UpdateLayout",
                     "(uint32 2, uint32 4294967196, uint32 20, uint32 320, uint32 180, true)")
                    .value);
    ASSERT_TRUE(call("IBroadcastPlayer.BindToCurrentChannel", "(uint32 1,)").value);
    EXPECT_TRUE(hears({"PluginEventData(101, 1, 1, 1000)",
                       "PlaneChanged('broadcast', 'me', 1, true, 0, 0, 16, 9, false, 'One', 'card', '')",
                       "PluginEventData(101, 1, 2, 1000)"}));
    play("1", "http://x/a/film.mp4?token=/y.z#t");
    EXPECT_TRUE(hears({"PluginEventData(200, 1, 3, 1000)",
                       "PlaneChanged('broadband', 'me', 1, true, 0, 0, 16, 9, false, 'film.mp4', 'card', '')",
                       "PluginEventData(200, 1, 1, 1000)", "PluginEventFloat(201, 1, 1.0)"}))
        << "the picture before the event";
    play("2", "http://x/song.mp3");
    EXPECT_TRUE(hears({"PluginEventData(200, 2, 3, 1000)",
                       "PlaneChanged('broadband', 'me', 2, true, 4294967196, 20, 320, 180, true, "
                       "'song.mp3', 'audio', '')",
                       "PluginEventData(200, 2, 1, 1000)", "PluginEventFloat(201, 2, 1.0)"}));
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
    const std::string nothing = ", false, 0, 0, 0, 0, false, '', 'none', '')";
    EXPECT_TRUE(hears({"PlaneChanged('broadband', 'me', 1" + nothing, "PluginEventData(200, 1, 0, 1000)",
                       "PlaneChanged('broadband', 'me', 2" + nothing, "PluginEventData(200, 2, 0, 1000)"}));
    EXPECT_EQ(control("GetPlanes").text(), "([" + broadcast + "],)");
}

}  // namespace
