// The five clients of org.vantrel.hbbtv.IMetaDataSearch, every operation on the wire.

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "IPC/DBUS/Src/MetadataSearchWK_DBus.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Bus/LogCapture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

class AMetadataSearchClient : public testing::Test {
 protected:
    // An operation: its arguments, and everything that it gave back as text.
    struct Operation {
        std::function<std::string()> call;
        std::string wire;       // what the service is asked
        std::string answer;     // what it replies
        std::string given;      // what the caller then has
        std::string failed;     // what the caller has when the service refuses
        std::string signature;  // the name of the operation in the log
    };

    void SetUp() override { LogCapture::Clear(); }

    template <typename... Values>
    static std::string Text(const Values&... values) {
        std::string text;
        const auto add = [&text](const auto& value) {
            if constexpr (std::is_convertible_v<decltype(value), std::string>)
                text += (text.empty() ? "" : " ") + value;
            else
                text += (text.empty() ? "" : " ") + std::to_string(value);
        };
        (add(values), ...);
        return text;
    }

    std::vector<Operation> Operations();

    FakeService m_service{"IMetaDataSearch"};
    CMetadataSearchManagerWK m_manager;
    CMetadataSearchCacheWK m_searches;
    CQueryCacheWK m_queries;
    CSearchResultsCacheWK m_results;
    CProgrammeCacheWK m_programmes;
};

std::vector<AMetadataSearchClient::Operation> AMetadataSearchClient::Operations() {
    // Outputs begin with values that no reply has, so that "untouched" can be told.
    const auto two = [](auto operation) {
        return [operation] {
            uint32_t output = 77;
            const bool result = operation(output);
            return Text(result, output);
        };
    };
    const auto flag = [](auto operation) {
        return [operation] {
            bool output = true;
            const bool result = operation(output);
            return Text(result, output);
        };
    };
    constexpr uint32_t kLargest = 4294967295U;
    const std::string manager = "virtual void CMetadataSearchManagerWK::";
    const std::string searches = "virtual bool CMetadataSearchCacheWK::";
    const std::string queries = "CQueryCacheWK::";
    const std::string results = "virtual bool CSearchResultsCacheWK::";
    return {
        {[&] { return Text(m_manager.StartSearch(kLargest)); }, "StartSearch (4294967295,)", "()", "1", "0",
         "virtual bool CMetadataSearchManagerWK::StartSearch(uint32_t)"},
        {[&] { return m_manager.AbortSearch(2), ""; }, "AbortSearch (2,)", "()", "", "",
         manager + "AbortSearch(uint32_t)"},
        {[&] { return m_manager.CancelSearch(3), ""; }, "CancelSearch (3,)", "()", "", "",
         manager + "CancelSearch(uint32_t)"},

        {[&] { return Text(m_searches.Retain(kLargest)); }, "MdsRetain (4294967295,)", "(true,)", "1", "0",
         searches + "Retain(uint32_t)"},
        {[&] { return m_searches.Release(4), ""; }, "MdsRelease (4,)", "()", "", "",
         "virtual void CMetadataSearchCacheWK::Release(uint32_t)"},
        {[&] { return Text(m_searches.Add(-1)); }, "MdsAdd (-1,)", "(4294967295,)", "4294967295", "0",
         "virtual uint32_t CMetadataSearchCacheWK::Add(int)"},
        {[&] { return Text(m_searches.SetQuery(5, 6)); }, "MdsSetQuery (5, 6)", "(true,)", "1", "0",
         searches + "SetQuery(uint32_t, uint32_t)"},
        {two([&](uint32_t& id) { return m_searches.GetQuery(5, id); }), "MdsGetQuery (5,)", "(6, true)",
         "1 6", "0 77", searches + "GetQuery(uint32_t, uint32_t&)"},
        {two([&](uint32_t& id) { return m_searches.GetResults(5, id); }), "MdsGetResults (5,)", "(7, true)",
         "1 7", "0 77", searches + "GetResults(uint32_t, uint32_t&)"},
        {[&] {
             int target = 77;
             const bool result = m_searches.GetTarget(5, target);
             return Text(result, target);
         },
         "MdsGetTarget (5,)", "(-2, true)", "1 -2", "0 77", searches + "GetTarget(uint32_t, int&)"},
        {[&] {
             return Text(m_searches.SetOrderBy(5, {{E_QUERY_START_TIME, true}, {E_QUERY_NAME, false}}));
         },
         "MdsSetOrderBy (5, [(5, true), (1, false)])", "(true,)", "1", "0",
         searches + "SetOrderBy(uint32_t, const TOrderBy&)"},
        {[&] {
             TOrderBy orderBy{{E_QUERY_DURATION, true}};
             std::string text = Text(m_searches.GetOrderBy(5, orderBy));
             for (const auto& [type, ascending] : orderBy)
                 text += " " + Text(uint32_t{type}, ascending);
             return text;
         },
         "MdsGetOrderBy (5,)", "([(99, false), (1, true)], true)", "1 6 1 99 0 1 1", "0 6 1",
         "virtual bool CMetadataSearchCacheWK::GetOrderBy(uint32_t, TOrderBy&) const"},
        {[&] {
             return Text(m_searches.ExpandOrderBy(5, {E_QUERY_PARENTAL_RATING, true}));
         },
         "MdsExpandOrderBy (5, 12, true)", "(true,)", "1", "0",
         searches + "ExpandOrderBy(uint32_t, std::pair<EQueryType, bool>)"},
        {flag([&](bool& added) { return m_searches.AddConstraints(5, 6, added); }),
         "MdsAddConstraints (5, 6)", "(false, true)", "1 0", "0 1",
         searches + "AddConstraints(uint32_t, uint32_t, bool&)"},
        {[&] { return Text(m_searches.RemoveConstraints(5, E_QUERY_CHANNEL_ID)); },
         "MdsRemoveConstraints (5, 7)", "(true,)", "1", "0",
         searches + "RemoveConstraints(uint32_t, EQueryType)"},
        {[&] { return Text(m_searches.ClearConstraints(5)); }, "MdsClearConstraints (5,)", "(true,)", "1",
         "0", searches + "ClearConstraints(uint32_t)"},
        {flag([&](bool& set) { return m_searches.SetQueryWindow(5, -1, 8, set); }),
         "MdsSetQueryWindow (5, -1, 8)", "(false, true)", "1 0", "0 1",
         searches + "SetQueryWindow(uint32_t, int, int, bool&)"},

        {[&] { return Text(m_queries.Retain(8)); }, "QcRetain (8,)", "(true,)", "1", "0",
         "virtual bool " + queries + "Retain(uint32_t)"},
        {[&] { return m_queries.Release(8), ""; }, "QcRelease (8,)", "()", "", "",
         "virtual void " + queries + "Release(uint32_t)"},
        {[&] { return Text(m_queries.Add(E_QUERY_ANY)); }, "QcAddOp (0,)", "(9,)", "9", "0",
         "virtual uint32_t " + queries + "Add(EQueryType)"},
        {[&] { return Text(m_queries.Add(E_QUERY_DURATION, E_MODE_LESS, kLargest)); },
         "QcAddDataMode (6, 4, 4294967295)", "(9,)", "9", "0",
         "virtual uint32_t " + queries + "Add(EQueryType, EQueryMode, uint32_t)"},
        {[&] { return Text(m_queries.Add(E_QUERY_NAME, E_MODE_CONTAINS, "news \xff"s)); },
         "QcAddDataModeStr (1, 6, 'news \uFFFD')", "(9,)", "9", "0",
         "virtual uint32_t " + queries + "Add(EQueryType, EQueryMode, const std::string&)"},
        {[&] {
             return Text(m_queries.Add(TConstraints{{E_QUERY_NAME, "a"s}}));
         },
         "QcAddConstraints ([(1, 0, 'a', 0)],)", "(9,)", "9", "0",
         "virtual uint32_t " + queries + "Add(const TConstraints&)"},
        {two([&](uint32_t& id) { return m_queries.And(1, 2, id); }), "QcAnd (1, 2)", "(3, true)", "1 3",
         "0 77", "virtual bool " + queries + "And(uint32_t, uint32_t, uint32_t&)"},
        {two([&](uint32_t& id) { return m_queries.Or(2, 1, id); }), "QcOr (2, 1)", "(3, true)", "1 3", "0 77",
         "virtual bool " + queries + "Or(uint32_t, uint32_t, uint32_t&)"},
        {two([&](uint32_t& id) { return m_queries.Not(1, id); }), "QcNot (1,)", "(3, false)", "0 3", "0 77",
         "virtual bool " + queries + "Not(uint32_t, uint32_t&)"},

        {[&] { return Text(m_results.Retain(10)); }, "SrRetain (10,)", "(true,)", "1", "0",
         results + "Retain(uint32_t)"},
        {[&] { return m_results.Release(10), ""; }, "SrRelease (10,)", "()", "", "",
         "virtual void CSearchResultsCacheWK::Release(uint32_t)"},
        {[&] { return Text(m_results.Add(5)); }, "SrAdd (5,)", "(10,)", "10", "0",
         "virtual uint32_t CSearchResultsCacheWK::Add(uint32_t)"},
        {two([&](uint32_t& id) { return m_results.Parent(10, id); }), "SrParent (10,)", "(5, true)", "1 5",
         "0 77", results + "Parent(uint32_t, uint32_t&) const"},
        {[&] {
             bool complete = false;
             uint32_t offset = 1;
             uint32_t count = 2;
             uint32_t size = 3;
             const bool result = m_results.QueryResults(10, complete, offset, count, size);
             return Text(result, complete, offset, count, size);
         },
         "SrQueryResults (10,)", "(true, 11, 12, 13, true)", "1 1 11 12 13", "0 0 1 2 3",
         results + "QueryResults(uint32_t, bool&, uint32_t&, uint32_t&, uint32_t&) const"},
        {[&] {
             bool there = false;
             uint32_t programme = 77;
             const bool result = m_results.ItemAtIndex(10, 4, there, programme);
             return Text(result, there, programme);
         },
         "SrItemAtIndex (10, 4)", "(true, 14, true)", "1 1 14", "0 0 77",
         results + "ItemAtIndex(uint32_t, uint32_t, bool&, uint32_t&) const"},
        {flag([&](bool& set) { return m_results.SetQueryWindow(10, 0, -1, set); }),
         "SrSetQueryWindow (10, 0, -1)", "(false, true)", "1 0", "0 1",
         results + "SetQueryWindow(uint32_t, int, int, bool&)"},

        {[&] { return Text(m_programmes.Retain(15)); }, "PcRetain (15,)", "(true,)", "1", "0",
         "virtual bool CProgrammeCacheWK::Retain(uint32_t)"},
        {[&] { return m_programmes.Release(15), ""; }, "PcRelease (15,)", "()", "", "",
         "virtual void CProgrammeCacheWK::Release(uint32_t)"},
        {[&] {
             uint32_t channel = 1, event = 2, start = 3, duration = 4, rating = 5;
             std::string name = "n", desc = "d", crid = "c";
             const bool result =
                 m_programmes.Get(15, &channel, &event, &name, &desc, &crid, &start, &duration, &rating);
             return Text(result, channel, event, name, desc, crid, start, duration, rating);
         },
         "PcGet (15,)", "(16, 17, 'name', 'desc', 'crid://x', 18, 19, 20, true)",
         "1 16 17 name desc crid://x 18 19 20", "0 1 2 n d c 3 4 5",
         "virtual bool CProgrammeCacheWK::Get(uint32_t, uint32_t*, uint32_t*, std::string*, std::string*, "
         "std::string*, uint32_t*, uint32_t*, uint32_t*)"},
    };
}

TEST_F(AMetadataSearchClient, SendsReadsAndFailsEachOperationAsTheWireSays) {
    const std::vector<Operation> operations = Operations();
    EXPECT_EQ(operations.size(), 36U);
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.wire);
        const std::string method = operation.wire.substr(0, operation.wire.find(' '));
        m_service.Reply(method, operation.answer);
        LogCapture::Clear();
        EXPECT_EQ(operation.call(), operation.given);
        EXPECT_THAT(m_service.TakeCalls(1), ElementsAre(operation.wire));
        EXPECT_EQ(LogCapture::Count(operation.signature), 1) << "the trace line";
        EXPECT_EQ(LogCapture::Errors(), 0);

        m_service.Fail(method, "not today");
        EXPECT_EQ(operation.call(), operation.failed);
        EXPECT_TRUE(WaitFor([] { return LogCapture::Errors() == 1; }));
        EXPECT_EQ(
            LogCapture::Count(operation.signature +
                              " failed \"GDBus.Error:org.freedesktop.DBus.Error.Failed: not today\" with "
                              "error code 0"),
            1);
        (void)m_service.TakeCalls();
    }
}

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

TEST_F(AMetadataSearchClient, AsksEvenWhenNoFieldOfAProgrammeIsWanted) {
    m_service.Reply("PcGet", "(1, 2, '', '', '', 3, 4, 5, true)");
    EXPECT_TRUE(m_programmes.Get(9, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
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
