// The broadcast object as a page meets it: what it asks of the receiver, and what it makes of the receiver's
// events.

#include "Tests/Unit/TelevisionPage.h"

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class ABroadcastObject : public TelevisionPage {
 protected:
    std::string Thrown(const std::string& statement) {
        return Eval("try { " + statement + "; 'nothing' } catch (e) { e.name + '|' + e.description }");
    }
};

constexpr const char* kBadArguments = "SecurityError|Argument count or the argument types are bad";

TEST_F(ABroadcastObject, KeepsWhatAPageWritesToItself) {
    Eval("tv.playState = 7; tv.width = 640.9; tv.height = -1;");
    EXPECT_EQ(Value("[tv.playState, tv.width, tv.height, tv.fullScreen].join()"),
              "string 7,640,4294967295,false");
    Eval("tv.playState = -1e300; tv.width = 1e300; tv.height = NaN; tv.fullScreen = true;");
    EXPECT_EQ(Value("[tv.playState, tv.width, tv.height, tv.fullScreen].join()"),
              "string -2147483648,4294967295,4294967295,false");
    for (const char* name : {"width", "height", "playState"})
        EXPECT_EQ(Thrown("tv." + std::string(name) + " = '1'"), "TypeError|Value is not number") << name;
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
    EXPECT_EQ(Value("[tv.COMPONENT_TYPE_VIDEO, tv.COMPONENT_TYPE_AUDIO, tv.COMPONENT_TYPE_SUBTITLE].join()"),
              "string 0,1,2");
}

TEST_F(ABroadcastObject, TellsThePlayerWhereVideoIsWhenItChanges) {
    Eval("tv.setWindow(0, 0, 0, 0); tv.setWindow(1, 2, 640, 360); tv.setWindow(1, 2, 640, 360);");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("UpdateLayout", "1, 2, 640, 360, false")));
    Eval("tv.setWindow(-1, 1e300, Infinity, 0.5); tv.setWindow(NaN, 0, 0, 0); ");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("UpdateLayout", "4294967295, 4294967295, 4294967295, 0, false")));
    Fire(E_VBO_UPDATE_LAYOUT, id);
    EXPECT_EQ(player.TakeCalls().size(), 1U);
    // The markup's size reaches the object before the first layout does.
    Eval(
        "var other = PrivateObjectFactory.createVideoBroadcastObject(); other.width = 1280; other.height = "
        "720; "
        "other.setWindow(0, 0, 1280, 720)");
    EXPECT_EQ(player.TakeCalls().size(), 1U);
    EXPECT_EQ(Thrown("tv.setWindow(1, 2, 3)"), kBadArguments);
}

TEST_F(ABroadcastObject, EntersAndLeavesFullScreenOnce) {
    Eval(
        "tv.setWindow(1, 2, 3, 4); tv.onFullScreenChange = function() { "
        "log.push('handler', arguments.length, tv.fullScreen); tv.createChannelObject(); tv.currentChannel; "
        "}; "
        "tv.addEventListener('FullScreenChange', function(e) { log.push(e.type); });");
    (void)player.TakeCalls();
    EXPECT_EQ(Value("tv.setFullScreen(true)"), "undefined") << "what a handler fails at is its own affair";
    EXPECT_EQ(Value("tv.setFullScreen(true)"), "undefined");
    EXPECT_EQ(Log(), "handler,0,true,FullScreenChange");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("UpdateLayout", "1, 2, 3, 4, true"),
                                                "GetChannel (" + std::to_string(id) + ",)"));
    EXPECT_EQ(Thrown("tv.setFullScreen(1)"), kBadArguments);
}

TEST_F(ABroadcastObject, IsOutOfBoundsForAnApplicationWithoutABroadcast) {
    api.Reply("IsBroadcastRelated", "(false,)");
    for (const char* method : {"getChannelConfig", "bindToCurrentChannel"}) {
        EXPECT_EQ(Thrown("tv." + std::string(method) + "()"), "SecurityError|" + std::string(method) +
                                                                  " not available to broadcast independent "
                                                                  "applications");
    }
    EXPECT_EQ(Thrown("tv.width = 7"), "nothing") << "that was another call";
    EXPECT_EQ(Value("tv.currentChannel"), "null");
    EXPECT_EQ(Value("tv.programmes"), "null");
    EXPECT_EQ(Value("tv.setFullScreen(true)"), "null");
    EXPECT_EQ(Value("tv.fullScreen"), "boolean false");
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(ABroadcastObject, AsksThePlayerUnderItsOwnIdentifier) {
    Eval(
        "var second = PrivateObjectFactory.createVideoBroadcastObject(); tv.bindToCurrentChannel(); "
        "second.stop(); "
        "tv.nextChannel(); tv.prevChannel(); tv.release();");
    const std::string mine = std::to_string(id), next = std::to_string(id + 1);
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre("BindToCurrentChannel (" + mine + ",)", "Stop (" + next + ",)",
                            "NextOrPrevChannel (" + mine + ", true)",
                            "NextOrPrevChannel (" + mine + ", false)", "Release (" + mine + ",)"));
    EXPECT_EQ(Value("tv.currentChannel"), "null") << "the player knows of none";
    EXPECT_EQ(Value("tv.programmes"), "null");
}

TEST_F(ABroadcastObject, GivesItsPlayerBackWithItsPageItsFrameOrItself) {
    Eval(
        "var other = PrivateObjectFactory.createVideoBroadcastObject(); other.bindToCurrentChannel(); "
        "tv.onPlayStateChange = function() { tv.bindToCurrentChannel(); }; tv.bindToCurrentChannel()");
    page.StartLoad(page.main);
    // All players are released when the load begins, but the page runs on until the next one is there.
    Fire(E_VBO_STATE_CHANGE, 0, 0, 1000);
    (void)player.TakeCalls();
    page.main.Navigate();
    EXPECT_THAT(player.TakeCalls(), ElementsAre("Release (" + std::to_string(id) + ",)"));
    uint32_t next = id + 2;
    for (const char* call : {"bindToCurrentChannel()", "nextChannel()", "prevChannel()",
                             "setChannel(tv.createChannelObject(12, 1, 2, 3))"}) {
        FakeFrame& child = page.AddFrame();
        child.Eval("var tv = PrivateObjectFactory.createVideoBroadcastObject(); tv." + std::string(call));
        (void)player.TakeCalls();
        child.Remove();
        EXPECT_THAT(player.TakeCalls(), ElementsAre("Release (" + std::to_string(next++) + ",)")) << call;
    }
    FakeFrame& idle = page.AddFrame();
    idle.Eval(
        "var theirs = [...Array(20)].map(() => PrivateObjectFactory.createVideoBroadcastObject()); "
        "theirs[0].nextChannel(); theirs[0].release()");
    page.main.Share("theirs", idle);
    (void)player.TakeCalls();
    idle.Remove();
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
    // Who still holds them may begin anew.
    Eval("theirs.forEach((each, i) => { each.nextChannel(); if (i % 2) each.release(); }); theirs = null");
    idle.Eval("theirs = null");
    (void)player.TakeCalls();
    page.main.CollectGarbage();
    const std::vector<std::string> calls = player.TakeCalls(7);
    EXPECT_THAT(calls, testing::Each(testing::StartsWith("Release (")));
    EXPECT_THAT(calls.size(), testing::AllOf(testing::Ge(7U), testing::Le(10U)))
        << "but for false references";
}

TEST_F(ABroadcastObject, MakesChannelsFromWhatAPageKnows) {
    EXPECT_EQ(Value("(function(c) { return [c.idType, c.dsd, c.sid, c.onid, c.ccid].join(); })"
                    "(tv.createChannelObject(13, 'd\\u00ff\\0', 5))"),
              "string 13,d\u00ff\0,5,4294967295,ccid://0.0"s);
    EXPECT_EQ(Value("(function(c) { return [c.idType, c.onid, c.tsid, c.sid].join(); })"
                    "(tv.createChannelObject(12.7, 1, 4294967295, -1))"),
              "string 12,1,4294967295,4294967295");
    for (const char* arguments : {"", "0, 1", "0, 1, 2", "'0', 'dsd', 5", "0, 'dsd', '5'", "0, 1, 2, '3'",
                                  "0, null, 1, 2", "0, 1, 2, 3, 4"}) {
        EXPECT_EQ(Value("tv.createChannelObject(" + std::string(arguments) + ")"), "null") << arguments;
    }
}

TEST_F(ABroadcastObject, ChangesToTheChannelItIsGiven) {
    Eval(
        "var byNumbers = tv.createChannelObject(12, 1, 4294967295, 3); "
        "var bySystem = tv.createChannelObject(13, 'd\\u00ff', 5);");
    for (const char* call : {"tv.setChannel(byNumbers)", "tv.setChannel(bySystem, false)",
                             "tv.setChannel(byNumbers, true, 'http://x')"})
        EXPECT_EQ(Value(call), "null") << call;
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("SetChannel", "12, '', 1, -1, 3, 0"),
                                                Mine("SetChannel", "13, 'd\u00ff', -1, -1, 5, 0"),
                                                Mine("SetChannel", "12, '', 1, -1, 3, 0")));
    EXPECT_EQ(
        Value("[tv.setChannel(null), tv.setChannel(null, false), tv.setChannel(null, false, null)].join()"),
        "string ,,");
    EXPECT_EQ(Count(player.TakeCalls(), Mine("SetNullChannel", "true")), 3U);
    for (const char* arguments :
         {"", "{}", "tv", "7", "undefined", "byNumbers, 1", "byNumbers, false, '', 4"})
        EXPECT_EQ(Value("tv.setChannel(" + std::string(arguments) + ")"), "null") << arguments;
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
    EXPECT_THAT(cache.TakeCalls(), IsEmpty());
}

TEST_F(ABroadcastObject, HandsOutTheComponentsOfItsPlayer) {
    player.Reply("GetVideoComponents", "([(0, 'H264', true, -3, 7, 1, 'xxx', true, 133)],)");
    player.Reply("GetAudioComponents",
                 "([(1, 'AC3', false, 101, 7, 2, '', true, 6), "
                 "(9, 'unknown', false, 0, 0, 0, '', false, 0)],)");
    player.Reply("GetSbtComponents", "([(2, 'DVB', false, 102, 7, 255, 'deu', true, 5)],)");
    const std::string all =
        "string 0 1 -3 H264 true 1.33  false 0 false/1 2 101 AC3 false 0  true 6 false/2 255 102  false 0 "
        "deu false "
        "0 true";
    Eval(
        "function show(c) { var lines = []; for (var i = 0; i < c.length; i++) lines.push([c[i].type, "
        "c[i].componentTag, c[i].pid, c[i].encoding, c[i].encrypted, c[i].aspectRatio, c[i].language, "
        "c[i].audioDescription, c[i].audioChannels, c[i].hearingImpaired].join(' ')); return "
        "lines.join('/'); }");
    for (const char* arguments : {"", "null", "undefined", "'1'", "{}"})
        EXPECT_EQ(Value("show(tv.getComponents(" + std::string(arguments) + "))"), all) << arguments;
    EXPECT_EQ(Value("[tv.getComponents(2)[0].encoding, tv.getComponents(1)[0].language].join('|')"),
              "string |");
    EXPECT_EQ(Value("tv.getComponents(2)[0].encoding"), "undefined");
    EXPECT_EQ(Value("tv.getComponents(1)[1]"), "undefined");
    (void)player.TakeCalls();
    EXPECT_EQ(Value("tv.getCurrentActiveComponents(1.9).length"), "number 1");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("GetAudioComponents", "true")));
    for (const char* arguments : {"3", "-1", "1e300", "-1e300", "NaN", "1, 2"})
        EXPECT_EQ(Value("tv.getComponents(" + std::string(arguments) + ")"), "null") << arguments;
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(ABroadcastObject, SelectsComponentsInBothForms) {
    player.Reply("GetVideoComponents", "([(0, 'H264', true, -3, 7, 1, '', false, 133)],)");
    Eval("var video = tv.getComponents(0)[0]");
    (void)player.TakeCalls();
    Eval(
        "tv.selectComponent(video); tv.unselectComponent(video); tv.selectComponent(1); "
        "tv.unselectComponent(2); "
        "tv.selectComponent(-5); tv.selectComponent(1e300); tv.selectComponent(NaN);");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("SelectComponent", "0, -3"), Mine("UnselectComponent", "0, -3"),
                            Mine("SelectComponent", "1, -1"), Mine("UnselectComponent", "2, -1"),
                            Mine("SelectComponent", "-5, -1"), Mine("SelectComponent", "2147483647, -1")));
    EXPECT_EQ(Value("tv.selectComponent(tv.createChannelObject(12, 1, 2, 3))"), "null");
    EXPECT_EQ(Value("tv.unselectComponent({})"), "null");
    EXPECT_EQ(Thrown("tv.selectComponent()"), kBadArguments);
    EXPECT_EQ(Thrown("tv.selectComponent('1')"), kBadArguments);
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(ABroadcastObject, TakesTheAttributesOfItsElement) {
    EXPECT_EQ(Value("tv.setMimeType('video/broadcast')"), "undefined");
    EXPECT_EQ(Value("tv.setAttributes({type: 'video/broadcast', width: 640})"), "undefined");
    EXPECT_EQ(Eval("tv.setAttributes({get bad() { throw 'mine'; }})"), "throws: mine");
    EXPECT_EQ(Eval("tv.setAttributes({bad: {toString: function() { throw 'mine'; }}})"), "throws: mine");
    EXPECT_EQ(Thrown("tv.setAttributes('a=b')"), kBadArguments);
}

TEST_F(ABroadcastObject, TellsAPageHowAChannelChangeEnded) {
    cache.Reply(
        "GetChannelInfo",
        "('One', '', '', 12, 1, 2, 3, 4, false, 'ccid://1', true, false, false, false, 0, '', 1, true)");
    Fire(E_VBO_CHANNEL_CHANGE, id, 9, 1000);
    EXPECT_THAT(cache.TakeCalls(), IsEmpty()) << "nobody listens";
    Eval(
        "tv.onChannelChangeSucceeded = function(c) { log.push(c === null ? 'null' : c.name, "
        "arguments.length); }; "
        "tv.onChannelChangeError = function(c, e) { log.push(c, e); }; "
        "tv.addEventListener('ChannelChangeError', function(e) { log.push(e.channel + '/' + e.error); });");
    Fire(E_VBO_CHANNEL_CHANGE, id, 9, 1000);
    Fire(E_VBO_CHANNEL_CHANGE, 0, 0, 1000);
    EXPECT_EQ(Log(), "One,1,null,1");
    Fire(E_VBO_CHANNEL_CHANGE, id, 9, 5);
    Fire(E_VBO_CHANNEL_CHANGE, id, -1, -1);
    EXPECT_EQ(Log(), "9,5,9/5,4294967295,-1,4294967295/-1");
}

TEST_F(ABroadcastObject, HearsWhatIsAddressedToItOrToAll) {
    Eval(
        "var second = PrivateObjectFactory.createVideoBroadcastObject(); "
        "tv.onPlayStateChange = function(s, e) { log.push('tv', s, e === undefined); }; "
        "second.onPlayStateChange = function(s, e) { log.push('second', s, e); };");
    Fire(E_VBO_STATE_CHANGE, id, 2, 1000);
    Fire(E_VBO_STATE_CHANGE, id + 1, 3, 4);
    Fire(E_VBO_STATE_CHANGE, id + 2, 1, 1000);
    Fire(E_AVC_STATE, id, 9, 9);
    EXPECT_EQ(Log(), "tv,2,true,second,3,4");
    EXPECT_EQ(Value("tv.playState + '/' + second.playState"), "string 2/3");
    Eval("tv.onPlayStateChange = second.onPlayStateChange = null");
    Fire(E_VBO_STATE_CHANGE, 0, 1, 1000);
    EXPECT_EQ(Value("tv.playState + '/' + second.playState"), "string 1/1");
}

TEST_F(ABroadcastObject, AnnouncesASelectedComponentUnderBothNames) {
    Eval(
        "function hear(e) { log.push(e.type, e.componentType); } "
        "tv.onSelectedComponentChanged = function(t) { log.push('handler', t); }; "
        "tv.addEventListener('SelectedComponentChange', hear); "
        "tv.addEventListener('SelectedComponentChanged', hear);");
    Fire(E_VBO_COMPONENT_SELECT, id, 1);
    EXPECT_EQ(Log(), "handler,1,SelectedComponentChanged,1,SelectedComponentChange,1");
    Fire(E_VBO_COMPONENT_SELECT, id, -7);
    EXPECT_EQ(Log(), "handler,-7,SelectedComponentChanged,-7,SelectedComponentChange,-7");
}

TEST_F(ABroadcastObject, MayGoBetweenTheTwoNamesOfOneEvent) {
    Eval(R"(function make(stays) {
        var each = PrivateObjectFactory.createVideoBroadcastObject();
        each.onSelectedComponentChanged = function() {
            log.push('first');
            each.onSelectedComponentChanged = null;
            each = null;
            for (var i = 0; i < 3; i++) PrivateObjectFactory.createVideoBroadcastObject();
            collect();
        };
        if (stays)
            each.addEventListener('SelectedComponentChange', function() { log.push('second'); });
    }
    for (var i = 0; i < 6; i++) make(i % 2);)");
    Fire(E_VBO_COMPONENT_SELECT, 0, 1);
    EXPECT_EQ(Eval("log.splice(0).sort().join()"),
              "first,first,first,first,first,first,second,second,second");
    page.main.CollectGarbage();
    Fire(E_VBO_COMPONENT_SELECT, 0, 1);
    EXPECT_EQ(Log(), "second,second,second");
}

TEST_F(ABroadcastObject, ReportsAParentalRating) {
    Eval(
        "tv.onParentalRatingChange = function(content, ratings, drm) { var r = ratings[0]; log.push(content "
        "=== "
        "undefined, ratings.length, r.scheme, r.name, r.value, r.labels, r.region === '', drm); }");
    Fire(E_VBO_PARENTAL_RATING, id, 12, 0x10000);
    Fire(E_VBO_PARENTAL_RATING, id, 0, 0x14ADC);
    EXPECT_EQ(Log(), "true,1,dvb-si,12,12,0,true,,true,1,dvb-si,0,0,0,true,19164");
}

TEST_F(ABroadcastObject, NeverFiresWhatTheReceiverDoesNotReport) {
    Eval(
        "['ProgrammesChanged', 'DRMRightsError', 'ParentalRatingError'].forEach(function(name) { "
        "tv['on' + name] = function() { log.push(name); }; });");
    for (const int32_t code : {E_VBO_DRM_RIGHTS_ERROR, E_VBO_PROGRAMMES_CHANGED, E_VBO_GOING_DOWN})
        Fire(code, id);
    EXPECT_EQ(Log(), "");
}

}  // namespace
