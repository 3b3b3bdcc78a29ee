// The command line of the shell, and what it makes of the profile.
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "Host/Shell/Options.h"
#include "Host/Shell/UserAgent.h"

namespace {

using namespace Shell;

std::string refusalOf(const std::vector<std::string>& arguments) {
    const ParsedOptions parsed = parseOptions(arguments);
    const auto* bad = std::get_if<BadUsage>(&parsed);
    return bad ? bad->reason : "accepted";
}

TEST(TheShellsCommandLine, TakesValuesInBothForms) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--scenario", "a.json", "--profile=1.1.1", "--screenshot", "b.png",
                                   "--exit-after-load", "--no-receiver", "http://localhost/"},
          std::vector<std::string>{"http://localhost/", "--no-receiver", "--exit-after-load",
                                   "--screenshot=b.png", "--profile", "1.1.1", "--scenario=a.json"}}) {
        const ParsedOptions parsed = parseOptions(arguments);
        const auto* options = std::get_if<Options>(&parsed);
        ASSERT_NE(options, nullptr);
        EXPECT_EQ(options->url, "http://localhost/");
        EXPECT_EQ(options->profile, "1.1.1");
        EXPECT_EQ(options->scenario, "a.json");
        EXPECT_EQ(options->screenshot, "b.png");
        EXPECT_TRUE(options->exitAfterLoad);
        EXPECT_FALSE(options->receiver);
        EXPECT_FALSE(options->automation);
    }
}

TEST(TheShellsCommandLine, BoundsTheTimeForAFileOfTheCarousel) {
    EXPECT_EQ(std::get<Options>(parseOptions({"u"})).carouselLimitSeconds, 30U);
    EXPECT_EQ(std::get<Options>(parseOptions({"u", "--carousel-limit=600"})).carouselLimitSeconds, 600U);
    for (const std::string seconds : {"0", "601", "-1", "1.5", "5s", "99999999999"})
        EXPECT_EQ(refusalOf({"u", "--carousel-limit", seconds}), "not a number of seconds: " + seconds);
}

TEST(TheShellsCommandLine, NeedsAUrlUnlessADriverNavigates) {
    EXPECT_EQ(refusalOf({}), "no URL");
    EXPECT_EQ(refusalOf({"--exit-after-load"}), "no URL");
    EXPECT_EQ(refusalOf({"--automation"}), "accepted");
    EXPECT_EQ(refusalOf({"a.html", "b.html"}), "more than one URL");
}

TEST(TheShellsCommandLine, RefusesWhatItDoesNotKnow) {
    EXPECT_EQ(refusalOf({"--colour", "u"}), "unknown option: --colour");
    EXPECT_EQ(refusalOf({"-x", "u"}), "unknown option: -x");
    EXPECT_EQ(refusalOf({"", "u"}), "unknown option: ");
    EXPECT_EQ(refusalOf({"u", "--scenario"}), "--scenario needs a value");
    EXPECT_EQ(refusalOf({"u", "--screenshot="}), "--screenshot needs a value");
    for (const std::string profile : {"1.2", "1.2.1.0", "a.b.c", "12.1.", "HbbTV"})
        EXPECT_EQ(refusalOf({"u", "--profile", profile}), "not a profile: " + profile);
    EXPECT_TRUE(std::holds_alternative<HelpWanted>(parseOptions({"--help", "--colour"})));
}

TEST(AUserAgent, CarriesTheProfileWhereThePagesScriptsLookForIt) {
    const std::string agent = userAgentWithProfile("Mozilla/5.0 (X11)", "1.2.1");
    EXPECT_EQ(agent.find("Mozilla/5.0 (X11) HbbTV/1.2.1 (;"), 0U) << agent;
    EXPECT_EQ(agent.back(), ')');

    const auto none = std::get<Options>(parseOptions({"--profile", "none", "u"}));
    EXPECT_EQ(userAgentWithProfile("Mozilla/5.0 (X11)", none.profile), "Mozilla/5.0 (X11)");
}

}  // namespace
