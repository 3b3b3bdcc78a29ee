// The bundle and its host: what it installs, asks and puts on windows.

#include <unistd.h>

#include <cstdlib>
#include <iterator>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/InjectedBundle.h"
#include "Tests/Bus/LogCapture.h"
#include "Tests/Unit/FakeBrowser.h"

namespace OipfJavaScript {
namespace {

TEST(ABundle, HasNoViewBeforeItIsInitialised) {
    const auto ask = [] {
        int view = 5;
        const bool got = BundleGetWKViewFromWKManager(view);
        const int said =
            LogCapture::Count("InjectedBundle::BundleGetWKViewFromWKManager() s_globalBundle is NULL");
        std::exit(got || view != 5 || said != 1 ? 1 : 0);
    };
    EXPECT_EXIT(ask(), testing::ExitedWithCode(0), "");
}

TEST(ABundle, IntroducesItselfAndItsScript) {
    FakeBrowser& browser = FakeBrowser::Get();
    ASSERT_EQ(browser.messages.size(), 1U);
    EXPECT_EQ(browser.messages[0], std::make_pair(std::string("WebProcessPID"), std::to_string(getpid())));
    ASSERT_EQ(browser.userScripts.size(), 1U);
    const auto& script = browser.userScripts[0];
    EXPECT_TRUE(script.forEveryUrl);
    EXPECT_EQ(script.time, kWKInjectAtDocumentStart);
    EXPECT_EQ(script.frames, kWKInjectInAllFrames);
    const size_t library = script.source.find("MutationSummary");
    const size_t members = script.source.find("_hbbtv_vantrel_members = ");
    const size_t bootstrap = script.source.find("_hbbtv_vantrel_plugins");
    EXPECT_TRUE(library < members && members < bootstrap && bootstrap != std::string::npos);
    EXPECT_EQ(browser.liveStrings, 0) << "every string it made was given back";
}

TEST(ABundle, LogsAsThePlatformExpects) {
    LogCapture::Clear();
    const int line = __LINE__ + 1;
    HBBTV_LOG_DEBUG("debug %d", 1);
    HBBTV_LOG_INFO("info");
    HBBTV_LOG_WARNING("warning");
    HBBTV_LOG_ERROR("error %s", "2");
    HBBTV_LOG_ENTRY();
    HBBTV_LOG_OBJECT(ERROR, "object");
    const std::pair<int, std::string> expected[] = {
        {2, "debug 1"},
        {4, "\033[32minfo\033[0m"},
        {8, "\033[33mwarning\033[0m"},
        {16, "\033[31merror 2\033[0m"},
        {4, "\033[32mTestBody()\033[0m"},
        {16, "\033[31m[BundleTest.cpp:%d] TestBody object\033[0m"}};
    const auto records = LogCapture::Records();
    ASSERT_EQ(records.size(), std::size(expected));
    for (size_t i = 0; i < records.size(); ++i) {
        const std::string number = std::to_string(line + static_cast<int>(i));
        std::string text = "BundleTest.cpp: TestBody(" + number + ") > " + expected[i].second;
        if (const size_t at = text.find("%d"); at != std::string::npos)
            text.replace(at, 2, number);
        EXPECT_EQ(records[i].whole, text);
        EXPECT_EQ(records[i].priority, expected[i].first);
        EXPECT_EQ(records[i].tag, "HBBTV");
    }
}

TEST(ABundle, ReadsTheViewFromTheFrontOfTheReply) {
    FakeBrowser& browser = FakeBrowser::Get();
    const auto view = [&](std::optional<std::string> reply) {
        browser.viewId = reply;
        int id = -5;
        const bool got = BundleGetWKViewFromWKManager(id);
        return std::make_pair(got, id);
    };
    for (const auto& [reply, id] : {std::pair("12", 12), std::pair("12abc", 12), std::pair("abc", 0),
                                    std::pair("", 0), std::pair("-1", -1)})
        EXPECT_EQ(view(reply), std::make_pair(true, id)) << reply;
    EXPECT_EQ(view(std::nullopt), std::make_pair(false, -5));
    browser.viewId = FakeBrowser().viewId;
    EXPECT_EQ(browser.messages.back(), std::make_pair(std::string("GetViewId"), std::string("null")));
    EXPECT_EQ(browser.liveStrings, 0);
}

}  // namespace
}  // namespace OipfJavaScript
