// How long a search is waited for, and the timer that it is waited with.

#include <algorithm>
#include <functional>

#include "InjectedBundle/Src/JSHbbTVEventHandler.h"
#include "InjectedBundle/Src/MainLoopTimer.h"
#include "JavaScript/Src/SearchSession.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Unit/FakeBrowser.h"

namespace OipfJavaScript {
namespace {

struct SearchService {
    FakeService service{"IMetaDataSearch"};
};

class ASearchSession : public testing::Test, protected SearchService, protected TestedPage {
 protected:
    ASearchSession() {
        service.Reply("MdsRetain", "(true,)");
        service.Reply("MdsGetResults", "(7, true)");
        service.Reply("SrRetain", "(true,)");
        service.Reply("SrSetQueryWindow", "(true, true)");
        service.Reply("SrQueryResults", "(false, 0, 0, 0, true)");
        // The clients outlive the service of the test before; they learn in the main loop who has the name
        // now.
        EXPECT_TRUE(WaitFor([] { return ISearchResultsCacheWK::GetInstance()->Retain(0); }));
        (void)service.TakeCalls();
        Eval("var log = [], target = {}, heard = (search, state) => log.push(search === target, state);");
        manager.t_AddCallbackFunction(context, Object("target"), "MetadataSearch", Object("heard"));
        Begin();
    }
    ~ASearchSession() override {
        page.main.Navigate();
        session.reset();
    }

    void Begin() {
        session = std::make_shared<SearchSession>(context, RetainedId<IMetadataSearchCacheWK>(5), link,
                                                  SearchSession::Patience{1, 4, 40});
        session->SetPageObject(Object("target"));
    }
    JSObjectRef Object(const char* name) {
        const JSStringHandle script(name);
        return JSValueToObject(context, JSEvaluateScript(context, script.Get(), nullptr, nullptr, 1, nullptr),
                               nullptr);
    }
    // Whether the page hears this, and nothing else, of what it asks for.
    [[nodiscard]] bool GetsResults(const std::string& expected) {
        Eval("log = []");
        session->GetResults(0, 1);
        return Hears(expected);
    }
    [[nodiscard]] bool Hears(const std::string& expected) {
        return WaitFor([&] { return Eval("log.join()") == expected; });
    }
    size_t Asked() {
        const auto calls = service.TakeCalls();
        return static_cast<size_t>(std::ranges::count(calls, "SrQueryResults (7,)"));
    }

    static inline std::function<void()> s_again;

    JSGlobalContextRef context = page.main.context;
    JSHbbTVEventHandler manager{"manager"};
    std::shared_ptr<SearchManagerLink> link =
        std::make_shared<SearchManagerLink>(SearchManagerLink{&manager});
    std::shared_ptr<SearchSession> session;
};

TEST_F(ASearchSession, IsAskedMoreAndMoreRarelyAndGivenUpInTheEnd) {
    EXPECT_TRUE(GetsResults("true,4"));
    const std::vector<std::string> calls = service.TakeCalls();
    EXPECT_EQ(std::ranges::count(calls, "SrQueryResults (7,)"), 12)
        << "after 1, 2, and ten times 4 milliseconds";
    EXPECT_EQ(calls.back(), "CancelSearch (5,)");
    EXPECT_EQ(session->Length(), 0U);
    EXPECT_TRUE(GetsResults("true,4"));
    EXPECT_EQ(Asked(), 12U) << "another attempt has as much time";
}

TEST_F(ASearchSession, StopsAtOnceWhenTheEngineTakesItsObjectsAway) {
    session->GetResults(0, 1);
    const std::weak_ptr<SearchSession> observed = session;
    session.reset();
    EXPECT_TRUE(observed.expired());
    EXPECT_EQ(service.TakeCalls(8).back(), "MdsRelease (5,)");
    EXPECT_EQ(Asked(), 0U);
}

// What was refused is not what the page asked for: it gets nothing rather than something else.
TEST_F(ASearchSession, FailsUntilTheReceiverTakesAllOfIt) {
    const TConstraints channel{{E_QUERY_CHANNEL_ID, 1U}};
    const auto setQuery = [this] { session->SetQuery(3); };
    const auto add = [&] { session->AddConstraints(channel); };
    const auto replace = [&] { session->Replace(3, channel, {{E_QUERY_START_TIME, true}}, 2); };
    const auto keep = [this] { session->RemoveConstraints(E_QUERY_NAME); };
    const struct {
        const char* method;
        const char* taken;
        const char* refused;
        std::function<void()> set;
    } cases[] = {
        {"MdsSetQuery", "(true,)", "(false,)", setQuery},
        {"MdsAddConstraints", "(true, true)", "(true, false)", add},
        {"MdsAddConstraints", "(true, true)", "(false, true)", add},
        {"QcAddConstraints", "(8,)", "(0,)", add},
        {"QcRetain", "(true,)", "(false,)", add},
        {"MdsRemoveConstraints", "(true,)", "(false,)", keep},
        {"MdsClearConstraints", "(true,)", "(false,)", replace},
        {"MdsSetOrderBy", "(true,)", "(false,)", replace},
        {"MdsSetQueryWindow", "(true, true)", "(false, true)", replace},
        {"MdsGetResults", "(7, true)", "(7, false)", [] {}},
        {"SrRetain", "(true,)", "(false,)", [] {}},
        {"SrSetQueryWindow", "(true, true)", "(false, true)", [] {}},
    };
    for (const auto& each : cases)
        service.Reply(each.method, each.taken);
    service.Reply("SrQueryResults", "(true, 0, 1, 1, true)");
    service.Fail("StartSearch", "no tuner");
    EXPECT_TRUE(GetsResults("true,4")) << "at once: nothing was begun";
    EXPECT_EQ(Asked(), 0U);
    service.Fail("StartSearch", "");
    service.Fail("SrQueryResults", "gone");
    EXPECT_TRUE(GetsResults("true,4"));
    EXPECT_EQ(session->Length(), 0U);
    service.Fail("SrQueryResults", "");
    for (const auto& each : cases) {
        SCOPED_TRACE(each.method + std::string(each.refused));
        Begin();
        service.Reply(each.method, each.refused);
        each.set();
        (void)service.TakeCalls();
        EXPECT_TRUE(GetsResults("true,4"));
        EXPECT_EQ(std::ranges::count(service.TakeCalls(), "StartSearch (5,)"), 0);
        service.Reply(each.method, each.taken);
        keep();
        each.set();
        EXPECT_TRUE(GetsResults("true,0"));
    }
}

TEST_F(ASearchSession, EndsWithTheReceiverThatHadIt) {
    session->GetResults(0, 1);
    service.Stop();
    service.Start();
    EXPECT_TRUE(Hears("true,4"));
    (void)service.TakeCalls();
    EXPECT_FALSE(session->SetQuery(3));
    EXPECT_TRUE(GetsResults("true,4")) << "the new one has another search of this number, or none";
    session.reset();
    (void)ISearchResultsCacheWK::GetInstance()->Retain(0);
    EXPECT_THAT(service.TakeCalls(), testing::ElementsAre("SrRetain (0,)"));
}

TEST_F(ASearchSession, IsNotConfusedByAHandlerThatAsksAgain) {
    service.Reply("SrQueryResults", "(true, 3, 4000000000, 5, true)");
    page.main.SetGlobal("again",
                        JSObjectMakeFunctionWithCallback(
                            context, nullptr,
                            [](JSContextRef where, JSObjectRef, JSObjectRef, size_t, const JSValueRef[],
                               JSValueRef*) { return s_again(), JSValueMakeUndefined(where); }));
    s_again = [this] { session->GetResults(0, 2); };
    Eval("var left = 2; function hearAndAsk(s, state) { heard(s, state); if (left--) again(); }");
    manager.t_AddCallbackFunction(context, Object("target"), "MetadataSearch", Object("hearAndAsk"));
    EXPECT_TRUE(GetsResults("true,0,true,0,true,0"));
    EXPECT_EQ(session->Length(), 4000000000U) << "whatever the receiver says, nothing is allotted for it";
    EXPECT_EQ(session->At(3999999999U), nullptr);
}

TEST(AMainLoopTimer, IsReplacedStoppedAndDestroyedFromInsideItsAction) {
    auto timer = std::make_unique<MainLoopTimer>();
    std::string calls;
    timer->Start(0, [&] { calls += "never"; });
    timer->Start(0, [&] {
        calls += "a";
        timer->Start(0, [&] {
            calls += "b";
            timer.reset();
            calls += "c";
        });
    });
    EXPECT_EQ(calls, "");
    EXPECT_TRUE(timer->IsRunning());
    EXPECT_TRUE(WaitFor([&] { return timer == nullptr; }));
    EXPECT_EQ(calls, "abc");
    MainLoopTimer stopped;
    stopped.Start(0, [&] { calls += "never"; });
    stopped.Stop();
    bool passed = false;
    timer = std::make_unique<MainLoopTimer>();
    timer->Start(1, [&] { passed = true; });
    EXPECT_TRUE(WaitFor([&] { return passed; }));
    EXPECT_EQ(calls, "abc");
}

}  // namespace
}  // namespace OipfJavaScript
