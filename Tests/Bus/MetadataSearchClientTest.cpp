// Lists that the clients of org.vantrel.hbbtv.IMetaDataSearch send, and the proxy that they share.

#include <gmock/gmock.h>

#include "IPC/DBUS/Src/MetadataSearchWK_DBus.h"
#include "Tests/Bus/FakeService.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

class AMetadataSearchClient : public testing::Test {
 protected:
    void SetUp() override { LogCapture::Clear(); }

    FakeService m_service{"IMetaDataSearch"};
    CMetadataSearchCacheWK m_searches;
    CQueryCacheWK m_queries;
};

TEST_F(AMetadataSearchClient, SendsEmptyListsAsEmptyArrays) {
    m_service.Reply("MdsGetOrderBy", "([], true)");
    TOrderBy orderBy;
    (void)m_searches.SetOrderBy(1, {});
    EXPECT_TRUE(m_searches.GetOrderBy(1, orderBy));
    EXPECT_THAT(orderBy, IsEmpty());
    (void)m_queries.Add(TConstraints{});
    EXPECT_THAT(m_service.TakeCalls(),
                ElementsAre("MdsSetOrderBy (1, [])", "MdsGetOrderBy (1,)", "QcAddConstraints ([],)"));
    EXPECT_EQ(LogCapture::Errors(), 0);
}

TEST_F(AMetadataSearchClient, SendsConstraintsInTheOrderOfTheirFieldsAndEqualOnesAsTheyCame) {
    (void)m_queries.Add(TConstraints{{E_QUERY_CHANNEL_ID, 4000000000U}, {E_QUERY_NAME, "news"s}});
    (void)m_queries.Add(TConstraints{{E_QUERY_CHANNEL_ID, "ccid://1"s}, {E_QUERY_START_TIME, 0U}});
    TConstraints several{{E_QUERY_CHANNEL_ID, 3U}, {E_QUERY_NAME, ""s}};
    several.emplace(E_QUERY_CHANNEL_ID, 1U);
    several.emplace(E_QUERY_NAME, "cut\0here \xff"s);
    (void)m_queries.Add(several);
    EXPECT_THAT(
        m_service.TakeCalls(),
        ElementsAre("QcAddConstraints ([(1, 0, 'news', 0), (7, 0, '', 4000000000)],)",
                    "QcAddConstraints ([(5, 0, '', 0), (7, 0, 'ccid://1', 0)],)",
                    "QcAddConstraints ([(1, 0, '', 0), (1, 0, 'cut', 0), (7, 0, '', 3), (7, 0, '', 1)],)"));
}

TEST_F(AMetadataSearchClient, SendsNoListOfMoreThanAMebibyte) {
    m_service.Reply("QcAddConstraints", "(9,)");
    TConstraints constraints{{E_QUERY_NAME, std::string(500'000, 'x')},
                             {E_QUERY_DESCRIPTION, std::string(500'000, 'y')}};
    EXPECT_EQ(m_queries.Add(constraints), 9U);
    constraints.emplace(E_QUERY_NAME, std::string(100'000, 'z'));
    EXPECT_EQ(m_queries.Add(constraints), 0U);
    EXPECT_EQ(LogCapture::Errors(), 1);
    EXPECT_EQ(m_service.TakeCalls().size(), 1U);
}

TEST(TheMetadataSearchClients, ShareOneProxyThatTheFirstOfThemMakes) {
    LogCapture::Clear();
    const CMetadataSearchManagerWK first;
    const std::string proxy = "CMetaDataSearchWK::CMetaDataSearchWK() Done. s_proxy 0x";
    const auto made = [&proxy] {
        int count = 0;
        for (const LogCapture::Record& record : LogCapture::Records())
            count += record.text.starts_with(proxy) ? 1 : 0;
        return count;
    };
    EXPECT_EQ(LogCapture::Count("CMetaDataSearchWK::CMetaDataSearchWK() imeta_data_search_proxy_new_sync()"),
              1);
    EXPECT_EQ(made(), 1);
    const CQueryCacheWK second;
    const CSearchResultsCacheWK third;
    EXPECT_EQ(made(), 1);
}

}  // namespace
