// What a page may know about the receiver: configuration, capabilities, CI Plus and parental control.

#include "API/Src/IPluginController.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/Src/BindingObject.h"
#include "InjectedBundle/Src/JSHandles.h"
#include "InjectedBundle/gen/js/jiParentalRatingScheme.h"
#include "JavaScript/Src/CParentalRatingSchemeImpl.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Unit/FakeBrowser.h"

namespace OipfJavaScript {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

struct InformationService {
    FakeService api{"IDAEBrowserAPI"};
};

class AnInformedPage : public testing::Test, protected InformationService, protected TestedPage {
 protected:
    AnInformedPage() {
        api.Reply("IsTrusted", "(true,)");
        // The client outlives the service of the test before.
        EXPECT_TRUE(WaitFor([] { return CDAEBrowserAPIWK::GetInstance()->IsTrusted(); }));
        (void)api.TakeCalls();
        LogCapture::Clear();
        Eval("var log = []");
    }
};

class ACapabilitiesObject : public AnInformedPage {
 protected:
    ACapabilitiesObject() {
        Eval(R"(DOMParser.prototype.parseFromString = null; DOMParser = null;
                var caps = PrivateObjectFactory.createCapabilitiesObject();)");
    }

    // As the text stands on the wire.
    void Describe(const std::string& gvariantText) {
        api.Reply("GetXmlCapabilities", "(" + gvariantText + ",)");
    }
};

TEST_F(ACapabilitiesObject, HasItsDescriptionParsedByTheBrowserOnEachRead) {
    Describe(R"("<profilelist a='1' b='&quot;\\u00e9'/>")");
    EXPECT_EQ(Value("(d => [d.text, d.type].join())(caps.xmlCapabilities)"),
              "string <profilelist a='1' b='&quot;\u00e9'/>,text/xml");
    EXPECT_EQ(Value("caps.xmlCapabilities === caps.xmlCapabilities"), "boolean false");
    EXPECT_THAT(api.TakeCalls(), testing::Each("GetXmlCapabilities ()"));
}

TEST_F(ACapabilitiesObject, ThrowsWhatItsScriptThrowsAndGoesOnWorking) {
    const std::pair<const char*, const char*> kUnfit[] = {
        {R"('<a b="c d"/>')", "a quote ends the text"},
        {R"('<a/>\n<b/>')", "so does a line break"},
        {R"('<a/>\\')", "and a backslash hides its end"},
    };
    for (const auto& [description, consequence] : kUnfit) {
        Describe(description);
        EXPECT_THAT(Thrown("caps.xmlCapabilities"), StartsWith("SyntaxError|SyntaxError: ")) << consequence;
        EXPECT_EQ(Value("caps.hasCapability('+DL')"), "boolean false") << "nothing is left of the failure";
        Describe("'<a/>'");
        EXPECT_EQ(Value("caps.xmlCapabilities.text"), "string <a/>");
    }

    Describe(R"('" + (() => { throw thing; })() + "')");
    EXPECT_EQ(Thrown("caps.xmlCapabilities"), "ReferenceError|ReferenceError: Can't find variable: thing");
    Eval("var thing = 'a text'");
    EXPECT_EQ(Thrown("caps.xmlCapabilities"), "Error|a text");
    Eval("thing = {get name() { throw 1; }, toString() { throw 2; }}");
    EXPECT_EQ(Thrown("caps.xmlCapabilities"), "Error|the capabilities cannot be read");
}

TEST_F(ACapabilitiesObject, LeavesNothingBehindHoweverOftenItsScriptFails) {
    Describe(R"('<a b="c d"/>')");
    const auto read = [this] {
        for (int i = 0; i < 200; ++i)
            EXPECT_THAT(Thrown("caps.xmlCapabilities"), StartsWith("SyntaxError"));
        page.main.CollectGarbage();
        return BindingObject::AliveCount();
    };
    const size_t before = read();
    // The collector scans the machine's stack: a few words may still look like references.
    EXPECT_LE(read(), before + 8);
}

TEST_F(ACapabilitiesObject, PassesTheReceiversAnswerOn) {
    api.Reply("HasCapability", "(true,)");
    EXPECT_EQ(Value("caps.hasCapability('+DR\u00e4')"), "boolean true");
    EXPECT_THAT(api.TakeCalls(), ElementsAre("HasCapability ('+DR\u00e4',)"));
    EXPECT_EQ(Value("[caps.extraSDVideoDecodes, caps.extraHDVideoDecodes].join()"), "string 0,0");
    EXPECT_EQ(Thrown("caps.hasCapability()"), kBadArguments);
    EXPECT_THAT(api.TakeCalls(), IsEmpty());
}

class AGatewayObject : public AnInformedPage {
 protected:
    AGatewayObject() {
        api.Reply("IsSASSessionOpen", "(true,)");
        Eval("var gateway = PrivateObjectFactory.createGatewayInfoObject();");
    }

    static void Fire(int32_t code, uint32_t value) {
        CDAEBrowserAPIWK::GetInstance()->SendEventToPlugins(event_t::WithUnsigned(code, 0, value));
    }
};

TEST_F(AGatewayObject, KnowsTheSessionFromTheStartAndFromEachEvent) {
    EXPECT_THAT(api.TakeCalls(), ElementsAre("IsSASSessionOpen ()"));
    EXPECT_EQ(Value("gateway.isCSPGCIPlusDiscovered"), "boolean true");
    Eval(R"(
        gateway.onDiscoverCSPGCIPlus = (...all) => log.push(all.length, gateway.isCSPGCIPlusDiscovered);
        gateway.addEventListener('DiscoverCSPGCIPlus', e => log.push(e.type));)");
    Fire(E_SAS_SESSION_STATE, 0);
    EXPECT_EQ(Log(), "0,false,DiscoverCSPGCIPlus") << "a close is told like an open";
    Fire(E_SAS_SESSION_STATE, 256);
    EXPECT_EQ(Log(), "0,true,DiscoverCSPGCIPlus") << "any value but zero is open";
    Fire(E_SAS_SESSION_MESSAGE, 0);
    Fire(0, 0);
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(Value("gateway.isCSPGCIPlusDiscovered"), "boolean true");
}

TEST_F(AGatewayObject, TellsNothingToAPageThatIsNotTrusted) {
    api.Reply("IsTrusted", "(false,)");
    (void)api.TakeCalls();
    for (const char* property : {"isCSPGCIPlusDiscovered", "isCSPGCIPlusSupported", "CSPGCIPlusDRMType"})
        EXPECT_EQ(Thrown(std::string("gateway.") + property), "SecurityError|Application not trusted");
    EXPECT_THAT(api.TakeCalls(), testing::Each("IsTrusted ()"))
        << "the receiver is not asked what the page may not know";
    EXPECT_EQ(LogCapture::Errors(), 3);
    Eval("gateway.onDiscoverCSPGCIPlus = () => log.push('heard')");
    Fire(E_SAS_SESSION_STATE, 0);
    EXPECT_EQ(Log(), "heard");

    api.Reply("IsTrusted", "(true,)");
    EXPECT_EQ(Value("gateway.isCSPGCIPlusSupported"), "boolean true");
    EXPECT_EQ(Value("gateway.isCSPGCIPlusDiscovered"), "boolean false") << "what happened meanwhile is known";
}

TEST_F(AGatewayObject, ListsTheDrmSystemsAsTheReceiverWritesThem) {
    const auto types = [this](const std::string& list) {
        api.Reply("GetCIPlusDrmType", "('" + list + "',)");
        return Value(
            "(all => all.length + all.map(t => '<' + t + '>').join(''))"
            "(Array.from(gateway.CSPGCIPlusDRMType))");
    };
    EXPECT_EQ(types("urn:a,,urn:b"), "string 3<urn:a><><urn:b>");
    EXPECT_EQ(types(" urn:a"), "string 1< urn:a>");
    EXPECT_EQ(types(","), "string 1<>");
    EXPECT_EQ(types(""), "string 0");
    EXPECT_EQ(Value("gateway.CSPGCIPlusDRMType[0]"), "undefined");
    api.Fail("GetCIPlusDrmType", "no module");
    EXPECT_EQ(Value("gateway.CSPGCIPlusDRMType.length"), "number 0");
}

class AParentalControlManager : public AnInformedPage {
 protected:
    AParentalControlManager() {
        Eval(R"(var manager = PrivateObjectFactory.createParentalControlManagerObject(),
                    schemes = manager.parentalRatingSchemes, scheme = schemes[0];)");
    }
};

TEST_F(AParentalControlManager, KnowsOneSchemeByItsExactName) {
    EXPECT_EQ(Value("[schemes.length, scheme.name, schemes.item(0).name, scheme.length].join()"),
              "string 1,dvb-si,dvb-si,0");
    EXPECT_EQ(Value("schemes.getParentalRatingScheme('dvb-si').name"), "string dvb-si");
    for (const char* none : {"'DVB-SI'", "'dvb-si '", "''"})
        EXPECT_EQ(Value(std::string("schemes.getParentalRatingScheme(") + none + ")"), "undefined") << none;
    ExpectAll("undefined", {"schemes.item(1)", "schemes[1]", "scheme.item(0)", "scheme[0]"});
    EXPECT_EQ(Value("[scheme.indexOf('16'), scheme.indexOf('')].join()"), "string -1,-1") << "no labels";
    EXPECT_EQ(Value("scheme.iconUri(0)"), "null");
    EXPECT_EQ(Value("manager.parentalRatingSchemes === schemes"), "boolean false");
    EXPECT_EQ(Value("schemes.getParentalRatingScheme('dvb-si').threshold.value"), "number 0");
}

TEST_F(AParentalControlManager, ReadsTheLockAnewEachTime) {
    const auto threshold = [this](const std::string& status) {
        api.Reply("GetParentalLockStatus", "(" + status + ",)");
        return Value("(t => [t.name, t.value, t.scheme, t.labels, t.region].join())(scheme.threshold)");
    };
    EXPECT_EQ(threshold("16"), "string 16,16,dvb-si,0,");
    EXPECT_EQ(threshold("255"), "string 0,0,dvb-si,0,") << "no lock";
    EXPECT_EQ(threshold("0"), "string 0,0,dvb-si,0,");
    EXPECT_EQ(LogCapture::Count("ParentalRating::Scheme dvb-si Name 16 (value 16)"), 1);

    page.main.SetGlobal("other", MakeObject<jiParentalRatingScheme>(page.main.context, "mpaa"));
    (void)api.TakeCalls();
    EXPECT_EQ(Value("other.threshold"), "null") << "a lock is an age, which other schemes do not have";
    EXPECT_EQ(Value("other.name"), "string mpaa");
    EXPECT_THAT(api.TakeCalls(), IsEmpty());
}

TEST_F(AnInformedPage, ReadsTheConfigurationAnewEachTime) {
    api.Reply("GetPreferredAudioLang", "('deu,eng',)");
    api.Reply("GetCountryID", "('DEU',)");
    Eval("var holder = PrivateObjectFactory.createConfigurationObject(); var kept = holder.configuration;");
    EXPECT_EQ(Value("holder.configuration === holder.configuration"), "boolean false");
    EXPECT_EQ(Value("[kept.preferredAudioLanguage, kept.preferredSubtitleLanguage, kept.preferredUILanguage, "
                    "kept.countryId].join('|')"),
              "string deu,eng|||DEU");
    api.Reply("GetPreferredAudioLang", "('fra',)");
    api.Fail("GetCountryID", "not set up");
    EXPECT_EQ(Value("kept.preferredAudioLanguage + '|' + kept.countryId"), "string fra|");
}

}  // namespace
}  // namespace OipfJavaScript
