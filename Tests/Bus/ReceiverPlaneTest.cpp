// What the receiver tells of the video plane.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/ReceiverFixture.h"

namespace {

using ReceiverTest::writeFile;
using testing::HasSubstr;

constexpr const char films[] = R"({
  "broadcast": {"current_channel": 1, "tune_ms": 1,
    "channels": [{"id": 1, "name": "One", "id_type": "ID_DVB_T"}]},
  "media": {"mime_types": ["video/mp4"], "connect_ms": 1, "maximum_players": 2, "items": [
    {"url": "*/short*", "duration_ms": 50},
    {"url": "*/broken*", "error": 4},
    {"url": "*/song*", "duration_ms": 60000,
     "components": [{"type": "audio", "encoding": "MPEG1_L3", "pid": 1}]},
    {"url": "*/film*", "duration_ms": 60000}]}
})";

std::string plane(const std::string& player, const std::string& content) {
    return "PlaneChanged(" + player + ", true, " + content + ", '')";
}

std::string noPlane(const std::string& player) {
    return "PlaneChanged(" + player + ", false, 0, 0, 0, 0, false, '', 'none', '')";
}

std::string state(int player, int value, int error = 1000) {
    return "PluginEventData(200, " + std::to_string(player) + ", " + std::to_string(value) + ", " +
           std::to_string(error) + ")";
}

std::string speed(int player, const char* value) {
    return "PluginEventFloat(201, " + std::to_string(player) + ", " + value + ")";
}

class ThePlane : public ReceiverTest::RunningReceiver {
 protected:
    [[nodiscard]] std::string scenario() const override { return writeFile("films.json", films); }

    void media(const std::string& method, const std::string& arguments) {
        const auto answer = call("IAVEventHandler." + method, "(uint32 " + arguments + ")");
        ASSERT_TRUE(answer.value) << method << ": " << answer.error;
    }
    void layOut(const std::string& player, const std::string& window) {
        media("UpdateLayout", player + ", " + window);
    }
    void play(const std::string& player, const std::string& url) {
        media("SetData", player + ", '" + url + "'");
        media("GetPlayer", player + ",");
        media("Play", player + ", 1.0");
    }
    [[nodiscard]] std::string planes() { return control("GetPlanes").text(); }
};

TEST_F(ThePlane, ShowsAMediumFromItsFirstPlayingUntilItIsStopped) {
    layOut("1", "uint32 10, uint32 20, uint32 320, uint32 180, false");
    play("1", "http://x/a/film.mp4?token=/y.z#t");
    const auto shown = plane("'broadband', 'me', 1", "10, 20, 320, 180, false, 'film.mp4', 'card'");
    EXPECT_TRUE(hears({state(1, 3), shown, state(1, 1), speed(1, "1.0")})) << "the picture before the event";
    forget();
    media("Play", "1, 0.0");
    EXPECT_TRUE(hears({state(1, 2), speed(1, "0.0")})) << "a pause changes nothing to be seen";
    EXPECT_EQ(planes(), "([('broadband', 'me', 1, 10, 20, 320, 180, false, 'film.mp4', 'card', '')],)");
    forget();
    media("Stop", "1,");
    media("Stop", "1,");
    EXPECT_TRUE(hears({noPlane("'broadband', 'me', 1"), state(1, 0)}));
    EXPECT_EQ(planes(), "([],)");
}

TEST_F(ThePlane, FollowsTheWindowOfAMediumThatPlays) {
    play("1", "http://x/film.mp4");
    EXPECT_TRUE(hears({state(1, 3), state(1, 1), speed(1, "1.0")})) << "there is no window yet";
    forget();
    layOut("1", "uint32 4294967196, uint32 20, uint32 320, uint32 180, false");
    layOut("1", "uint32 4294967196, uint32 20, uint32 320, uint32 180, false");
    layOut("1", "uint32 0, uint32 0, uint32 0, uint32 0, true");
    layOut("1", "uint32 0, uint32 0, uint32 0, uint32 9, false");
    layOut("1", "uint32 0, uint32 0, uint32 9, uint32 0, false");
    layOut("1", "uint32 1, uint32 2, uint32 3, uint32 4, false");
    EXPECT_TRUE(hears({plane("'broadband', 'me', 1", "4294967196, 20, 320, 180, false, 'film.mp4', 'card'"),
                       plane("'broadband', 'me', 1", "0, 0, 0, 0, true, 'film.mp4', 'card'"),
                       noPlane("'broadband', 'me', 1"),
                       plane("'broadband', 'me', 1", "1, 2, 3, 4, false, 'film.mp4', 'card'")}));
}

TEST_F(ThePlane, RemembersTheWindowOfAReleasedPlayerUntilThePageHasGone) {
    layOut("1", "uint32 1, uint32 2, uint32 3, uint32 4, false");
    for (int time = 0; time < 2; ++time) {
        forget();
        play("1", "http://x/film.mp4");
        EXPECT_TRUE(
            hears({state(1, 3), plane("'broadband', 'me', 1", "1, 2, 3, 4, false, 'film.mp4', 'card'"),
                   state(1, 1), speed(1, "1.0")}));
        forget();
        media("ReleasePlayer", "1,");
        EXPECT_TRUE(hears({noPlane("'broadband', 'me', 1"), state(1, 0)}));
    }
    media("ReleasePlayer", "0,");
    forget();
    play("1", "http://x/film.mp4");
    EXPECT_TRUE(hears({state(1, 3), state(1, 1), speed(1, "1.0")})) << "another page's player";
}

TEST_F(ThePlane, HidesAMediumThatHasEndedOrFails) {
    layOut("1", "uint32 1, uint32 2, uint32 3, uint32 4, false");
    play("1", "http://x/short.mp4");
    EXPECT_TRUE(hears({state(1, 3), plane("'broadband', 'me', 1", "1, 2, 3, 4, false, 'short.mp4', 'card'"),
                       state(1, 1), speed(1, "1.0"), noPlane("'broadband', 'me', 1"), state(1, 5)}));
    forget();
    play("1", "http://x/broken.mp4");
    EXPECT_TRUE(hears({state(1, 0), state(1, 3), state(1, 6, 4)})) << "never anything to be seen";
}

TEST_F(ThePlane, TellsPlayersOfTheSameIdApartAndShowsAllAtOnce) {
    const std::string window = "uint32 0, uint32 0, uint32 16, uint32 9, false";
    ASSERT_TRUE(call("IBroadcastPlayer.UpdateLayout", "(uint32 1, " + window + ")").value);
    layOut("1", window);
    layOut("2", "uint32 16, uint32 0, uint32 16, uint32 9, false");
    ASSERT_TRUE(call("IBroadcastPlayer.BindToCurrentChannel", "(uint32 1,)").value);
    EXPECT_TRUE(hears({"PluginEventData(101, 1, 1, 1000)",
                       plane("'broadcast', 'me', 1", "0, 0, 16, 9, false, 'One', 'card'"),
                       "PluginEventData(101, 1, 2, 1000)"}));
    forget();
    play("1", "http://x/film.mp4");
    ASSERT_TRUE(WaitFor([this] { return signals().size() == 4; }));
    play("2", "http://x/song.mp3");
    ASSERT_TRUE(WaitFor([this] { return signals().size() == 8; }));
    EXPECT_THAT(signals(),
                testing::Contains(plane("'broadband', 'me', 2", "16, 0, 16, 9, false, 'song.mp3', 'audio'")));
    const std::string broadcast = "('broadcast', 'me', 1, 0, 0, 16, 9, false, 'One', 'card', '')";
    EXPECT_EQ(planes(), "([" + broadcast +
                            ", ('broadband', 'me', 1, 0, 0, 16, 9, false, 'film.mp4', 'card', ''), "
                            "('broadband', 'me', 2, 16, 0, 16, 9, false, 'song.mp3', 'audio', '')],)");
    forget();
    media("ReleasePlayer", "0,");
    EXPECT_TRUE(
        hears({noPlane("'broadband', 'me', 1"), state(1, 0), noPlane("'broadband', 'me', 2"), state(2, 0)}));
    EXPECT_EQ(planes(), "([" + broadcast + "],)");
}

TEST_F(ThePlane, HasNoFramesOfPlayersThatDecodeNothing) {
    play("1", "http://x/film.mp4");
    ASSERT_TRUE(WaitFor([this] { return signals().size() == 3; }));
    EXPECT_THAT(control("OpenPicture", "('broadband', 'me', uint32 1)").error,
                HasSubstr("there are no frames of the broadband player 1"));
    EXPECT_THAT(control("OpenPicture", "('broadband', 'me', uint32 7)").error,
                HasSubstr("broadband player 7"));
    EXPECT_THAT(control("OpenPicture", "('broadcast', 'me', uint32 1)").error,
                HasSubstr("broadcast player 1"));
    EXPECT_THAT(control("OpenPicture", "('cable', 'me', uint32 1)").error,
                HasSubstr("no kind of player \"cable\""));
}

}  // namespace
