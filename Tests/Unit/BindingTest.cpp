// The binding classes as a page meets them.

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

class ABinding : public testing::Test, protected TestedPage {
 protected:
    ABinding() {
        JSContextRef context = page.main.context;
        const std::vector<std::string> strings{"eng", "", "d\u00e9u"};
        page.main.SetGlobal("keyset", MakeObject<jiKeyset>(context));
        page.main.SetGlobal("channel", MakeObject<jiChannel>(context, 12, 1, 2, 3));
        page.main.SetGlobal("strings", MakeObject<jiStringCollection>(context, strings));
    }
};

TEST_F(ABinding, CannotBeMadeByAPage) {
    EXPECT_EQ(Thrown("new Keyset()"), "SecurityError|Not allowed to create Keyset object directly");
    EXPECT_EQ(Eval("try { new Channel() } catch (e) { '' + e }"),
              "[object Exception] : \"SecurityError\", \"Not allowed to create Channel object directly\"");
    EXPECT_EQ(Value("typeof PrivateObjectFactory"), "string object") << "an instance, no constructor";
}

TEST_F(ABinding, CarriesItsConstantsReadOnlyOnConstructorAndInstance) {
    EXPECT_EQ(Value("[Keyset.RED, Keyset.OTHER, keyset.BLUE].join()"), "string 1,1024,8");
    Eval("Keyset.RED = 5; keyset.RED = 6");
    EXPECT_EQ(Value("Keyset.RED === 1 && keyset.RED === 1"), "boolean true");
    EXPECT_EQ(Value("[channel.ID_ISDB_T, channel.TYPE_OTHER].join()"), "string 21,2");
    EXPECT_EQ(
        Eval("['LEFT', '0', 'Z', 'RED', 'VOLUME_DOWN', 'BACK', 'PLAY_PAUSE'].map(k => KeyEvent['VK_' + k])"),
        "37,48,90,403,448,461,463");
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
    ExpectAll("null", {"keyset.setValue.call(channel, 1)", "strings.item.call(keyset, 0)",
                       "keyset.setValue.call({}, 1)", "keyset.setValue.call(undefined, 1)",
                       "strings.item.call(Object.getPrototypeOf(strings), 0)"});
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
    Eval("channel.favourite = 'yes'; channel.sid = 99; channel[0] = 'zero'");
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
    ExpectAll("undefined",
              {"strings.item(3)", "strings.item(-1)", "strings.item(Infinity)", "strings.item(-1e300)"});
    EXPECT_EQ(Value("[strings.item(0.9), strings.item(NaN)].join()"), "string eng,");
    EXPECT_EQ(Eval("['00', '-1', '1.0', 4294967295, ''].map(index => strings[index]).join()"), ",,,,");
    EXPECT_EQ(Value("Object.keys(strings).join()"), "string length");
    EXPECT_EQ(Eval("var names = []; for (const name in strings) names.push(name); names.join()"),
              "length,item");
}

TEST_F(ABinding, AcceptsAnyTextInADebugMessage) {
    ExpectAll("null", {"debug()", "debug('a\\ud800b\\0c', 2)",
                       "debug({toString: function() { throw 'mine'; }})", "debug(Symbol())"});
    EXPECT_EQ(Eval("function debug() { return 'the page\\'s own'; } debug()"), "the page's own");
}

}  // namespace
}  // namespace OipfJavaScript
