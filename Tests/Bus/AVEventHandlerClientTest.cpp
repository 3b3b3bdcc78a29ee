#include <cmath>
#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "IPC/DBUS/Src/AVEventHandlerWK_DBus.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Bus/LogCapture.h"

namespace {

using testing::ElementsAre;

class AnAVEventHandlerClient : public testing::Test {
 protected:
    void SetUp() override { LogCapture::Clear(); }

    FakeService m_service{"IAVEventHandler"};
    CAVEventHandlerWK m_client;
};

TEST_F(AnAVEventHandlerClient, SendsAndLogsTheArgumentsOfEachOperation) {
    int value = 30;
    unsigned long position = 0;
    float speed = 0;
    std::string text;
    AVComponentVector components;
    const struct {
        std::function<void()> call;
        std::string expected;
        std::string trace;
    } cases[] = {
        {[&] { (void)m_client.FlagPlayerActive(1); }, "FlagPlayerActive (1,)", "FlagPlayerActive"},
        {[&] { (void)m_client.FlagPlayerPlaying(2); }, "FlagPlayerPlaying (2,)", "FlagPlayerPlaying"},
        {[&] { (void)m_client.IsAVPlayerAlive(3); }, "IsAVPlayerAlive (3,)", "IsAVPlayerAlive"},
        {[&] { (void)m_client.GetPlayer(4); }, "GetPlayer (4,)", "GetPlayer"},
        {[&] { m_client.Play(5, -0.5F); }, "Play (5, -0.5)", "Play speed=-0.500000"},
        {[&] { m_client.Stop(6); }, "Stop (6,)", "Stop"},
        {[&] { m_client.Seek(7, -1); }, "Seek (7, 4294967295)", "Seek position=-1"},
        {[&] { m_client.Queue(8, ""); }, "Queue (8, '')", "Queue url="},
        {[&] { m_client.ReleasePlayer(9); }, "ReleasePlayer (9,)", "ReleasePlayer"},
        {[&] { (void)m_client.CheckMimeType("video/mp4"); }, "CheckMimeType ('video/mp4',)",
         "CheckMimeType (video/mp4)"},
        {[&] { m_client.SetMimeType(10, "a/b"); }, "SetMimeType (10, 'a/b')", "SetMimeType (a/b)"},
        {[&] { m_client.ChangeMimeType(11, "a/b"); }, "ChangeMimeType (11, 'a/b')",
         "ChangeMimeType new_mimetype=a/b"},
        {[&] { m_client.SetAttribute(12, "n", "%s%n"); }, "SetAttribute (12, 'n', '%s%n')",
         "SetAttribute name=n value=%s%n"},
        {[&] { m_client.GetMimeType(13, text); }, "GetMimeType (13,)", "GetMimeType"},
        {[&] { m_client.SetData(14, "http://a"); }, "SetData (14, 'http://a')", "SetData url=http://a"},
        {[&] { m_client.GetData(15, text); }, "GetData (15,)", "GetData"},
        {[&] { m_client.UpdateLayout(16, 1, 2, 3, 4, false); }, "UpdateLayout (16, 1, 2, 3, 4, false)",
         "UpdateLayout - Update the position of the player window (1,2,3,4)"},
        {[&] { m_client.SetLocation(17, "http://d"); }, "SetLocation (17, 'http://d')",
         "SetLocation url=http://d"},
        {[&] { m_client.GetPlayPosition(18, position); }, "GetPlayPosition (18,)", "GetPlayPosition"},
        {[&] { m_client.GetSpeed(19, speed); }, "GetSpeed (19,)", "GetSpeed"},
        {[&] { m_client.SetVolume(20, 101); }, "SetVolume (20, 101)", "SetVolume volume=101"},
        {[&] { m_client.GetVolume(21, value); }, "GetVolume (21,)", "GetVolume volume=30"},
        {[&] { m_client.GetVideoComponents(22, components, true); }, "GetVideoComponents (22, true)",
         "GetVideoComponents active_only"},
        {[&] { m_client.GetAudioComponents(23, components, false); }, "GetAudioComponents (23, false)",
         "GetAudioComponents "},
        {[&] { m_client.GetSbtComponents(24, components, false); }, "GetSbtComponents (24, false)",
         "GetSbtComponents "},
        {[&] { m_client.SelectComponent(25, 2, 0xFFFFFFFFU); }, "SelectComponent (25, 2, -1)",
         "SelectComponent type=2 index=-1"},
        {[&] { m_client.UnselectComponent(26, 2, 5); }, "UnselectComponent (26, 2, 5)",
         "UnselectComponent type=2 index=5"},
    };
    for (const auto& [call, expected, trace] : cases) {
        call();
        EXPECT_THAT(m_service.TakeCalls(), ElementsAre(expected));
        EXPECT_EQ(LogCapture::Count("CAVEventHandlerWK::" + trace), 1) << trace;
    }
    EXPECT_EQ(LogCapture::Errors(), 0);
}

TEST_F(AnAVEventHandlerClient, GivesBackWhatTheServiceAnswers) {
    m_service.Reply("GetVolume", "(55, true)");
    m_service.Reply("GetPlayPosition", "(4294967295,)");
    m_service.Reply("GetPlayTime", "(60000,)");
    m_service.Reply("GetData", "('http://data',)");
    m_service.Reply("GetMimeType", "('video/mp4',)");
    m_service.Reply("Play", "(true,)");
    for (const char* method : {"GetPlayState", "GetNrTracks", "GetCurrentTrack", "GetError"})
        m_service.Reply(method, "(-6,)");

    int volume = 0, state = 0, tracks = 0, track = 0, error = 0;
    EXPECT_TRUE(m_client.GetVolume(1, volume));
    EXPECT_EQ(volume, 55);
    EXPECT_TRUE(m_client.Play(1, 1));
    unsigned long position = 0, time = 0;
    m_client.GetPlayPosition(1, position);
    m_client.GetPlayTime(1, time);
    EXPECT_EQ(std::pair(position, time), std::pair(4294967295UL, 60000UL));
    std::string data, type;
    m_client.GetData(1, data);
    m_client.GetMimeType(1, type);
    EXPECT_EQ(data + " " + type, "http://data video/mp4");
    m_client.GetPlayState(1, state);
    m_client.GetNrTracks(1, tracks);
    m_client.GetCurrentTrack(1, track);
    m_client.GetError(1, error);
    EXPECT_THAT((std::vector{state, tracks, track, error}), testing::Each(-6));

    float speed = 0;
    m_service.Reply("GetSpeed", "(1.5,)");
    m_client.GetSpeed(1, speed);
    EXPECT_EQ(speed, 1.5F);
    m_service.Reply("GetSpeed", "(1e300,)");
    m_client.GetSpeed(1, speed);
    EXPECT_TRUE(std::isinf(speed));
}

TEST_F(AnAVEventHandlerClient, LeavesOutputsAloneWhenTheServiceRefuses) {
    for (const char* method :
         {"GetVolume", "GetPlayPosition", "GetSpeed", "GetData", "GetAudioComponents", "Seek"})
        m_service.Fail(method, "no");
    int volume = 1;
    unsigned long position = 2;
    float speed = 3;
    std::string data = "four";
    AVComponentVector components;
    EXPECT_FALSE(m_client.GetVolume(1, volume));
    m_client.GetPlayPosition(1, position);
    m_client.GetSpeed(1, speed);
    m_client.GetData(1, data);
    m_client.GetAudioComponents(1, components, true);
    EXPECT_FALSE(m_client.Seek(1, 0));
    EXPECT_EQ(std::tie(volume, position, speed, data), std::tuple(1, 2UL, 3.0F, "four"));
    EXPECT_TRUE(components.empty());
    EXPECT_EQ(LogCapture::Errors(), 6);
}

TEST_F(AnAVEventHandlerClient, OnlyLogsASignal) {
    m_service.Emit("Unexpected", "(true,)");
    EXPECT_TRUE(WaitFor(
        [] { return LogCapture::Count("AVEventHandlerWK received Signal: Unexpected: (true,)") == 1; }));
}

}  // namespace
