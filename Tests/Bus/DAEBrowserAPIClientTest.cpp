// Operations of the client of org.vantrel.hbbtv.IDAEBrowserAPI.

#include <functional>
#include <list>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Bus/LogCapture.h"

namespace {

using testing::ElementsAre;
using namespace std::string_literals;

class ADAEBrowserClient : public testing::Test {
 protected:
    void SetUp() override { LogCapture::Clear(); }

    FakeService m_service{"IDAEBrowserAPI"};
    CDAEBrowserAPIWK m_client;
};

TEST_F(ADAEBrowserClient, SendsTheArgumentsOfEachOperationInTheOrderOfTheWire) {
    const struct {
        std::function<void()> call;
        std::string expected;
    } cases[] = {
        {[&] { m_client.SetProfileSupport(513, 1, 2, 3); }, "SetProfileSupport (513, 0x01, 0x02, 0x03)"},
        {[&] { (void)m_client.IsProfileSupported(65535, 255, 0, 1); },
         "IsProfileSupported (65535, 0xff, 0x00, 0x01)"},
        {[&] { (void)m_client.HasCapability("PVR"); }, "HasCapability ('PVR',)"},
        {[&] { (void)m_client.CreateApplication("http://a/b", -1); }, "CreateApplication ('http://a/b', -1)"},
        {[&] { m_client.DestroyApplication(7); }, "DestroyApplication (7,)"},
        {[&] { m_client.Show(8); }, "Show (8,)"},
        {[&] { m_client.Hide(9); }, "Hide (9,)"},
        {[&] { (void)m_client.IsURLInAppBoundary("dvb://1.2.3"); }, "IsURLInAppBoundary ('dvb://1.2.3',)"},
        {[&] { m_client.SetKeyMask(-1); }, "SetKeyMask (-1,)"},
        {[&] { (void)m_client.GetProgramDescriptors(4000000000U, 65535, -1, 2, -3); },
         "GetProgramDescriptors (4000000000, 65535, -1, 2, -3)"},
        {[&] { (void)m_client.GetProgCollection(3); }, "GetProgCollection (3,)"},
        {[&] {
             int id = 0;
             m_client.SendDRMMessage(id, "type", "message", "urn:dvb:casystemid:1");
         },
         "SendDRMMessage ('type', 'message', 'urn:dvb:casystemid:1')"},
        {[&] { (void)m_client.StreamEventSubscribe("dvb://1.2.3", "event"); },
         "StreamEventSubscribe ('dvb://1.2.3', 'event')"},
        {[&] { m_client.StreamEventUnsubscribe(12); }, "StreamEventUnsubscribe (12,)"},
    };
    for (const auto& [call, expected] : cases) {
        call();
        EXPECT_THAT(m_service.TakeCalls(), ElementsAre(expected));
    }
    EXPECT_EQ(LogCapture::Errors(), 0);
    EXPECT_EQ(LogCapture::Count("CDAEBrowserAPIWK::CreateApplication"), 1);
}

TEST_F(ADAEBrowserClient, GivesBackWhatTheServiceAnswers) {
    for (const char* method :
         {"IsProfileSupported", "HasCapability", "CreateApplication", "IsBroadcastRelated", "IsTrusted",
          "IsURLInAppBoundary", "IsSASSessionOpen", "StreamEventUnsubscribe"})
        m_service.Reply(method, "(true,)");
    EXPECT_TRUE(m_client.IsProfileSupported(0, 0, 0, 0));
    EXPECT_TRUE(m_client.HasCapability(""));
    EXPECT_TRUE(m_client.CreateApplication("", 0));
    EXPECT_TRUE(m_client.IsBroadcastRelated());
    EXPECT_TRUE(m_client.IsTrusted());
    EXPECT_TRUE(m_client.IsURLInAppBoundary(""));
    EXPECT_TRUE(m_client.IsSASSessionOpen());
    EXPECT_TRUE(m_client.StreamEventUnsubscribe(0));

    m_service.Reply("GetKeyMask", "(4294967295,)");
    m_service.Reply("GetMaxKeyMask", "(2047,)");
    m_service.Reply("GetParentalLockStatus", "(255,)");
    m_service.Reply("GetDvbsiParentalLockMaxVal", "(18,)");
    m_service.Reply("GetDvbsiParentalLockMinVal", "(-3,)");
    m_service.Reply("StreamEventSubscribe", "(4294967295,)");
    EXPECT_EQ(m_client.GetKeyMask(), 0xFFFFFFFFU);
    EXPECT_EQ(m_client.GetMaxKeyMask(), 2047U);
    EXPECT_EQ(m_client.GetParentalLockStatus(), 255);
    EXPECT_EQ(m_client.GetDvbsiParentalLockMaxVal(), 18);
    EXPECT_EQ(m_client.GetDvbsiParentalLockMinVal(), -3);
    EXPECT_EQ(m_client.StreamEventSubscribe("u", "n"), 4294967295UL);

    for (const char* method : {"GetXmlCapabilities", "GetPreferredAudioLang", "GetPreferredSubtitleLang",
                               "GetPreferredUILang", "GetCIPlusDrmType", "GetCountryID"})
        m_service.Reply(method, "('"s + method + "',)");
    std::string audio, subtitle, ui, drm, country;
    m_client.GetPreferredAudioLang(audio);
    m_client.GetPreferredSubtitleLang(subtitle);
    m_client.GetPreferredUILang(ui);
    m_client.GetCIPlusDrmType(drm);
    m_client.GetCountryID(country);
    EXPECT_THAT((std::vector{m_client.GetXmlCapabilities(), audio, subtitle, ui, drm, country}),
                ElementsAre("GetXmlCapabilities", "GetPreferredAudioLang", "GetPreferredSubtitleLang",
                            "GetPreferredUILang", "GetCIPlusDrmType", "GetCountryID"));
}

TEST_F(ADAEBrowserClient, TakesRepliesOfSeveralValuesApartInTheOrderOfTheWire) {
    m_service.Reply("CurrentChannel", "(17, true)");
    m_service.Reply("GetTime", "(4000000000, -3600, true)");
    m_service.Reply("GetChannelsAndEventFromUrl", "([3, 4], 65535, true)");
    m_service.Reply("SendDRMMessage", "(-9,)");
    m_service.Reply("GetChannelList", "([1, 4294967295],)");

    uint32_t id = 0;
    EXPECT_TRUE(m_client.CurrentChannel(id));
    EXPECT_EQ(id, 17U);
    unsigned long utc = 0;
    int offset = 0;
    EXPECT_TRUE(m_client.GetTime(utc, offset));
    EXPECT_EQ(utc, 4000000000UL);
    EXPECT_EQ(offset, -3600);
    std::vector<uint32_t> channels{2};
    uint16_t event = 0;
    EXPECT_TRUE(m_client.GetChannelsAndEventFromUrl("", channels, event));
    EXPECT_THAT(channels, ElementsAre(2U, 3U, 4U));
    EXPECT_EQ(event, 65535);
    int transaction = 0;
    m_client.SendDRMMessage(transaction, "", "", "");
    EXPECT_EQ(transaction, -9);
    std::list<uint32_t> list{7};
    m_client.GetChannelList(list);
    EXPECT_THAT(list, ElementsAre(7U, 1U, 0xFFFFFFFFU));
}

TEST_F(ADAEBrowserClient, KeepsEveryByteOfADescriptor) {
    m_service.Reply("GetProgramDescriptors", "([[0x00, 0xff, 0x00], [], [0x41]],)");
    EXPECT_THAT(m_client.GetProgramDescriptors(1, 2, 3, 4, 5), ElementsAre("\x00\xff\x00"s, ""s, "A"s));
}

TEST_F(ADAEBrowserClient, HandsOutProgrammesByIndexWithinTheCollection) {
    m_service.Reply("GetProgCollection",
                    "([('News', 'All of it', 1000, 1800, 0x0c, -7, 'crid://a'), ('', '', 0, 0, 0, 0, '')],)");
    const auto programmes = m_client.GetProgCollection(1);
    ASSERT_NE(programmes, nullptr);
    ASSERT_EQ(programmes->NumberEntries(), 2);
    EXPECT_EQ(LogCapture::Count("CDAEBrowserAPIWK::GetProgCollection return collection of 2 items"), 1);

    std::string name = "untouched", description, id;
    uint32_t start = 0, duration = 0;
    uint8_t rating = 0;
    int32_t event = 0;
    EXPECT_FALSE(programmes->GetInfo(-1, name, description, start, duration, rating, event, id));
    EXPECT_FALSE(programmes->GetInfo(2, name, description, start, duration, rating, event, id));
    EXPECT_EQ(name, "untouched");
    EXPECT_TRUE(programmes->GetInfo(0, name, description, start, duration, rating, event, id));
    EXPECT_EQ(std::tie(name, description, id), std::tuple("News", "All of it", "crid://a"));
    EXPECT_EQ(std::tie(start, duration, rating, event), std::tuple(1000U, 1800U, 12, -7));
}

TEST_F(ADAEBrowserClient, LeavesOutputsAloneAndLogsOneLineWhenTheServiceRefuses) {
    for (const char* method :
         {"GetXmlCapabilities", "CurrentChannel", "GetChannelList", "GetPreferredUILang", "GetKeyMask",
          "GetTime", "SendDRMMessage", "StreamEventSubscribe", "GetProgramDescriptors", "Show",
          "GetChannelsAndEventFromUrl", "GetProgCollection"})
        m_service.Fail(method, "not today");

    uint32_t id = 5;
    unsigned long utc = 6;
    int offset = 7, transaction = 8;
    std::list<uint32_t> list{9};
    std::vector<uint32_t> channels{10};
    uint16_t event = 11;
    std::string language = "fin";
    EXPECT_EQ(m_client.GetXmlCapabilities(), "");
    EXPECT_FALSE(m_client.CurrentChannel(id));
    m_client.GetChannelList(list);
    m_client.GetPreferredUILang(language);
    EXPECT_EQ(m_client.GetKeyMask(), 0U);
    EXPECT_FALSE(m_client.GetTime(utc, offset));
    m_client.SendDRMMessage(transaction, "", "", "");
    EXPECT_EQ(m_client.StreamEventSubscribe("u", "n"), 0UL);
    EXPECT_TRUE(m_client.GetProgramDescriptors(0, 0, 0, 0, 0).empty());
    m_client.Show(1);
    EXPECT_FALSE(m_client.GetChannelsAndEventFromUrl("", channels, event));
    EXPECT_EQ(m_client.GetProgCollection(0), nullptr);

    EXPECT_EQ(std::tie(id, utc, offset, transaction, event), std::tuple(5U, 6UL, 7, 8, 11));
    EXPECT_THAT(list, ElementsAre(9U));
    EXPECT_THAT(channels, ElementsAre(10U));
    EXPECT_EQ(language, "fin");
    EXPECT_EQ(LogCapture::Errors(), 12);
    const std::string reason =
        " failed \"GDBus.Error:org.freedesktop.DBus.Error.Failed: not today\" with error code 0";
    EXPECT_EQ(LogCapture::Count("CDAEBrowserAPIWK::GetTime" + reason), 1);
    EXPECT_EQ(LogCapture::Count("CAVEventHandlerWK::GetProgCollection" + reason), 1);
}

TEST_F(ADAEBrowserClient, WritesWhatCameWithANegativeAnswer) {
    m_service.Reply("CurrentChannel", "(3, false)");
    uint32_t id = 5;
    EXPECT_FALSE(m_client.CurrentChannel(id));
    EXPECT_EQ(id, 3U);
}

// The bus would close the connection of a client that sends ill-formed text, and GLib would warn.
TEST_F(ADAEBrowserClient, SendsOnlyTextThatTheBusCarries) {
    const std::pair<std::string, std::string> cases[] = {
        {"cut\0here"s, "cut"},
        {"\0"s, ""},
        {"\xff", "\uFFFD"},
        {"a\xed\xa0\x80z", "a\uFFFD\uFFFD\uFFFDz"},
        {"short \xe2\x82", "short \uFFFD\uFFFD"},
        {"\xff\0\xff"s, "\uFFFD"},
        {"\u00e4\U0001F4FA", "\u00e4\U0001F4FA"},
    };
    for (const auto& [given, sent] : cases) {
        (void)m_client.HasCapability(given);
        EXPECT_THAT(m_service.TakeCalls(), ElementsAre("HasCapability ('" + sent + "',)"));
    }
    (void)m_client.StreamEventSubscribe(nullptr, "\xc3");
    EXPECT_THAT(m_service.TakeCalls(), ElementsAre("StreamEventSubscribe ('', '\uFFFD')"));
    EXPECT_EQ(LogCapture::Errors(), 0);
}

// The bus closes the connection of a process that sends 128 MiB.
TEST_F(ADAEBrowserClient, SendsNoArgumentOfMoreThanAMebibyte) {
    constexpr size_t kMost = 1024 * 1024;
    m_service.Reply("SendDRMMessage", "(3,)");
    m_service.Reply("StreamEventSubscribe", "(4,)");
    int transaction = 8;
    m_client.SendDRMMessage(transaction, std::string(kMost, 'x'), std::string(kMost, 'y'), "");
    EXPECT_EQ(transaction, 3);
    EXPECT_EQ(m_service.TakeCalls().size(), 1U);
    // What is repaired is longer than it was.
    for (const std::string& text :
         {std::string(kMost + 1, 'x'), std::string(kMost * 128, 'x'), std::string(kMost / 3 + 1, '\xff')}) {
        LogCapture::Clear();
        transaction = 8;
        m_client.SendDRMMessage(transaction, "", text, "");
        EXPECT_EQ(transaction, 8);
        EXPECT_EQ(m_client.StreamEventSubscribe(text.c_str(), ""), 0U);
        EXPECT_FALSE(m_client.CreateApplication(text, 1));
        EXPECT_EQ(LogCapture::Errors(), 3);
    }
    EXPECT_EQ(LogCapture::Count(
                  "CDAEBrowserAPIWK::SendDRMMessage failed \"an argument of 1048578 bytes is not sent, the "
                  "most is 1048576\" with error code " +
                  std::to_string(G_IO_ERROR_MESSAGE_TOO_LARGE)),
              1);
    EXPECT_EQ(m_client.StreamEventSubscribe("u", "n"), 4U) << "the connection stands";
    EXPECT_THAT(m_service.TakeCalls(), ElementsAre("StreamEventSubscribe ('u', 'n')"));
}

}  // namespace
