// Channels and their list as a page meets them, and what of the receiver's cache they hold.

#include <future>

#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "InjectedBundle/gen/js/jiChannelList.h"
#include "JavaScript/Src/CChannelImpl.h"
#include "JavaScript/Src/CChannelListImpl.h"
#include "Tests/Unit/TelevisionPage.h"

namespace OipfJavaScript {
namespace {

using testing::ElementsAre;

// Neighbours of one type have different values, so that none can stand for another.
constexpr char kRecord[] =
    "('name', 'long', 'desc', 1, 2, 3, 4, 5, true, 'ccid', false, true, false, true, 6, 'ip', 7, true)";
constexpr char kAbsent[] =
    "('', '', '', 12, 4294967295, 4294967295, 4294967295, 4294967295, false, '', false, false, false, false, "
    "4294967295, '', 4294967295, false)";

class AChannel : public TelevisionPage {};

TEST_F(AChannel, ReadsEveryFieldOfItsRecordInTheOrderOfTheWire) {
    cache.Reply("Retain", "(true,)");
    cache.Reply("GetChannelInfo", kRecord);
    api.Reply("GetChannelList", "([uint32 9],)");
    Eval("var channel = PrivateObjectFactory.createChannelConfig().channelList[0]");
    EXPECT_EQ(Eval(R"((c => [c.name, c.longName, c.description, c.idType, c.nid, c.onid, c.tsid, c.sid,
        c.channelType === Channel.TYPE_RADIO, c.ccid, c.authorised, c.hidden, c.locked, c.manualBlock,
        c.channelMaxBitRate, c.ipBroadcastID, c.majorChannel].join())(channel))"),
              "name,long,desc,1,2,3,4,5,true,ccid,false,true,false,true,6,ip,7");
    EXPECT_EQ(Value("channel.genre"), "null");
    EXPECT_EQ(LogCapture::Errors(), 0);
}

TEST_F(AChannel, StaysUsableWhenTheCacheDoesNotKnowIt) {
    cache.Reply("GetChannelInfo", kAbsent);
    api.Reply("GetChannelList", "([uint32 9, 0],)");
    Eval("var list = PrivateObjectFactory.createChannelConfig().channelList");
    EXPECT_EQ(LogCapture::Count("ChannelCache does not know channel with id 9d."), 1);
    EXPECT_EQ(LogCapture::Count("Got channel info FAIL (ID 9)"), 1);
    EXPECT_THAT(cache.TakeCalls(), ElementsAre("Retain (9,)", "GetChannelInfo (9,)")) << "0 names no entry";
    ExpectAll("undefined", {"list[0].nid", "list[1].nid"});
    EXPECT_EQ(Value("list[1].genre"), "null");
    EXPECT_EQ(Value("[list[0].onid, list[0].majorChannel].join()"), "string 4294967295,4294967295");
    EXPECT_EQ(Value("(c => [c.ccid, c.idType, c.channelType, c.onid, c.name, c.authorised, c.dsd].join())"
                    "(list[1])"),
              "string ccid://0.0,12,0,4294967295,,false,");
    (void)cache.TakeCalls();
    { const CChannelImpl unknown(uint32_t{9}); }
    EXPECT_THAT(cache.TakeCalls(3), ElementsAre("Retain (9,)", "GetChannelInfo (9,)", "Release (9,)"));
}

TEST_F(AChannel, IsReadWhileItIsRetained) {
    cache.Delay("Retain", 60000);
    auto calls = std::async(std::launch::async, [this] {
        auto seen = cache.TakeCalls(2);
        cache.Stop();
        return seen;
    });
    { const CChannelImpl unanswered(uint32_t{9}); }
    EXPECT_THAT(calls.get(), ElementsAre("Retain (9,)", "GetChannelInfo (9,)"));
    EXPECT_EQ(LogCapture::Count("ChannelCache does not know channel with id 9d."), 1);
    cache.Start();
}

TEST_F(AChannel, IsRetainedByEveryCopyAndReleasedByEveryEnd) {
    cache.Reply("Retain", "(true,)");
    cache.Reply("GetChannelInfo", kRecord);
    {
        std::vector<jiChannel> channels;
        channels.reserve(1);
        channels.emplace_back(std::make_unique<CChannelImpl>(uint32_t{9}));
        const auto list = MakeBinding<jiChannelList>(std::move(channels));
        const jiChannelList copy(*list);
        const auto found = list->Implementation().GetChannel("ip");
        ASSERT_NE(found, nullptr);
        jiChannel assigned(std::make_unique<CChannelImpl>(12, "dsd", 5));
        assigned = *found;
        EXPECT_EQ(assigned.Implementation().CacheId(), 9U);
    }
    const auto calls = cache.TakeCalls(9);
    EXPECT_EQ(Count(calls, "Retain (9,)"), 4U);
    EXPECT_EQ(Count(calls, "Release (9,)"), 4U);
    EXPECT_EQ(Count(calls, "GetChannelInfo (9,)"), 1U) << "a copy asks for nothing";
    {
        const CChannelImpl channel(9);
        cache.Stop();
        cache.Start();
        (void)IJSChannelCacheWK::GetInstance()->Retain(1);
        (void)cache.TakeCalls();
        const CChannelImpl copy(channel);
    }
    (void)IJSChannelCacheWK::GetInstance()->Retain(1);
    EXPECT_THAT(cache.TakeCalls(), testing::ElementsAre("Retain (1,)"))
        << "9 is another channel now, or none";
}

class AChannelList : public TelevisionPage {
 protected:
    AChannelList() {
        std::vector<jiChannel> channels;
        channels.reserve(3);
        for (const int sid : {10, 11, 10})
            channels.emplace_back(std::make_unique<CChannelImpl>(Channel(sid)));
        page.main.SetGlobal("list", MakeObject<jiChannelList>(page.main.context, std::move(channels)));
    }

    CChannelImpl Channel(int32_t sid) { return CChannelImpl(++m_idType, 1, 2, sid); }
    int32_t m_idType = 10;
};

TEST_F(AChannelList, IsReadByItemAndByIndexAndEndsWhereItEnds) {
    EXPECT_EQ(Value("[list.length, list[1].sid, list.item(1).sid, list[1] === list[1]].join()"),
              "string 3,11,11,false");
    ExpectAll("undefined", {"list.item(3)", "list[3]"});
    for (const char* bad : {"list.item('0')", "list.item()"})
        EXPECT_EQ(Thrown(bad), kBadArguments) << bad;
    EXPECT_THAT(cache.TakeCalls(), ElementsAre()) << "these channels are not of the cache";
}

TEST_F(AChannelList, FindsTheFirstOfSeveralByTriplet) {
    EXPECT_EQ(Value("list.getChannelByTriplet(1, 2, 10).idType"), "number 11");
    EXPECT_EQ(Value("list.getChannelByTriplet(1, 2, 11, 7).idType"), "number 12");
    EXPECT_EQ(Value("list.getChannelByTriplet(1, 2, 12)"), "undefined");
    EXPECT_EQ(Value("list.getChannelByTriplet(1, NaN, 10)"), "null");
    EXPECT_EQ(Value("list.getChannel('CCID://0.0')"), "undefined") << "compared byte for byte";
    EXPECT_EQ(Value("list.getChannel('ccid://0.0').idType"), "number 11");
}

TEST_F(AChannelList, IsOutlivedByTheChannelsThatAPageTookFromIt) {
    Eval("var kept = list[1]; list = null;");
    page.main.CollectGarbage();
    EXPECT_EQ(Value("kept.sid"), "number 11");
}

}  // namespace
}  // namespace OipfJavaScript
