// The broadcast object as a page meets it: what it asks of the receiver, and what it makes of the receiver's
// events.

#include "Tests/Unit/TelevisionPage.h"

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class ABroadcastObject : public TelevisionPage {};

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
    Eval("var other = make(); other.width = 1280; other.height = 720; other.setWindow(0, 0, 1280, 720)");
    EXPECT_EQ(player.TakeCalls().size(), 1U);
    EXPECT_EQ(Thrown("tv.setWindow(1, 2, 3)"), kBadArguments);
}

TEST_F(ABroadcastObject, EntersAndLeavesFullScreenOnce) {
    Eval(R"(tv.setWindow(1, 2, 3, 4);
            tv.onFullScreenChange = (...all) => {
                log.push('handler', all.length, tv.fullScreen); tv.createChannelObject(); tv.currentChannel;
            };
            tv.addEventListener('FullScreenChange', e => log.push(e.type));)");
    (void)player.TakeCalls();
    EXPECT_EQ(Value("tv.setFullScreen(true)"), "undefined") << "what a handler fails at is its own affair";
    EXPECT_EQ(Value("tv.setFullScreen(true)"), "undefined");
    EXPECT_EQ(Log(), "handler,0,true,FullScreenChange");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("UpdateLayout", "1, 2, 3, 4, true"), Mine("GetChannel")));
    EXPECT_EQ(Thrown("tv.setFullScreen(1)"), kBadArguments);
}

TEST_F(ABroadcastObject, IsOutOfBoundsForAnApplicationWithoutABroadcast) {
    api.Reply("IsBroadcastRelated", "(false,)");
    for (const std::string method : {"getChannelConfig", "bindToCurrentChannel"})
        EXPECT_EQ(Thrown("tv." + method + "()"),
                  "SecurityError|" + method + " not available to broadcast independent applications");
    EXPECT_EQ(Thrown("tv.width = 7"), "nothing") << "that was another call";
    ExpectAll("null", {"tv.currentChannel", "tv.programmes", "tv.setFullScreen(true)"});
    EXPECT_EQ(Value("tv.fullScreen"), "boolean false");
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(ABroadcastObject, AsksThePlayerUnderItsOwnIdentifier) {
    Eval("tv.bindToCurrentChannel(); make().stop(); tv.nextChannel(); tv.prevChannel(); tv.release();");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("BindToCurrentChannel"), Theirs(1, "Stop"),
                                                Mine("NextOrPrevChannel", "true"),
                                                Mine("NextOrPrevChannel", "false"), Mine("Release")));
    EXPECT_EQ(Value("tv.currentChannel"), "null") << "the player knows of none";
    EXPECT_EQ(Value("tv.programmes"), "null");
}

TEST_F(ABroadcastObject, GivesItsPlayerBackWithItsPageItsFrameOrItself) {
    Eval("make().bindToCurrentChannel(); (tv.onPlayStateChange = () => tv.bindToCurrentChannel())()");
    page.StartLoad(page.main);
    // All players are released when the load begins, but the page runs on until the next one is there.
    Fire(E_VBO_STATE_CHANGE, 0, 0, 1000);
    (void)player.TakeCalls();
    page.main.Navigate();
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("Release")));
    uint32_t next = 2;
    for (const char* call : {"bindToCurrentChannel()", "nextChannel()", "prevChannel()",
                             "setChannel(tv.createChannelObject(12, 1, 2, 3))"}) {
        FakeFrame& child = page.AddFrame();
        child.Eval("var tv = PrivateObjectFactory.createVideoBroadcastObject(); tv." + std::string(call));
        (void)player.TakeCalls();
        child.Remove();
        EXPECT_THAT(player.TakeCalls(), ElementsAre(Theirs(next++, "Release"))) << call;
    }
    FakeFrame& idle = page.AddFrame();
    idle.Eval(R"(var theirs = [...Array(20)].map(() => PrivateObjectFactory.createVideoBroadcastObject());
                 theirs[0].nextChannel(); theirs[0].release())");
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
    Eval("var show = c => [c.idType, c.onid, c.tsid, c.sid, c.dsd, c.ccid].join()");
    EXPECT_EQ(Eval("show(tv.createChannelObject(13, 'd\\u00ff\\0', 5))"),
              "13,4294967295,4294967295,5,d\u00ff\0,ccid://0.0"s);
    EXPECT_EQ(Eval("show(tv.createChannelObject(12.7, 1, 4294967295, -1))"),
              "12,1,4294967295,4294967295,,ccid://0.0");
    for (const char* arguments : {"", "0, 1", "0, 1, 2", "'0', 'dsd', 5", "0, 'dsd', '5'", "0, 1, 2, '3'",
                                  "0, null, 1, 2", "0, 1, 2, 3, 4"}) {
        EXPECT_EQ(Value("tv.createChannelObject(" + std::string(arguments) + ")"), "null") << arguments;
    }
}

TEST_F(ABroadcastObject, ChangesToTheChannelItIsGiven) {
    Eval(R"(var byNumbers = tv.createChannelObject(12, 1, 4294967295, 3),
                bySystem = tv.createChannelObject(13, 'd\u00ff', 5);)");
    ExpectAll("null", {"tv.setChannel(byNumbers)", "tv.setChannel(bySystem, false)",
                       "tv.setChannel(byNumbers, true, 'http://x')"});
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("SetChannel", "12, '', 1, -1, 3, 0"),
                                                Mine("SetChannel", "13, 'd\u00ff', -1, -1, 5, 0"),
                                                Mine("SetChannel", "12, '', 1, -1, 3, 0")));
    for (const char* call : {"null", "null, false", "null, false, null"})
        EXPECT_EQ(Value("tv.setChannel(" + std::string(call) + ")"), "null") << call;
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
        "string 0 1 -3 H264 true 1.33  false 0 false/1 2 101 AC3 false 0  true 6 false/"
        "2 255 102  false 0 deu false 0 true";
    Eval(R"(const show = all => Array.from(all, c =>
        [c.type, c.componentTag, c.pid, c.encoding, c.encrypted, c.aspectRatio, c.language,
         c.audioDescription, c.audioChannels, c.hearingImpaired].join(' ')).join('/'))");
    for (const char* arguments : {"", "null", "undefined", "'1'", "{}"})
        EXPECT_EQ(Value("show(tv.getComponents(" + std::string(arguments) + "))"), all) << arguments;
    EXPECT_EQ(Value("[tv.getComponents(2)[0].encoding, tv.getComponents(1)[0].language].join('|')"),
              "string |");
    ExpectAll("undefined", {"tv.getComponents(2)[0].encoding", "tv.getComponents(1)[1]"});
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
    Eval(R"(tv.selectComponent(video); tv.unselectComponent(video);
            tv.selectComponent(1); tv.unselectComponent(2);
            tv.selectComponent(-5); tv.selectComponent(1e300); tv.selectComponent(NaN);)");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("SelectComponent", "0, -3"), Mine("UnselectComponent", "0, -3"),
                            Mine("SelectComponent", "1, -1"), Mine("UnselectComponent", "2, -1"),
                            Mine("SelectComponent", "-5, -1"), Mine("SelectComponent", "2147483647, -1")));
    ExpectAll("null",
              {"tv.selectComponent(tv.createChannelObject(12, 1, 2, 3))", "tv.unselectComponent({})"});
    for (const char* bad : {"tv.selectComponent()", "tv.selectComponent('1')"})
        EXPECT_EQ(Thrown(bad), kBadArguments) << bad;
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(ABroadcastObject, TakesTheAttributesOfItsElement) {
    ExpectAll("undefined", {"tv.setMimeType('video/broadcast')",
                            "tv.setAttributes({type: 'video/broadcast', width: 640})"});
    EXPECT_EQ(Eval("tv.setAttributes({get bad() { throw 'mine'; }})"), "throws: mine");
    EXPECT_EQ(Eval("tv.setAttributes({bad: {toString() { throw 'mine'; }}})"), "throws: mine");
    EXPECT_EQ(Thrown("tv.setAttributes('a=b')"), kBadArguments);
}

TEST_F(ABroadcastObject, TellsAPageHowAChannelChangeEnded) {
    cache.Reply(
        "GetChannelInfo",
        "('One', '', '', 12, 1, 2, 3, 4, false, 'ccid://1', true, false, false, false, 0, '', 1, true)");
    Fire(E_VBO_CHANNEL_CHANGE, id, 9, 1000);
    EXPECT_THAT(cache.TakeCalls(), IsEmpty()) << "nobody listens";
    Eval(R"(tv.onChannelChangeSucceeded = (c, ...more) => log.push(c === null ? 'null' : c.name, more.length);
            tv.onChannelChangeError = (c, e) => log.push(c, e);
            tv.addEventListener('ChannelChangeError', e => log.push(e.channel + '/' + e.error));)");
    Fire(E_VBO_CHANNEL_CHANGE, id, 9, 1000);
    Fire(E_VBO_CHANNEL_CHANGE, 0, 0, 1000);
    EXPECT_EQ(Log(), "One,0,null,0");
    Fire(E_VBO_CHANNEL_CHANGE, id, 9, 5);
    Fire(E_VBO_CHANNEL_CHANGE, id, -1, -1);
    EXPECT_EQ(Log(), "9,5,9/5,4294967295,-1,4294967295/-1");
}

TEST_F(ABroadcastObject, HearsWhatIsAddressedToItOrToAll) {
    Eval(R"(var second = make(); tv.onPlayStateChange = (s, e) => log.push('tv', s, e === undefined);
            second.onPlayStateChange = (s, e) => log.push('second', s, e);)");
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
    Eval(R"(const hear = e => log.push(e.type, e.componentType);
            tv.onSelectedComponentChanged = t => log.push('handler', t);
            tv.addEventListener('SelectedComponentChange', hear);
            tv.addEventListener('SelectedComponentChanged', hear);)");
    for (const int32_t type : {1, -7}) {
        Fire(E_VBO_COMPONENT_SELECT, id, type);
        const std::string told = "," + std::to_string(type);
        EXPECT_EQ(Log(),
                  "handler" + told + ",SelectedComponentChanged" + told + ",SelectedComponentChange" + told);
    }
}

TEST_F(ABroadcastObject, MayGoBetweenTheTwoNamesOfOneEvent) {
    Eval(R"(function go(stays) {
        var each = make();
        each.onSelectedComponentChanged = () => {
            log.push('first');
            each.onSelectedComponentChanged = null;
            each = null;
            for (var i = 0; i < 3; i++) make();
            collect();
        };
        if (stays)
            each.addEventListener('SelectedComponentChange', () => log.push('second'));
    }
    for (var i = 0; i < 6; i++) go(i % 2);)");
    Fire(E_VBO_COMPONENT_SELECT, 0, 1);
    EXPECT_EQ(Eval("log.splice(0).sort().join()"),
              "first,first,first,first,first,first,second,second,second");
    page.main.CollectGarbage();
    Fire(E_VBO_COMPONENT_SELECT, 0, 1);
    EXPECT_EQ(Log(), "second,second,second");
}

TEST_F(ABroadcastObject, ReportsAParentalRating) {
    Eval(R"(tv.onParentalRatingChange = (content, ratings, drm) => {
        const {scheme, name, value, labels, region} = ratings[0];
        log.push(content === undefined, ratings.length, scheme, name, value, labels, region === '', drm);
    };)");
    Fire(E_VBO_PARENTAL_RATING, id, 12, 0x10000);
    Fire(E_VBO_PARENTAL_RATING, id, 0, 0x14ADC);
    EXPECT_EQ(Log(), "true,1,dvb-si,12,12,0,true,,true,1,dvb-si,0,0,0,true,19164");
}

TEST_F(ABroadcastObject, NeverFiresWhatTheReceiverDoesNotReport) {
    Eval(R"(for (const name of ['ProgrammesChanged', 'DRMRightsError', 'ParentalRatingError'])
                tv['on' + name] = () => log.push(name);)");
    for (const int32_t code : {E_VBO_DRM_RIGHTS_ERROR, E_VBO_PROGRAMMES_CHANGED, E_VBO_GOING_DOWN})
        Fire(code, id);
    EXPECT_EQ(Log(), "");
}

}  // namespace
