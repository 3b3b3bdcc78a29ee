// The command line of the shell, and what it makes of the profile.
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Host/Shell/Options.h"
#include "Host/Shell/UserAgent.h"

namespace {

using namespace Shell;

std::string refusalOf(const std::vector<std::string>& arguments) {
    std::string problem;
    return parseOptions(arguments, problem) ? "accepted" : problem;
}

Options optionsOf(const std::vector<std::string>& arguments) {
    std::string problem;
    return parseOptions(arguments, problem).value_or(Options{});
}

TEST(TheShellsCommandLine, IsReadInAnyOrder) {
    const Options options = optionsOf({"--scenario", "a.json", "http://localhost/", "--profile=1.1.1",
                                       "--exit-after-load", "--no-receiver", "-q", "--screenshot", "b.png"});
    EXPECT_EQ(options.url, "http://localhost/");
    EXPECT_EQ(options.profile, "1.1.1");
    EXPECT_EQ(options.scenario, "a.json");
    EXPECT_EQ(options.screenshot, "b.png");
    EXPECT_TRUE(options.exitAfterLoad);
    EXPECT_TRUE(options.quiet);
    EXPECT_FALSE(options.receiver);
    EXPECT_FALSE(options.automation);
    EXPECT_EQ(options.carouselLimitSeconds, 30U);
}

TEST(TheShellsCommandLine, IsRefusedWithItsReason) {
    EXPECT_EQ(refusalOf({}), "no URL; --example zapper shows a demo application");
    EXPECT_EQ(refusalOf({""}), refusalOf({}));
    EXPECT_EQ(refusalOf({"a.html", "b.html"}), "more than one URL, AIT or example");
    EXPECT_EQ(refusalOf({"a.html", "--example", "epg"}), "more than one URL, AIT or example");
    EXPECT_EQ(refusalOf({"--serve", "folder", "--ait", "a.aitx"}), "--serve goes with a URL");
    EXPECT_EQ(refusalOf({"u", "--require-verdict"}), "--require-verdict goes with --exit-after-load");
    EXPECT_EQ(refusalOf({"--colour", "u"}), "Unknown option --colour");
    for (const std::string profile : {"1.2", "1.2.1.0", "a.b.c", "12.1.", "1.2.1+", "1.2.1+pvr", "1.2.1 (;)"})
        EXPECT_EQ(refusalOf({"u", "--profile", profile}), "not a profile: " + profile);
    for (const std::string factor : {"0", "-1", "4.5", "nan", "big"})
        EXPECT_NE(refusalOf({"u", "--zoom", factor}), "accepted") << factor;
    for (const std::string limit : {"--carousel-limit", "--check-limit"}) {
        EXPECT_EQ(refusalOf({"u", limit, "600"}), "accepted");
        for (const std::string seconds : {"0", "601", "-1", "1.5", "5s", "99999999999"})
            EXPECT_NE(refusalOf({"u", limit, seconds}), "accepted") << seconds;
    }
    EXPECT_EQ(refusalOf({"u", "--reload", "/no/such"}), "--reload: there is no folder /no/such");
    EXPECT_EQ(refusalOf({"u", "--profile-dir", "/dev/null"}),
              "--profile-dir: cannot use /dev/null: Not a directory");
    for (const std::vector<std::string>& good :
         std::vector<std::vector<std::string>>{{"--automation"},
                                               {"--serve", "folder"},
                                               {"--ait", "a.aitx"},
                                               {"u", "--zoom=0.25"},
                                               {"u", "--reload", "/dev"}})
        EXPECT_EQ(refusalOf(good), "accepted") << good.front();
}

TEST(AnAddress, MayComeWithoutItsScheme) {
    for (const std::string host :
         {"localhost", "LOCALHOST/", "localhost:8080/a.html?b#c", "tv:80", "my-tv.local:8080", "127.0.0.1",
          "10.0.0.1:81/x", "[::1]:8080/", "example.org/", "www.example.org/app"})
        EXPECT_EQ(urlOf(host), "http://" + host);
    for (const std::string url :
         {"http://localhost/", "https://a", "dvb://1.2.3/a", "about:blank", "data:text/html,1:2"})
        EXPECT_EQ(urlOf(url), url);
    const std::string here = "file://" + std::filesystem::current_path().string() + "/";
    for (const std::string file : {"a.html", "apps/a.html", "localhosts/a.html"})
        EXPECT_EQ(urlOf(file), here + file);
    EXPECT_EQ(urlOf("/dev/../a.html"), "file:///a.html");
}

TEST(AUserAgent, CarriesTheProfileWhereThePagesScriptsLookForIt) {
    const std::string agent = userAgentWithProfile("Mozilla/5.0 (X11)", "1.2.1");
    EXPECT_EQ(agent.find("Mozilla/5.0 (X11) HbbTV/1.2.1 (;"), 0U) << agent;
    EXPECT_NE(agent.find("; " HBBTV_VERSION ";"), std::string::npos) << agent;
    EXPECT_EQ(agent.back(), ')');

    EXPECT_NE(userAgentWithProfile("", optionsOf({"--profile", "1.2.1+DL+PVR", "u"}).profile)
                  .find("HbbTV/1.2.1 (+DL+PVR; "),
              std::string::npos);

    const auto none = optionsOf({"--profile", "none", "u"});
    EXPECT_EQ(userAgentWithProfile("Mozilla/5.0 (X11)", none.profile), "Mozilla/5.0 (X11)");
}

}  // namespace
