// The control interface, and what the shell and the product see of it.
#include <chrono>

#include "Tests/Bus/ReceiverFixture.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class TheReceiversControl : public ReceiverTest::RunningReceiver {};

TEST_F(TheReceiversControl, RecordsCallsInOrderWithTheirArgumentsUntilTheyAreCleared) {
    (void)call("IDAEBrowserAPI.HasCapability", "('+DRM',)");
    (void)call("IBroadcastPlayer.SetVolume", "(uint32 1, 30)");
    EXPECT_THAT(
        control("GetCalls").text(),
        testing::MatchesRegex("\\(\\[\\('IDAEBrowserAPI\\.HasCapability', \"\\('\\+DRM',\\)\", [0-9]+\\), "
                              "\\('IBroadcastPlayer\\.SetVolume', '\\(1, 30\\)', [0-9]+\\)\\],\\)"));
    // Arguments beyond all measure neither fill the log nor break it, and the cut keeps the text well-formed.
    std::string longText;
    while (longText.size() < 10000)
        longText += "\u00e4";
    (void)call("IDAEBrowserAPI.HasCapability", "('" + longText + "',)");
    const std::vector<std::string> all = calls();
    ASSERT_FALSE(all.empty());
    EXPECT_LT(all.back().size(), 5000u);
    EXPECT_THAT(all.back(), testing::EndsWith("..."));
    ASSERT_TRUE(control("ClearCalls").value);
    EXPECT_EQ(control("GetCalls").text(), "([],)");
}

TEST_F(TheReceiversControl, DelaysOneMethodWithoutHoldingUpTheOthers) {
    constexpr auto delay = std::chrono::milliseconds(1000);
    ASSERT_TRUE(control("DelayMethod", "('IDAEBrowserAPI.GetCountryID', uint32 1000)").value);
    const auto start = std::chrono::steady_clock::now();
    auto slow = callLater("IDAEBrowserAPI.GetCountryID");
    EXPECT_EQ(ask("IDAEBrowserAPI.GetMaxKeyMask"), "(2047,)");
    ASSERT_TRUE(WaitFor([&slow] { return slow->value != nullptr; }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, delay);
    EXPECT_EQ(slow->text(), "('DEU',)");
    // Who waits is answered when the methods are reset.
    ASSERT_TRUE(control("DelayMethod", "('IDAEBrowserAPI.GetCountryID', uint32 3600000)").value);
    slow = callLater("IDAEBrowserAPI.GetCountryID");
    ASSERT_TRUE(control("ResetMethods").value);
    EXPECT_TRUE(WaitFor([&slow] { return slow->value != nullptr; }));
    EXPECT_EQ(ask("IDAEBrowserAPI.GetCountryID"), "('DEU',)");
}

TEST_F(TheReceiversControl, FailsAMethodWithTheGivenMessageAndWithoutItsEffect) {
    ASSERT_TRUE(control("FailMethod", "('IDAEBrowserAPI.SetKeyMask', 'no remote control')").value);
    EXPECT_EQ(ask("IDAEBrowserAPI.SetKeyMask", "(1,)"), "error: no remote control");
    EXPECT_EQ(ask("IDAEBrowserAPI.GetKeyMask"), "(0,)");
    ASSERT_TRUE(control("ResetMethods").value);
    EXPECT_EQ(ask("IDAEBrowserAPI.SetKeyMask", "(1,)"), "()");
    EXPECT_EQ(ask("IDAEBrowserAPI.GetKeyMask"), "(1,)");
}

TEST_F(TheReceiversControl, RefusesWhatItDoesNotKnowWithAReason) {
    const std::vector<std::tuple<const char*, const char*, const char*>> refusals = {
        {"PressKey", "('VK_RAD',)", "there is no key \"VK_RAD\""},
        {"PressKey", "('464',)", "there is no key \"464\""},
        {"PressKey", "('',)", "there is no key \"\""},
        {"RegisterView", "(-1, 'http://localhost/')", "must not be negative"},
        {"UnregisterView", "(3,)", "there is no view 3"},
        {"ApplicationFailed", "(3,)", "there is no view 3"},
        {"DelayMethod", "('IDAEBrowserAPI.Frobnicate', uint32 1)", "there is no method"},
        {"DelayMethod", "('GetTime', uint32 1)", "there is no method"},
        {"FailMethod", "('ReceiverControl.GetCalls', 'x')", "there is no method"},
        {"SetWorld", "('/keys/mask', '4096')", "/keys/mask: must be a whole number from 0 to 2047"},
        {"SetWorld", "('/keys/msk', '1')", "/keys/msk: unknown key"},
        {"SetWorld", "('keys', '1')", "is no JSON pointer"},
        {"SetWorld", "('/keys/mask', '{')", "syntax error"},
        {"SetWorld", "('/keys/mask', 'é')", "invalid literal; last read: '\uFFFD'"},
        {"SetWorld", "('/state/views', '{}')", "the state can only be read"},
        {"SetWorld", "('/broadcast/channels/4000000000', '{}')", "there is no such place"},
        {"GetWorld", "('/nothing',)", "there is no such value"},
        {"EmitSignal", "('PluginEvnt', <(1, uint32 2)>)", "there is no signal \"IDAEBrowserAPI.PluginEvnt\""},
        {"EmitSignal", "('DSMCC.Other', <(1,)>)", "there is no signal \"DSMCC.Other\""},
        {"EmitSignal", "('Nobody.Signal', <(1,)>)", "there is no interface \"Nobody\""},
        {"EmitSignal", "('IDAEBrowserAPI.a b', <(1,)>)", "is no name of a signal"},
        {"EmitSignal", "('PluginEvent', <1>)", "the arguments must be one tuple"},
    };
    for (const auto& [method, arguments, reason] : refusals)
        EXPECT_THAT(control(method, arguments).error, HasSubstr(reason)) << method << arguments;
    // Nothing of it has had an effect.
    EXPECT_EQ(control("GetWorld", "('/keys',)").text(), "('{\"mask\":0,\"maximum\":2047}',)");
    ASSERT_TRUE(control("PressKey", "('VK_RED',)").value);
    EXPECT_TRUE(hears({"KeyPressed(403,)"})) << "and nothing before it";
}

TEST_F(TheReceiversControl, EmitsDeclaredSignalsAndForRobustnessAnythingOnTheBrowserInterface) {
    for (const char* signal :
         {"('PluginEvent', <(400, uint32 0)>)",
          "('PluginEventDrmError', <(204, uint32 1, uint32 2, 'a', 'b')>)",
          "('PluginEvent', <('not', 'its', 'arguments')>)", "('IDAEBrowserAPI.Unheard', <(true,)>)",
          "('IBroadcastPlayer.Undeclared', <(1, 2)>)",
          "('DSMCC.FileResponse', <(uint32 1, 'u', @ay [0x41, 0xFF], uint32 9, true)>)"})
        EXPECT_EQ(control("EmitSignal", signal).error, "") << signal;
    EXPECT_TRUE(hears({"PluginEvent(400, 0)", "PluginEventDrmError(204, 1, 2, 'a', 'b')",
                       "PluginEvent('not', 'its', 'arguments')", "Unheard(true,)", "Undeclared(1, 2)",
                       "FileResponse(1, 'u', [0x41, 0xff], 9, true)"}));
}

TEST_F(TheReceiversControl, PassesKeysToTheShellAndKeepsTheMaskWithinItsMaximum) {
    ASSERT_TRUE(control("PressKey", "('VK_RED',)").value);
    ASSERT_TRUE(control("PressKey", "('461',)").value);
    setWorld("/keys/maximum", "31");
    EXPECT_EQ(ask("IDAEBrowserAPI.GetMaxKeyMask"), "(31,)");
    (void)call("IDAEBrowserAPI.SetKeyMask", "(2047,)");
    EXPECT_EQ(ask("IDAEBrowserAPI.GetKeyMask"), "(31,)");
    // The same again is no change; a lower maximum is one.
    (void)call("IDAEBrowserAPI.SetKeyMask", "(-1,)");
    setWorld("/keys/maximum", "3");
    EXPECT_EQ(ask("IDAEBrowserAPI.GetKeyMask"), "(3,)");
    EXPECT_TRUE(hears({"KeyPressed(403,)", "KeyPressed(461,)", "KeyMaskChanged(31,)", "KeyMaskChanged(3,)"}));
}

TEST_F(TheReceiversControl, TellsTheShellWhatApplicationsDo) {
    EXPECT_EQ(ask("IDAEBrowserAPI.CreateApplication", "('http://localhost:1/a', 7)"), "(false,)")
        << "an unknown view starts nothing";
    ASSERT_TRUE(control("RegisterView", "(7, 'http://localhost:1/')").value);
    for (const char* refused :
         {"javascript:alert(1)", "ftp://localhost/a", "a.html", "http://refused.invalid/a"})
        EXPECT_EQ(ask("IDAEBrowserAPI.CreateApplication", std::string("('") + refused + "', 7)"), "(false,)");
    EXPECT_EQ(ask("IDAEBrowserAPI.CreateApplication", "('http://localhost:1/a', 7)"), "(true,)");
    // A second one takes the place of the first.
    setWorld("/applications/broadcast/0/url", "\"http://localhost/a?b=c#d\"");
    EXPECT_EQ(ask("IDAEBrowserAPI.CreateApplication", "('dvb://current.ait/13.1?x=y', 7)"), "(true,)");
    (void)call("IDAEBrowserAPI.Hide", "(7,)");
    (void)call("IDAEBrowserAPI.Show", "(7,)");
    (void)call("IDAEBrowserAPI.DestroyApplication", "(8,)");
    (void)call("IDAEBrowserAPI.DestroyApplication", "(8,)");
    (void)call("IDAEBrowserAPI.Show", "(8,)");
    EXPECT_TRUE(hears({"ApplicationStarted(8, 'http://localhost:1/a')", "ApplicationDestroyed(8,)",
                       "ApplicationStarted(8, 'http://localhost/a?b=c&x=y#d')",
                       "ApplicationVisibilityChanged(7, false)", "ApplicationVisibilityChanged(7, true)",
                       "ApplicationDestroyed(8,)", "ApplicationDestroyed(8,)"}));
    EXPECT_EQ(control("GetWorld", "('/state/views',)").text(),
              "('{\"7\":{\"started\":false,\"url\":\"http://localhost:1/\",\"visible\":true}}',)");
}

TEST_F(TheReceiversControl, JudgesTrustAndBoundaryByTheMostRecentlyActiveView) {
    const auto isTrusted = [this] { return ask("IDAEBrowserAPI.IsTrusted"); };
    const auto isInBoundary = [this](const std::string& url) {
        return ask("IDAEBrowserAPI.IsURLInAppBoundary", "('" + url + "',)");
    };
    EXPECT_EQ(isTrusted(), "(false,)") << "without a view there is nobody to trust";
    ASSERT_TRUE(control("RegisterView", "(1, 'http://localhost/page')").value);
    EXPECT_EQ(isTrusted(), "(true,)");
    ASSERT_TRUE(control("RegisterView", "(2, 'https://portal.invalid/page')").value);
    EXPECT_EQ(isTrusted(), "(false,)");
    EXPECT_EQ(isInBoundary("https://PORTAL.invalid:443/other"), "(true,)");
    EXPECT_EQ(isInBoundary("http://portal.invalid/other"), "(false,)");
    EXPECT_EQ(isInBoundary("http://localhost:99/other"), "(true,)") << "listed in the scenario";
    EXPECT_EQ(isInBoundary("other.html"), "(false,)");
    // Hidden, it is no longer the active one; shown again, it is.
    (void)call("IDAEBrowserAPI.Hide", "(2,)");
    EXPECT_EQ(isTrusted(), "(true,)");
    (void)call("IDAEBrowserAPI.Show", "(2,)");
    EXPECT_EQ(isTrusted(), "(false,)");
    // The same view with another document.
    ASSERT_TRUE(control("RegisterView", "(2, 'http://localhost:80.portal.invalid/')").value);
    EXPECT_EQ(isTrusted(), "(false,)");
    ASSERT_TRUE(control("UnregisterView", "(2,)").value);
    EXPECT_EQ(isTrusted(), "(true,)");
}

TEST_F(TheReceiversControl, ChangesTheWorldForEveryLaterCall) {
    setWorld("/locale/country", "\"FRA\"");
    EXPECT_EQ(ask("IDAEBrowserAPI.GetCountryID"), "('FRA',)");
    setWorld("/broadcast/channels/0/name", "\"Other\"");
    EXPECT_THAT(ask("IJSChannelCache.GetChannelInfo", "(uint32 1,)"), StartsWith("('Other', "));
    setWorld("/drm/sas_session_open", "true");
    EXPECT_EQ(ask("IDAEBrowserAPI.IsSASSessionOpen"), "(true,)");
    EXPECT_TRUE(hears({"PluginEventUnsigned(1000, 0, 1)"}));
    forget();
    setWorld("/drm/sas_session_open", "true");
    setWorld("/drm/ciplus_types", "\"urn:x\"");
    setWorld("/drm", "{}");
    EXPECT_TRUE(hears({"PluginEventUnsigned(1000, 0, 0)"})) << "only a change is told";
}

TEST_F(TheReceiversControl, CountsWhoHoldsAChannelAndKnowsNoOther) {
    EXPECT_EQ(ask("IJSChannelCache.Retain", "(uint32 2,)"), "(true,)");
    EXPECT_EQ(ask("IJSChannelCache.Retain", "(uint32 2,)"), "(true,)");
    EXPECT_EQ(ask("IJSChannelCache.Retain", "(uint32 999,)"), "(false,)");
    (void)call("IJSChannelCache.Release", "(uint32 2,)");
    (void)call("IJSChannelCache.Release", "(uint32 999,)");
    EXPECT_EQ(world("/state/retained_channels"), R"({"me 2":1})");
    (void)call("IJSChannelCache.Release", "(uint32 2,)");
    (void)call("IJSChannelCache.Release", "(uint32 2,)");
    EXPECT_EQ(world("/state/retained_channels"), "{}");
    EXPECT_THAT(ask("IJSChannelCache.GetChannelInfo", "(uint32 999,)"), HasSubstr("false)"));
}

}  // namespace
