// Programmes, their ratings and their descriptors as a page meets them.

#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiParentalRating.h"
#include "InjectedBundle/gen/js/jiParentalRatingCollection.h"
#include "JavaScript/Src/CParentalRatingCollectionImpl.h"
#include "JavaScript/Src/CParentalRatingImpl.h"
#include "Tests/Unit/TelevisionPage.h"

namespace OipfJavaScript {
namespace {

using testing::ElementsAre;

class AProgramme : public TelevisionPage {
 protected:
    AProgramme() {
        player.Reply("GetChannel", "(9, true)");
        cache.Reply("GetChannelInfo",
                    "('', '', '', 0, 0, 0, 0, 0, false, 'ccid://9', false, false, false, false, 0, "
                    "'', 0, true)");
        api.Reply("GetProgCollection",
                  "([('News', 'Of the day', 1700000000, 1800, 12, 70000, 'CRID://x/1'), "
                  "('Talk', '', 4294967295, 0, 0, 7, 'dvb://1.2.3;7')],)");
        Eval("var programmes = tv.programmes");
    }
};

TEST_F(AProgramme, IsReadFromTheReceiversCollection) {
    EXPECT_THAT(api.TakeCalls(), ElementsAre("IsBroadcastRelated ()", "GetProgCollection (9,)"));
    EXPECT_EQ(Value("programmes.length"), "number 2");
    EXPECT_EQ(Value("programmes[2]"), "undefined");
    Eval(R"(const show = p => [p.name, p.longName, p.description, p.startTime, p.duration, p.channelID,
                               p.programmeID, p.programmeIDType, p.parentalRating.length].join())");
    EXPECT_EQ(Value("show(programmes[0])"),
              "string News,,Of the day,1700000000,1800,ccid://9,CRID://x/1,0,1");
    EXPECT_EQ(Value("show(programmes.item(1))"), "string Talk,,,4294967295,0,ccid://9,dvb://1.2.3;7,1,0");
    for (const char* unknown : {"longName", "longDescription", "episode", "totalEpisodes"})
        EXPECT_EQ(Value("programmes[0]." + std::string(unknown)), "undefined") << unknown;
    EXPECT_EQ(Value("programmes[0].ID_TVA_CRID + programmes[0].ID_DVB_EVENT"), "number 1");
    EXPECT_EQ(Value("programmes[0].parentalRating[0].name"), "string 12");
    EXPECT_EQ(Value("programmes[0].parentalRating[0].value"), "number 12");
}

TEST_F(AProgramme, HandsOutItsDescriptorsByteByByte) {
    api.Reply("GetProgramDescriptors", "([[byte 0x4d, 0x00, 0xff, 0xe9], @ay []],)");
    (void)api.TakeCalls();
    EXPECT_EQ(Eval("Array.from(programmes[0].getSIDescriptors(0x4D)[0], c => c.charCodeAt(0)).join()"),
              "77,0,255,233");
    EXPECT_EQ(Value("programmes[0].getSIDescriptors(77, 1)[1]"), "string ");
    EXPECT_EQ(Value("programmes[1].getSIDescriptors(77, undefined, 4294967290).length"), "number 2");
    EXPECT_THAT(api.TakeCalls(), ElementsAre("GetProgramDescriptors (9, 4464, 77, -1, -1)",
                                             "GetProgramDescriptors (9, 4464, 77, 1, -1)",
                                             "GetProgramDescriptors (9, 7, 77, -1, -6)"));
    api.Reply("GetProgramDescriptors", "([],)");
    ExpectAll("null", {"programmes[0].getSIDescriptors(77)", "programmes[0].getSIDescriptors(NaN)"});
}

TEST_F(AProgramme, IsMissingWhenTheReceiverDoesNotAnswer) {
    api.Fail("GetProgCollection", "no service information");
    EXPECT_EQ(Value("tv.programmes"), "null");
    EXPECT_EQ(Value("programmes[0].name"), "string News") << "what a page has, it keeps";
}

class AParentalRating : public testing::Test, protected TestedPage {};

TEST_F(AParentalRating, MeansSomethingInTheSchemeOfTheBroadcastOnly) {
    JSContextRef context = page.main.context;
    page.main.SetGlobal("ratings", MakeObject<jiParentalRatingCollection>(context));
    auto unnamed = MakeBinding<jiParentalRating>(12);
    unnamed->Implementation().SetAusNzMode(true);
    page.main.SetGlobal("unnamed", jiParentalRating::CreateObject(context, unnamed.release(), nullptr));
    Eval(R"(ratings.addParentalRating('dvb-si', '8', 8, 1, 'DEU');
            ratings.addParentalRating('mpaa', 'PG', 2, 3, null); var last = ratings[1];)");
    EXPECT_EQ(Value("[ratings.length, ratings[0].name, ratings[0].value, ratings[0].labels, "
                    "ratings[0].region, last.scheme, last.labels, last.region].join()"),
              "string 2,8,8,1,DEU,mpaa,3,");
    ExpectAll("undefined", {"last.name", "last.value", "ratings[2]"});
    EXPECT_EQ(Value("unnamed.name + unnamed.value"), "string 12");
}

}  // namespace
}  // namespace OipfJavaScript
