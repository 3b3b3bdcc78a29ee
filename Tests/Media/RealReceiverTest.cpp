// The receiver as a program with a medium that it decodes, on the bus.
#include <gmock/gmock.h>

#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/ReceiverFixture.h"
#include "Tests/Media/PlayerFixture.h"

namespace {

using MediaTest::fileUrl;
using ReceiverTest::RunningReceiver;
using ReceiverTest::runReceiver;
using ReceiverTest::writeFile;
using testing::Contains;
using testing::HasSubstr;

class AReceiverWithARealPlayer : public RunningReceiver {
 protected:
    void play(const std::string& url) {
        (void)call("IAVEventHandler.SetLocation", "(uint32 7, 'file:///page.html')");
        (void)call("IAVEventHandler.SetData", "(uint32 7, '" + url + "')");
        EXPECT_EQ(call("IAVEventHandler.SetVolume", "(uint32 7, 0)").text(), "(true,)");
        EXPECT_EQ(call("IAVEventHandler.GetPlayer", "(uint32 7,)").text(), "(true,)");
        EXPECT_EQ(call("IAVEventHandler.Play", "(uint32 7, 1.0)").text(), "(true,)");
    }
    [[nodiscard]] bool hearsOf(const std::string& signal) {
        return WaitFor([&] { return testing::Value(signals(), Contains(signal)); });
    }
};

TEST_F(AReceiverWithARealPlayer, TellsPagesAboutTheMediumItself) {
    EXPECT_EQ(call("IAVEventHandler.CheckMimeType", "('application/vnd.apple.mpegurl',)").text(), "(true,)");
    (void)call("IAVEventHandler.UpdateLayout",
               "(uint32 7, uint32 1, uint32 2, uint32 320, uint32 180, false)");
    play(fileUrl("film.mp4"));
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 1, 1000)"));
    EXPECT_TRUE(
        hearsOf("PlaneChanged('broadband', 'me', 7, true, 1, 2, 320, 180, false, 'film.mp4', 'frames')"));
    EXPECT_EQ(call("IAVEventHandler.GetPlayTime", "(uint32 7,)").text(), "(12021,)");
    EXPECT_EQ(call("IAVEventHandler.GetVideoComponents", "(uint32 7, true)").text(),
              "([(0, 'H264', false, 1, 0, 0x01, '', false, 178)],)");
    EXPECT_EQ(call("IAVEventHandler.Seek", "(uint32 7, uint32 11500)").text(), "(true,)");
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 5, 1000)"));
    // What the scenario describes is still simulated.
    play("http://media.invalid/broken.mp4");
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 6, 4)"));
    // What plays at the end of the program ends with it.
    play(fileUrl("film.mp4"));
}

TEST_F(AReceiverWithARealPlayer, SimulatesWhatItIsToldToSimulate) {
    EXPECT_EQ(control("SetWorld", "('/media/player', '\"simulated\"')").error, "");
    play(fileUrl("film.mp4"));
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 6, 5)")) << "there is no such item";
    const auto ended = runReceiver({"--scenario", writeFile("odd.json", R"({"media": {"player": "both"}})")});
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_THAT(ended.errors, HasSubstr("/media/player"));
}

}  // namespace
