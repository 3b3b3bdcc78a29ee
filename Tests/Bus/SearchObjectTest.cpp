// Searches from a page's call to the simulated receiver and back.

#include <algorithm>

#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "IPC/DBUS/Src/MetadataSearchWK_DBus.h"
#include "Tests/Bus/ReceiverFixture.h"
#include "Tests/Unit/FakeBrowser.h"

namespace {

using ReceiverTest::writeFile;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

class APageThatSearches : public ReceiverTest::RunningReceiver, protected TestedPage {
 protected:
    [[nodiscard]] std::string scenario() const override {
        return writeFile("guide.json", R"({
          "clock": {"fixed_utc": 1700000000},
          "search": {"duration_ms": 10},
          "broadcast": {"current_channel": 1, "channels": [
            {"id": 1, "name": "One", "id_type": "ID_DVB_T", "ccid": "ccid://1", "onid": 1, "tsid": 2, "sid": 3,
             "programmes": [
              {"event_id": 11, "id": "crid://tv/11", "name": "Evening News", "description": "The day",
               "start_minutes": -10, "duration_minutes": 30, "parental_rating": 12},
              {"event_id": 12, "id": "crid://tv/12", "name": "Film", "start_minutes": 20,
               "duration_minutes": 90},
              {"event_id": 13, "id": "crid://tv/13", "name": "Late news", "start_minutes": 110,
               "duration_minutes": 10}]},
            {"id": 2, "name": "Two", "id_type": "ID_DVB_T", "ccid": "ccid://2", "onid": 1, "tsid": 2, "sid": 4,
             "programmes": [
              {"event_id": 21, "id": "crid://tv/21", "name": "News in brief", "start_minutes": 0,
               "duration_minutes": 5}]},
            {"id": 3, "name": "Three", "id_type": "ID_DVB_T", "ccid": "ccid://3", "onid": 1, "tsid": 2, "sid": 5,
             "programmes": [
              {"event_id": 31, "id": "crid://tv/31", "name": "No news", "start_minutes": 0,
               "duration_minutes": 60}]}]},
          "capabilities": {"profiles": [{"profile": 0, "major": 1, "minor": 2, "micro": 1}]}
        })");
    }

    void SetUp() override {
        RunningReceiver::SetUp();
        // The clients outlive the receiver of the test before; they learn in the main loop who has the names
        // now.
        ASSERT_TRUE(WaitFor([] {
            uint32_t id = 0;
            IJSChannelCacheWK::GetInstance()->Retain(0);
            return CDAEBrowserAPIWK::GetInstance()->CurrentChannel(id) &&
                   IQueryCacheWK::GetInstance()->Add(TConstraints()) != 0;
        }));
        Eval(R"(
            var log = [];
            var manager = PrivateObjectFactory.createSearchManagerObject();
            var config = manager.getChannelConfig();
            function searchFor(query) {
                var search = manager.createSearch(1);
                if (query) search.setQuery(query(search));
                return search;
            }
            var named = text => search => search.createQuery('Programme.name', 6, text);
            var titles = results => Array.from(results, p => p.name).join('|');
            manager.onMetadataSearch = (search, state) => log.push((search.label || '') + state);
        )");
        ForgetCalls();
    }

    void TearDown() override {
        page.main.Navigate();
        RunningReceiver::TearDown();
    }

    [[nodiscard]] testing::AssertionResult Logs(const std::string& expected) {
        if (WaitFor([&] { return Eval("log.join()") == expected; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "the log is " << Eval("log.join()") << ", not " << expected;
    }
    // What a search for the expression's query finds, as titles.
    std::string Finds(const std::string& query) {
        return FindsOf("var found = searchFor(s => " + query + ")", "found");
    }
    // What the search finds that a script has prepared.
    std::string FindsOf(const std::string& script, const std::string& search = "s") {
        EXPECT_EQ(Eval("log = []; " + script + "; " + search + ".result.getResults(0, 99)"), "false");
        EXPECT_TRUE(Logs("0"));
        return Eval("titles(" + search + ".result)");
    }

    // The calls to the search interface, as "MdsAdd(1,)".
    std::vector<std::string> Calls() {
        std::vector<std::string> searches;
        const std::string prefix = "IMetaDataSearch.";
        for (const auto& call : calls()) {
            if (call.starts_with(prefix))
                searches.push_back(call.substr(prefix.size()));
        }
        return searches;
    }
    // How many calls there were of a method.
    size_t Count(const std::string& method) {
        return static_cast<size_t>(std::ranges::count_if(
            Calls(), [&](const std::string& call) { return call.starts_with(method + "("); }));
    }
    void ForgetCalls() { ASSERT_TRUE(control("ClearCalls").value); }
    void SearchesTake(const std::string& milliseconds) { setWorld("/search/duration_ms", milliseconds); }
    // When a later call has been answered, all that was sent before has arrived.
    static void LetEverythingArrive() { (void)CDAEBrowserAPIWK::GetInstance()->IsTrusted(); }
    [[nodiscard]] bool ReleasedEverything() {
        LetEverythingArrive();
        for (const char* cache : {"Mds", "Qc", "Sr"}) {
            if (Count(std::string(cache) + "Retain") != Count(std::string(cache) + "Release"))
                return false;
        }
        return true;
    }
};

TEST_F(APageThatSearches, HearsOfTheEndAndReadsWhatWasFound) {
    Eval(R"(
        log = [];
        manager.onMetadataSearch = null;
        var search = searchFor(named('NEWS'));
        search.label = 'mine';
        manager.onMetadataSearch = function(s, state) { log.push(s === search, state, s.label, this === manager); };
        manager.addEventListener('MetadataSearch', e => log.push(e.search === search, e.state, e.type));
        var atOnce = [search.result === search.result, search.result.length, search.result[0],
                      search.result.getResults(0, 2), search.result.totalSize, log.length].join();
    )");
    EXPECT_EQ(Eval("atOnce"), "true,0,,false,0,0") << "nothing is there, or told, before the page gives way";
    EXPECT_TRUE(Logs("true,0,mine,true,true,0,MetadataSearch"));
    EXPECT_EQ(Eval("[search.result.length, search.result.offset, search.result.totalSize].join()"), "2,0,4");
    EXPECT_EQ(Eval("var p = search.result[0]; [p.name, p.description, p.startTime, p.duration, p.channelID, "
                   "p.programmeID, p.programmeIDType, p.parentalRating[0].value].join()"),
              "Evening News,The day,1699999400,1800,ccid://1,crid://tv/11,0,12");
    EXPECT_EQ(Value("search.result.item(1).name"), "string News in brief");
    EXPECT_EQ(Value("search.result[0] === search.result[0]"), "boolean false");
    ExpectAll("undefined", {"search.result[2]", "search.result.item(2)", "search.result.item(-1)"});
    EXPECT_EQ(Count("PcGet"), 2U) << "what was read once is not asked for again";

    Eval("log = []; search.result.getResults(3, 9)");
    EXPECT_EQ(Value("search.result.length"), "number 0") << "what was fetched before is dropped";
    EXPECT_TRUE(Logs("true,0,mine,true,true,0,MetadataSearch"));
    EXPECT_EQ(Eval("[titles(search.result), search.result.offset, search.result.totalSize].join()"),
              "Late news,3,4");
    EXPECT_EQ(Count("StartSearch"), 1U) << "another part of the same results needs no new search";
}

TEST_F(APageThatSearches, CombinesConditions) {
    EXPECT_EQ(Finds("s.createQuery('Programme.name', 0, 'Film')"), "Film");
    EXPECT_EQ(Finds("s.createQuery('Programme.duration', 2, 3600)"), "Film");
    EXPECT_EQ(Finds("s.createQuery('Programme.duration', 4, '600')"), "News in brief");
    EXPECT_EQ(Finds("s.createQuery('Programme.programmeID', 0, 'CRID://TV/31')"), "No news");
    EXPECT_EQ(Finds("s.createQuery('Programme.channelID', 0, config.channelList[1].ccid)"), "News in brief");
    EXPECT_EQ(Finds("named('news')(s).and(s.createQuery('Programme.startTime', 3, 1700000000))"),
              "News in brief|No news|Late news");
    EXPECT_EQ(Finds("s.createQuery('Programme.longDescription', 0, '')"
                    ".and(s.createQuery('Programme.programmeIDType', 0, 0))"
                    ".and(s.createQuery('Programme.parentalRating', 3, 12))"),
              "Evening News");
    EXPECT_EQ(Finds("named('film')(s).or(named('brief')(s))"), "News in brief|Film");
    EXPECT_EQ(Finds("named('news')(s).not()"), "Film");
    EXPECT_EQ(Finds("named('')(s)"), "Evening News|News in brief|No news|Film|Late news");
    EXPECT_EQ(
        Value("found.query === found.query && found.query.FIELD_NAME + found.query.COMPARISON_CONTAINS"),
        "number 7");
}

TEST_F(APageThatSearches, GetsNullForWhatCannotBeMadeAndExceptionsForWrongCalls) {
    Eval("var s = manager.createSearch(2)");
    EXPECT_EQ(Eval("[s.searchTarget, s.TARGET_ON_DEMAND, s.query, s.result.STATE_IDLE].join()"), "2,2,,3");
    ExpectAll("null",
              {"manager.createSearch(0)", "manager.createSearch(3)", "manager.createSearch(NaN)",
               "s.createQuery('', 0, 'x')", "s.createQuery('name', 0, 'x')",
               "s.createQuery('Programme.Name', 0, 1)", "s.createQuery('Programme.name', 7, 'x')",
               "s.createQuery('Programme.name', -1, 'x')", "s.createQuery('Programme.name', NaN, 'x')",
               "named('x')(s).and(config)", "s.setQuery(config)", "s.query"});
    EXPECT_EQ(Count("QcAddDataModeStr"), 1U) << "the receiver is not asked for the others";
    for (const char* call :
         {"manager.createSearch()", "manager.createSearch('1')", "s.setQuery()", "s.setQuery(1)",
          "s.setQuery(named('x')(s), 1)", "s.createQuery('Programme.name', 0)",
          "s.createQuery('Programme.name', 0, true)", "s.addChannelConstraint(1)",
          "s.findProgrammesFromStream(null, 1)", "s.result.getResults(1)", "s.result.getResults('0', 1)"})
        EXPECT_THAT(Value(call), StartsWith("throws")) << call;
    Eval("s.result.getResults(0, 10)");
    EXPECT_TRUE(Logs("0"));
    EXPECT_EQ(Value("s.result.totalSize"), "number 0") << "nothing is on demand here";
}

TEST_F(APageThatSearches, ChoosesChannels) {
    const auto on = [this](const std::string& constraints) {
        return FindsOf("var s = manager.createSearch(1), list = config.channelList; " + constraints);
    };
    EXPECT_EQ(on("s.addChannelConstraint(list[1])"), "News in brief");
    EXPECT_EQ(on("s.addChannelConstraint(list[1]); s.addChannelConstraint(list[2])"),
              "News in brief|No news");
    EXPECT_EQ(on("s.addChannelConstraint(list)"), "Evening News|News in brief|No news|Film|Late news");
    EXPECT_EQ(on("s.addChannelConstraint(list[1]); s.addChannelConstraint(null)"),
              "Evening News|News in brief|No news|Film|Late news");
    Eval("var tv = PrivateObjectFactory.createVideoBroadcastObject()");
    EXPECT_EQ(on("s.addChannelConstraint(tv.createChannelObject(12, 1, 2, 99))"), "") << "an unknown channel";
    // An object of another class is neither.
    ExpectAll("null", {"s.addChannelConstraint(config)", "s.addChannelConstraint({})"});
}

TEST_F(APageThatSearches, ReadsTheScheduleOfAChannelFromWhatIsOn) {
    const auto schedule = [this](const std::string& arguments) {
        Eval("log = []; s.findProgrammesFromStream(config.channelList[0], " + arguments +
             "); s.result.getResults(0, 9)");
        EXPECT_TRUE(WaitFor([this] { return Eval("log[log.length - 1]") == "0"; }));
        return Eval("titles(s.result)");
    };
    // What was set before counts no more.
    Eval("var s = searchFor(named('brief')); s.addChannelConstraint(config.channelList[1])");
    EXPECT_EQ(schedule("null"), "Evening News|Film|Late news");
    EXPECT_EQ(schedule("null, 2"), "Evening News|Film");
    EXPECT_EQ(Value("s.result.totalSize"), "number 2") << "an upper bound for all of them";
    EXPECT_EQ(schedule("1700001199"), "Evening News|Film|Late news");
    EXPECT_EQ(schedule("1700001200"), "Film|Late news");
    EXPECT_EQ(schedule("1700001200, 1"), "Film");
    EXPECT_EQ(Value("s.query.COMPARISON_EQUAL"), "number 0");
    // A query of the page's own is not bounded, but stays on the channel.
    Eval("log = []; s.setQuery(named('news')(s)); s.result.getResults(0, 9)");
    EXPECT_TRUE(Logs("3,0"));
    EXPECT_EQ(Eval("titles(s.result)"), "Evening News|Late news");
}

TEST_F(APageThatSearches, StopsARunningSearch) {
    SearchesTake("60000");
    Eval("var s = searchFor(named('news')); s.result.abort(); s.result.getResults(0, 9)");
    EXPECT_TRUE(WaitFor([this] { return Count("SrQueryResults") > 1; }));
    Eval("s.result.abort()");
    EXPECT_EQ(Value("log.length"), "number 0") << "told later";
    EXPECT_TRUE(Logs("3"));
    EXPECT_EQ(Count("AbortSearch"), 1U) << "an idle search has nothing to stop";
    const size_t asked = Count("SrQueryResults");

    SearchesTake("10");
    EXPECT_EQ(FindsOf("s.findProgrammesFromStream(config.channelList[0], null, 1); s.result.abort()"),
              "Evening News|News in brief|No news|Film|Late news")
        << "all that was set is gone, idle or not";
    EXPECT_EQ(Value("s.query"), "null");
    const size_t askedThen = Count("SrQueryResults");
    EXPECT_GT(askedThen, asked);
    Eval("log = []; s.result.abort()");
    EXPECT_EQ(Eval("[s.result.length, s.result[0]].join()"), "0,");
    EXPECT_TRUE(Logs("3"));
    EXPECT_EQ(Finds("named('film')(s)"), "Film");
}

TEST_F(APageThatSearches, DropsTheResultsWhenWhatIsLookedForChanges) {
    Eval("var s = searchFor(named('film'))");
    for (const char* change :
         {"s.setQuery(named('news')(s))", "s.addChannelConstraint(config.channelList[2])",
          "s.addChannelConstraint(null)", "s.findProgrammesFromStream(config.channelList[0], null)"}) {
        Eval("log = []; s.result.getResults(0, 9)");
        EXPECT_TRUE(Logs("0")) << change;
        Eval("log = []; " + std::string(change) + "; log.push(s.result.length)");
        EXPECT_TRUE(Logs("0,3")) << change;
        Eval("log = []; " + std::string(change));
        EXPECT_TRUE(Logs("")) << "it was idle already";
    }
    EXPECT_EQ(Count("CancelSearch"), 4U);
    // The last of several calls counts, and is told once.
    Eval("log = []; s.setQuery(named('news')(s)); s.result.getResults(0, 9); s.result.getResults(1, 1)");
    EXPECT_TRUE(Logs("0"));
    EXPECT_EQ(Eval("[s.result.length, s.result.offset].join()"), "1,1");
}

TEST_F(APageThatSearches, GetsNoQueryThatIsNotRetainedAndRemembersNoneThatIsRefused) {
    Eval("var s = searchFor(named('news')), q = named('x')(s)");
    ASSERT_TRUE(control("FailMethod", "('IMetaDataSearch.QcRetain', 'no')").value);
    EXPECT_EQ(Value("q.not()"), "null");
    ASSERT_TRUE(control("ResetMethods").value);
    ASSERT_TRUE(control("FailMethod", "('IMetaDataSearch.MdsSetQuery', 'no')").value);
    EXPECT_EQ(Value("[s.query].concat(s.setQuery(named('x')(s)), s.query, "
                    "s.findProgrammesFromStream(config.channelList[0], 1), s.query)"
                    ".filter((q, i, all) => q === all[0]).length"),
              "number 3");
}

TEST_F(APageThatSearches, RunsSeveralSearchesAtOnce) {
    SearchesTake("100");
    Eval(R"(
        var first = searchFor(named('film')), second = searchFor(named('brief')), third = searchFor(named('no news'));
        first.label = 'first '; second.label = 'second '; third.label = 'third ';
        manager.onMetadataSearch = (search, state) => {
            log.push(search.label + state + (search.result.length ? ' ' + search.result[0].name : ''));
            log.sort();
        };
        [first, second, third].forEach(search => search.result.getResults(0, 9));
        second.result.abort();
    )");
    EXPECT_TRUE(Logs("first 0 Film,second 3,third 0 No news"));
}

TEST_F(APageThatSearches, IsToldOfASearchThatItKeepsNoMore) {
    Eval("(s => { s.label = 'kept '; s.result.getResults(0, 1); })(searchFor(named('film')))");
    page.main.CollectGarbage();
    EXPECT_TRUE(Logs("kept 0"));
    Eval("log = []; var results = (s => (s.label = 'again ', s.result))(searchFor())");
    page.main.CollectGarbage();
    Eval("results.getResults(0, 1); results = null");
    EXPECT_TRUE(Logs("again 0"));
    // Then it goes, with all it had at the receiver.
    EXPECT_TRUE(WaitFor([this] {
        page.main.CollectGarbage();
        return ReleasedEverything();
    }));
}

TEST_F(APageThatSearches, GivesBackWhatItRetained) {
    Eval(R"((function() {
        var s = searchFor(s => named('news')(s).and(named('x')(s).not()).or(named('film')(s)));
        s.addChannelConstraint(config.channelList);
        s.findProgrammesFromStream(config.channelList[0], null);
        s.setQuery(named('news')(s));
        s.result.getResults(0, 9);
    })())");
    EXPECT_TRUE(Logs("0"));
    EXPECT_TRUE(WaitFor([this] {
        page.main.CollectGarbage();
        return ReleasedEverything();
    }));
    EXPECT_EQ(Count("QcRetain"), 10U) << "eight queries of the page's, and the constraints of two calls";
    EXPECT_EQ(Count("MdsRetain") + Count("SrRetain"), 2U);
    for (const char* kind : {"searches", "search_results"})
        EXPECT_EQ(world(std::string("/state/") + kind), "0") << kind;
}

TEST_F(APageThatSearches, MayLoseItsManagerWhileASearchRuns) {
    Eval(R"(manager.onMetadataSearch = null; var s = searchFor(named('film'));
            s.result.getResults(0, 9); manager = null;)");
    page.main.CollectGarbage();
    EXPECT_TRUE(WaitFor([this] { return Value("s.result.length") == "number 1"; }));
    EXPECT_EQ(Eval("titles(s.result)"), "Film");
}

TEST_F(APageThatSearches, LeavesNothingBehindWhenItIsLeft) {
    SearchesTake("60000");
    Eval(R"(var query = named('x')(manager.createSearch(1)), s = searchFor(named('film'));
            s.result.getResults(0, 9); var other = searchFor(named('news')); other.result.abort();)");
    EXPECT_TRUE(WaitFor([this] { return Count("SrQueryResults") > 0; }));
    EXPECT_FALSE(ReleasedEverything());
    page.main.Navigate();
    EXPECT_TRUE(ReleasedEverything()) << "whether or not the collector has been there";
    EXPECT_EQ(Count("CancelSearch"), 1U);
    EXPECT_EQ(control("GetWorld", "('/state/searches',)").text(), "('0',)");
    const size_t asked = Count("SrQueryResults");
    SearchesTake("10");
    Eval(R"(var log = [], manager = PrivateObjectFactory.createSearchManagerObject();
            manager.onMetadataSearch = (s, state) => log.push(state);
            manager.createSearch(1).result.getResults(0, 9))");
    EXPECT_TRUE(Logs("0"));
    EXPECT_GT(Count("SrQueryResults"), asked);
    EXPECT_THAT(Calls(), Not(Contains("CancelSearch(0,)")));
}

TEST_F(APageThatSearches, KeepsObjectsOfAFrameThatIsLeftFromDoingAnything) {
    FakeFrame& frame = page.AddFrame();
    frame.Eval(R"(
        var manager = PrivateObjectFactory.createSearchManagerObject(), s = manager.createSearch(1),
            q = s.createQuery('Programme.name', 6, 'x'); s.setQuery(q); s.result.getResults(0, 1);)");
    // A script of the main frame holds on to them.
    JSObjectRef global = JSContextGetGlobalObject(frame.context);
    page.main.SetGlobal("theirs", global);
    frame.Navigate();
    LetEverythingArrive();
    ForgetCalls();
    EXPECT_EQ(Eval("[theirs.q.not(), theirs.s.result.getResults(0, 1), theirs.s.result.abort(), "
                   "theirs.s.addChannelConstraint(null), theirs.s.result.length, theirs.s.result[0]].join()"),
              ",false,,,0,");
    EXPECT_THAT(Calls(), ElementsAre());
    page.main.SetGlobal("theirs", JSValueMakeNull(page.main.context));
}

}  // namespace
