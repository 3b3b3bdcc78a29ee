#include <string>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Bus/LogCapture.h"

namespace {

using testing::ElementsAre;

// Neighbours of one type have different values, so that none can stand for another.
constexpr char kRecord[] =
    "('name', 'long', 'desc', 1, 2, 3, 4, 5, true, 'ccid', false, true, false, true, 6, 'ip', 7, ";

class AChannelCacheClient : public testing::Test {
 protected:
    void SetUp() override { LogCapture::Clear(); }

    // Everything but the result.
    auto Fields() {
        return std::tie(name, longName, desc, ccid, ip, idType, nid, onid, tsid, sid, rate, major);
    }
    bool Ask() {
        return m_client.GetChannelInfo(9, &name, &longName, &desc, &idType, &nid, &onid, &tsid, &sid, &chType,
                                       &ccid, &authorised, &hidden, &locked, &manualBlock, &rate, &ip,
                                       &major);
    }

    std::string name, longName, desc, ccid, ip;
    uint32_t idType = 0, nid = 0, onid = 0, tsid = 0, sid = 0, rate = 0, major = 0;
    bool chType = false, authorised = false, hidden = false, locked = false, manualBlock = false;

    FakeService m_service{"IJSChannelCache"};
    CJSChannelCacheWK m_client;
};

TEST_F(AChannelCacheClient, ReadsTheRecordInTheOrderOfTheWire) {
    for (const bool known : {true, false}) {
        m_service.Reply("GetChannelInfo", kRecord + std::string(known ? "true)" : "false)"));
        name = ccid = "";
        nid = major = 0;
        authorised = locked = true;
        EXPECT_EQ(Ask(), known);
        EXPECT_EQ(Fields(), std::tuple("name", "long", "desc", "ccid", "ip", 1U, 2U, 3U, 4U, 5U, 6U, 7U));
        EXPECT_THAT((std::array{chType, authorised, hidden, locked, manualBlock}),
                    ElementsAre(true, false, true, false, true));
    }
    EXPECT_THAT(m_service.TakeCalls(), ElementsAre("GetChannelInfo (9,)", "GetChannelInfo (9,)"));
}

TEST_F(AChannelCacheClient, AsksEvenWhenNoFieldIsWanted) {
    m_service.Reply("GetChannelInfo", kRecord + std::string("true)"));
    EXPECT_TRUE(m_client.GetChannelInfo(9, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                        nullptr, nullptr, nullptr));
}

TEST_F(AChannelCacheClient, WritesNothingWhenTheCacheCannotBeAsked) {
    m_service.Fail("GetChannelInfo", "no");
    name = "mine";
    major = 12;
    EXPECT_FALSE(Ask());
    EXPECT_EQ(name, "mine");
    EXPECT_EQ(major, 12U);
    EXPECT_EQ(LogCapture::Count("CJSChannelCacheWK::GetChannelInfo failed \"GDBus.Error:org.freedesktop.DBus."
                                "Error.Failed: no\" with error code 0"),
              1);
}

TEST_F(AChannelCacheClient, RetainsAndReleases) {
    m_service.Reply("Retain", "(true,)");
    EXPECT_TRUE(m_client.Retain(0xFFFFFFFFU));
    m_client.Release(0xFFFFFFFFU);
    EXPECT_THAT(m_service.TakeCalls(2), ElementsAre("Retain (4294967295,)", "Release (4294967295,)"));
}

}  // namespace
