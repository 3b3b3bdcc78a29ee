// The binding classes as a page meets them.

#include <gtest/gtest.h>

#include <string>

#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "InjectedBundle/gen/js/jiKeyset.h"
#include "InjectedBundle/gen/js/jiStringCollection.h"
#include "JavaScript/Src/CChannelImpl.h"
#include "JavaScript/Src/CKeysetImpl.h"
#include "JavaScript/Src/CStringCollectionImpl.h"
#include "Tests/Unit/FakeBrowser.h"

namespace OipfJavaScript {
namespace {

class ABinding : public testing::Test {
 protected:
    ABinding() {
        page.main.SetGlobal(
            "keyset", jiKeyset::CreateObject(page.main.context, MakeBinding<jiKeyset>().release(), nullptr));
        page.main.SetGlobal("channel",
                            jiChannel::CreateObject(page.main.context,
                                                    MakeBinding<jiChannel>(12, 1, 2, 3).release(), nullptr));
        auto strings = MakeBinding<jiStringCollection>(std::vector<std::string>{"eng", "", "d\u00e9u"});
        page.main.SetGlobal("strings",
                            jiStringCollection::CreateObject(page.main.context, strings.release(), nullptr));
        page.main.Eval(R"(
            function kind(f) {
                try { f(); return 'no exception'; }
                catch (e) { return e.name + '|' + e.message + '|' + e.description; }
            })");
    }

    std::string Value(const std::string& expression) { return page.main.Value(expression); }
    std::string Thrown(const std::string& statement) {
        return page.main.Eval("kind(function() { " + statement + " })");
    }

    FakePage page;
};

constexpr const char* kBadArguments =
    "SecurityError|SecurityError|Argument count or the argument types are bad";

TEST_F(ABinding, CannotBeMadeByAPage) {
    EXPECT_EQ(Thrown("new Keyset()"),
              "SecurityError|SecurityError|Not allowed to create Keyset object directly");
    EXPECT_EQ(page.main.Eval("try { new Channel() } catch (e) { '' + e }"),
              "[object Exception] : \"SecurityError\", \"Not allowed to create Channel object directly\"");
    EXPECT_EQ(Value("typeof PrivateObjectFactory"), "string object") << "an instance, no constructor";
}

TEST_F(ABinding, CarriesItsConstantsReadOnlyOnConstructorAndInstance) {
    EXPECT_EQ(Value("Keyset.RED + Keyset.OTHER"), "number 1025");
    EXPECT_EQ(Value("keyset.BLUE"), "number 8");
    page.main.Eval("Keyset.RED = 5; keyset.RED = 6");
    EXPECT_EQ(Value("Keyset.RED === 1 && keyset.RED === 1"), "boolean true");
    EXPECT_EQ(Value("[Channel.ID_ISDB_C, Channel.ID_ISDB_S, Channel.ID_ISDB_T, channel.TYPE_OTHER].join()"),
              "string 20,20,21,2");
    EXPECT_EQ(Value("Object.keys(KeyEvent).length"), "number 170");
    EXPECT_EQ(
        Value("[KeyEvent.VK_LEFT, KeyEvent.VK_0, KeyEvent.VK_Z, KeyEvent.VK_RED, KeyEvent.VK_VOLUME_DOWN, "
              "KeyEvent.VK_BACK, KeyEvent.VK_PLAY_PAUSE].join()"),
        "string 37,48,90,403,448,461,463");
}

TEST_F(ABinding, ChecksCountAndTypesOfArguments) {
    EXPECT_EQ(Thrown("keyset.setValue()"), kBadArguments);
    EXPECT_EQ(Thrown("keyset.setValue('1')"), kBadArguments);
    EXPECT_EQ(Thrown("keyset.setValue(1, [403], 2)"), kBadArguments);
    EXPECT_EQ(Thrown("PrivateObjectFactory.createApplicationManagerObject(1)"), kBadArguments);
    EXPECT_EQ(Value("keyset.setValue(NaN)"), "null");
    EXPECT_EQ(Value("keyset.setValue(1, [403])"), "number 0") << "nobody on the bus: the failure value";
    EXPECT_EQ(Value("keyset.setValue(1e300)"), "number 0");
}

TEST_F(ABinding, RefusesAForeignThisByItsClass) {
    EXPECT_EQ(Value("keyset.setValue.call(channel, 1)"), "null");
    EXPECT_EQ(Value("strings.item.call(keyset, 0)"), "null");
    EXPECT_EQ(Value("keyset.setValue.call({}, 1)"), "null");
    EXPECT_EQ(Value("keyset.setValue.call(undefined, 1)"), "null");
    EXPECT_EQ(Value("strings.item.call(Object.getPrototypeOf(strings), 0)"), "null");
    EXPECT_EQ(Value("Object.create(channel).sid"), "number 3") << "inherited, on its own object";
    EXPECT_EQ(Value("Reflect.get(channel, 'sid', keyset)"), "number 3");
    // The callback itself, as the engine would call it for an object of another class.
    const JSStringHandle name("value");
    JSValueRef exception = nullptr;
    const JSValueRef channel =
        JSEvaluateScript(page.main.context, JSStringHandle("channel").Get(), nullptr, nullptr, 1, nullptr);
    const JSValueRef value =
        jiKeyset::t_GetProperty(page.main.context, const_cast<JSObjectRef>(channel), name.Get(), &exception);
    EXPECT_TRUE(JSValueIsNull(page.main.context, value));
    EXPECT_EQ(exception, nullptr);
}

TEST_F(ABinding, KeepsOrdinaryPropertiesBesideItsOwn) {
    page.main.Eval("channel.favourite = 'yes'; channel.sid = 99; channel[0] = 'zero'");
    EXPECT_EQ(Value("channel.favourite"), "string yes");
    EXPECT_EQ(Value("channel.sid"), "number 3");
    EXPECT_EQ(Value("channel[0]"), "string zero");
    EXPECT_EQ(Value("channel.unknown"), "undefined");
    EXPECT_EQ(Value("'sid' in channel && channel.hasOwnProperty('sid') && !channel.hasOwnProperty('item')"),
              "boolean true");
}

TEST_F(ABinding, IsAPlainObjectWithoutANativeOne) {
    page.main.SetGlobal("empty", jiKeyset::CreateObject(page.main.context, nullptr, nullptr));
    EXPECT_EQ(Value("JSON.stringify(empty) + empty.value + empty.RED"), "string {}undefinedundefined");
}

TEST_F(ABinding, ReadsACollectionByItemAndByIndex) {
    EXPECT_EQ(Value("strings.length"), "number 3");
    EXPECT_EQ(Value("[strings[0], strings.item(1), strings[2]].join('|')"), "string eng||d\u00e9u");
    EXPECT_EQ(Value("[strings[3], 2 in strings, 3 in strings].join()"), "string ,true,false");
    EXPECT_EQ(Value("strings.item(3)"), "undefined");
    EXPECT_EQ(Value("strings.item(-1)"), "undefined");
    EXPECT_EQ(Value("strings.item(Infinity)"), "undefined");
    EXPECT_EQ(Value("strings.item(-1e300)"), "undefined");
    EXPECT_EQ(Value("strings.item(0.9)"), "string eng");
    EXPECT_EQ(Value("strings.item(NaN)"), "null");
    EXPECT_EQ(
        Value("[strings['00'], strings['-1'], strings['1.0'], strings[4294967295], strings['']].join()"),
        "string ,,,,");
    EXPECT_EQ(Value("Object.keys(strings).join()"), "string length");
    EXPECT_EQ(Value("(function() { var names = []; for (var name in strings) names.push(name); "
                    "return names.join(); })()"),
              "string length,item");
}

TEST_F(ABinding, IsCopiedDeeply) {
    auto original = MakeBinding<jiStringCollection>(std::vector<std::string>{"one"});
    jiStringCollection copy(*original);
    original.reset();
    EXPECT_EQ(copy.Implementation().Item(0), "one");
}

TEST_F(ABinding, ReadsAChannelWithoutARecordAsItsDefaults) {
    page.main.SetGlobal(
        "none",
        jiChannel::CreateObject(page.main.context, MakeBinding<jiChannel>(uint32_t{0}).release(), nullptr));
    EXPECT_EQ(
        Value("[none.ccid, none.idType, none.channelType, none.onid, none.name, none.authorised].join()"),
        "string ccid://0.0,12,0,4294967295,,false");
    EXPECT_EQ(Value("none.genre"), "null");
    EXPECT_EQ(Value("none.nid"), "undefined");
    EXPECT_EQ(Value("none.dsd"), "string ");
}

TEST_F(ABinding, IsRefusedWhileItsClassIsNotBuilt) {
    EXPECT_EQ(Thrown("PrivateObjectFactory.createSearchManagerObject()").substr(0, 20),
              "TypeError|TypeError|");
}

TEST_F(ABinding, AcceptsAnyTextInADebugMessage) {
    EXPECT_EQ(Value("debug()"), "null");
    EXPECT_EQ(Value("debug('a\\ud800b\\0c', 2)"), "null");
    EXPECT_EQ(Value("debug({toString: function() { throw 'mine'; }})"), "null");
    EXPECT_EQ(Value("debug(Symbol())"), "null");
    EXPECT_EQ(page.main.Eval("function debug() { return 'the page\\'s own'; } debug()"), "the page's own");
}

}  // namespace
}  // namespace OipfJavaScript
