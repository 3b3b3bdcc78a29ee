#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "IPC/DBUS/Src/CBroadcastPlayerWK_DBus.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Bus/LogCapture.h"

namespace {

using testing::ElementsAre;

class ABroadcastPlayerClient : public testing::Test {
 protected:
    void SetUp() override { LogCapture::Clear(); }

    FakeService m_service{"IBroadcastPlayer"};
    CBroadcastPlayerWK m_client;
};

TEST_F(ABroadcastPlayerClient, SendsTheArgumentsOfEachOperationInTheOrderOfTheWire) {
    uint32_t id = 70;
    int value = 0;
    std::string text;
    AVComponentVector components;
    const struct {
        std::function<void()> call;
        std::string expected;
    } cases[] = {
        {[&] { m_client.BindToCurrentChannel(1); }, "BindToCurrentChannel (1,)"},
        {[&] { m_client.SetChannel(2, ID_DVB_SI_DIRECT, "dsd", 10, -1, 30, id); },
         "SetChannel (2, 13, 'dsd', 10, -1, 30, 70)"},
        {[&] { m_client.NextOrPrevChannel(3, true, text); }, "NextOrPrevChannel (3, true)"},
        {[&] { m_client.SetNullChannel(4, true); }, "SetNullChannel (4, true)"},
        {[&] { m_client.Release(5); }, "Release (5,)"},
        {[&] { m_client.Stop(6); }, "Stop (6,)"},
        {[&] { (void)m_client.IsPresenting(7); }, "IsPresenting (7,)"},
        {[&] { m_client.GetPlayState(8, value); }, "GetPlayState (8,)"},
        {[&] { (void)m_client.GetChannel(9, id); }, "GetChannel (9,)"},
        {[&] { m_client.SetVolume(10, -50); }, "SetVolume (10, -50)"},
        {[&] { m_client.GetVolume(11, value); }, "GetVolume (11,)"},
        {[&] { m_client.GetAudioComponents(12, components, true); }, "GetAudioComponents (12, true)"},
        {[&] { m_client.GetVideoComponents(13, components, false); }, "GetVideoComponents (13, false)"},
        {[&] { m_client.GetSbtComponents(14, components, true); }, "GetSbtComponents (14, true)"},
        {[&] { m_client.SelectComponent(15, 1, 0xFFFFFFFFU); }, "SelectComponent (15, 1, -1)"},
        {[&] { m_client.UnselectComponent(16, -2, 32767); }, "UnselectComponent (16, -2, 32767)"},
        {[&] { m_client.UpdateLayout(17, 1, 2, 4000000000U, 4, true); },
         "UpdateLayout (17, 1, 2, 4000000000, 4, true)"},
    };
    for (const auto& [call, expected] : cases) {
        call();
        EXPECT_THAT(m_service.TakeCalls(), ElementsAre(expected));
    }
    EXPECT_EQ(LogCapture::Errors(), 0);
    EXPECT_EQ(LogCapture::Count("CBroadcastPlayerWK::SelectComponent type=1 index=-1"), 1);
}

TEST_F(ABroadcastPlayerClient, TakesRepliesOfSeveralValuesApart) {
    m_service.Reply("SetChannel", "(71, true)");
    m_service.Reply("NextOrPrevChannel", "('why not', true)");
    m_service.Reply("GetChannel", "(72, true)");
    m_service.Reply("GetVolume", "(-1,)");
    m_service.Reply("GetPlayState", "(2,)");
    uint32_t id = 70;
    EXPECT_TRUE(m_client.SetChannel(1, ID_DVB_T, "", 0, 0, 0, id));
    EXPECT_EQ(id, 71U);
    std::string exception;
    EXPECT_TRUE(m_client.NextOrPrevChannel(1, false, exception));
    EXPECT_EQ(exception, "why not");
    EXPECT_TRUE(m_client.GetChannel(1, id));
    EXPECT_EQ(id, 72U);
    int volume = 0, state = 0;
    m_client.GetVolume(1, volume);
    m_client.GetPlayState(1, state);
    EXPECT_EQ(std::pair(volume, state), std::pair(-1, 2));
}

TEST_F(ABroadcastPlayerClient, AppendsTheComponentsOfTheReply) {
    m_service.Reply("GetVideoComponents", "([(0, 'H.264', true, -1, 65535, 0xff, 'eng', true, 178)],)");
    m_service.Reply("GetSbtComponents",
                    "([(3, 'x', false, 0, 0, 0, '', false, 0), (2, 'DVB', true, 7, 8, 9, 'fin', true, 5)],)");
    AVComponentVector components;
    m_client.GetVideoComponents(1, components, false);
    m_client.GetSbtComponents(1, components, false);
    m_client.GetAudioComponents(1, components, false);
    ASSERT_EQ(components.size(), 2U);
    EXPECT_EQ(components[0]->ParamString(), "0, \"H.264\", true, -1, 65535, 255, 178");
    EXPECT_EQ(components[1]->ParamString(), "2, \"\", true, 7, 0, 9, \"fin\", true");
    EXPECT_EQ(LogCapture::Count("CBroadcastPlayerWK::GetSbtComponents returning 2 items."), 1);

    m_service.Fail("GetVideoComponents", "no");
    m_client.GetVideoComponents(1, components, false);
    EXPECT_EQ(components.size(), 2U);
}

TEST_F(ABroadcastPlayerClient, NamesTheOtherPlayerInMostFailures) {
    for (const char* method : {"GetPlayState", "SetChannel", "SelectComponent", "UnselectComponent"})
        m_service.Fail(method, "no");
    int state = 4;
    uint32_t id = 5;
    m_client.GetPlayState(1, state);
    EXPECT_FALSE(m_client.SetChannel(1, ID_DVB_T, "", 0, 0, 0, id));
    m_client.SelectComponent(1, 0, 0);
    m_client.UnselectComponent(1, 0, 0);
    EXPECT_EQ(std::pair(state, id), std::pair(4, 5U));
    const std::string reason =
        " failed \"GDBus.Error:org.freedesktop.DBus.Error.Failed: no\" with error code 0";
    for (const char* line : {"CAVEventHandlerWK::GetPlayState", "CAVEventHandlerWK::SetChannel",
                             "CBroadcastPlayerWK::SelectComponent", "CBroadcastPlayerWK::UnselectComponent"})
        EXPECT_EQ(LogCapture::Count(line + reason), 1) << line;
}

TEST_F(ABroadcastPlayerClient, OnlyLogsASignal) {
    m_service.Emit("Unexpected", "(true,)");
    EXPECT_TRUE(WaitFor(
        [] { return LogCapture::Count("CBroadcastPlayerWK received Signal: Unexpected: (true,)") == 1; }));
}

}  // namespace
