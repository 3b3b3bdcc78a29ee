// Texts that the client of org.vantrel.hbbtv.IDAEBrowserAPI sends.

#include <gmock/gmock.h>

#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "Tests/Bus/FakeService.h"

namespace {

using testing::ElementsAre;
using namespace std::string_literals;

class ADAEBrowserClient : public testing::Test {
 protected:
    void SetUp() override { LogCapture::Clear(); }

    FakeService m_service{"IDAEBrowserAPI"};
    CDAEBrowserAPIWK m_client;
};

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
