// The A/V control object as a page meets it: what it asks of the receiver's player and in which order, and
// what it makes of the receiver's events.

#include <algorithm>

#include "API/Src/SDrmErrorParams.h"
#include "Tests/Unit/PlayerPage.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Bytes = std::vector<uint8_t>;

constexpr const char* kDocument = "'http://tv.example/app/index.html?a=b'";

class AnAVControl : public PlayerPage {
 protected:
    AnAVControl() : PlayerPage("IAVEventHandler", "createVideoMpegObject", "av") {
        player.Reply("CheckMimeType", "(true,)");
        player.Reply("GetPlayer", "(true,)");
        Eval(R"(document = {location: {origin: 'http://tv.example', pathname: '/app/index.html',
                                       href: 'http://tv.example/app/index.html?a=b'}};)");
    }

    static bool Logged(const std::string& text) {
        return std::ranges::any_of(LogCapture::Records(), [&](const LogCapture::Record& record) {
            return record.text.find(text) != std::string::npos;
        });
    }
    void ChangeState(int32_t state, int32_t error = 0) { Fire(E_AVC_STATE, id, state, error); }
    static void SendSAS(const Bytes& message) {
        CDAEBrowserAPIWK::GetInstance()->SendSASDataToPlugins(message.data(), message.size());
    }
};

TEST_F(AnAVControl, SetsAPlayerUpBeforeItPlays) {
    Eval(R"(av.setMimeType('video/mp4'); av.setAttributes({quality: 'low', id: 'v'});
            av.setAttributes({quality: 'high'}); av.data = 'film.mp4';)");
    EXPECT_THAT(player.TakeCalls(), ElementsAre("CheckMimeType ('video/mp4',)",
                                                Mine("SetData", "'http://tv.example/app/film.mp4'")));
    EXPECT_EQ(Value("av.data"), "string http://tv.example/app/film.mp4");
    EXPECT_EQ(Value("av.play(1)"), "boolean true");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("FlagPlayerActive"), Mine("GetPlayer"), Mine("SetLocation", kDocument),
                            Mine("SetData", "'http://tv.example/app/film.mp4'"),
                            Mine("SetMimeType", "'video/mp4'"), Mine("SetAttribute", "'id', 'v'"),
                            Mine("SetAttribute", "'quality', 'high'"), Mine("Play", "1.0")));
    player.Reply("FlagPlayerActive", "(true,)");
    EXPECT_EQ(Value("[av.play(0), av.play(-1.5), av.play(1e300), av.play(-Infinity)].join()"),
              "string true,true,true,true");
    const std::string active = Mine("FlagPlayerActive"), most = "3.4028234663852886e+38";
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(active, Mine("Play", "0.0"), active, Mine("Play", "-1.5"), active,
                            Mine("Play", most), active, Mine("Play", "-" + most)));
    EXPECT_EQ(Value("av.play(NaN)"), "null");
    EXPECT_EQ(Thrown("av.play()"), "SecurityError|Argument count or the argument types are bad");
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(AnAVControl, QueuesBehindARunningPlayerAndStartsOneOtherwise) {
    Eval("av.setMimeType('audio/mpeg'); av.setAttributes({quality: 'low'}); av.data = 'first.mp3';");
    (void)player.TakeCalls();
    EXPECT_EQ(Value("av.queue('second.mp3')"), "boolean true");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("FlagPlayerActive"), Mine("GetPlayer"), Mine("SetLocation", kDocument),
                            Mine("SetAttribute", "'quality', 'low'"), Mine("SetMimeType", "'audio/mpeg'"),
                            Mine("SetData", "'http://tv.example/app/second.mp3'"), Mine("Play", "1.0")));
    EXPECT_EQ(Value("av.data"), "string http://tv.example/app/second.mp3");
    player.Reply("FlagPlayerActive", "(true,)");
    EXPECT_EQ(Value("[av.queue('http://x/3.mp3'), av.queue(null)].join()"), "string true,true");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("FlagPlayerActive"), Mine("Queue", "'http://x/3.mp3'"),
                                                Mine("Queue", "''")));
    EXPECT_EQ(Value("av.data"), "string http://tv.example/app/second.mp3");
}

TEST_F(AnAVControl, TellsThePageWhenThereIsNoPlayerToBeHad) {
    player.Reply("GetPlayer", "(false,)");
    Eval(R"(av.data = 'http://x/a.mp4'; av.onPlayStateChange = (state, error) => {
                log.push(state, error);
                try { av.setWindow(); } catch (e) {}
                av.getComponents(7);
            };)");
    (void)player.TakeCalls();
    for (const char* start : {"av.play(1)", "av.queue('http://x/b.mp4')"}) {
        EXPECT_EQ(Value(start), "boolean true");
        EXPECT_EQ(Log(), "0,3") << start;
        EXPECT_EQ(Value("[av.playState, av.error, av.data].join()"), "string 0,3,http://x/a.mp4");
        EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("FlagPlayerActive"), Mine("GetPlayer")));
    }
    EXPECT_TRUE(Logged("Failed to get player!!"));
    player.Fail("GetPlayer", "no such thing");
    Eval("av.play(1)");
    EXPECT_EQ(Log(), "0,3");
}

TEST_F(AnAVControl, AsksForProgressOnlyWhenThereIsSome) {
    player.Reply("GetPlayPosition", "(uint32 4000000000,)");
    player.Reply("GetPlayTime", "(uint32 5000,)");
    player.Reply("GetSpeed", "(1.5,)");
    const std::string position = Mine("GetPlayPosition"), time = Mine("GetPlayTime");
    Eval("var progress = () => [av.playPosition, av.playTime, av.speed].join()");
    for (const int state : {0, 3, 4, 5, 6}) {
        ChangeState(state);
        EXPECT_EQ(Value("progress()"), "string 0,0,0") << state;
        EXPECT_THAT(player.TakeCalls(), IsEmpty()) << state;
    }
    ChangeState(1);
    EXPECT_EQ(Value("progress()"), "string 4000000000,5000,1.5");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(position, time, Mine("GetSpeed")));
    ChangeState(2);
    EXPECT_EQ(Value("progress()"), "string 4000000000,5000,0") << "paused";
    EXPECT_THAT(player.TakeCalls(), ElementsAre(position, time));
}

TEST_F(AnAVControl, TakesATypeThatTheReceiverPlays) {
    Eval("av.type = 'video/mp4'; av.type = 'video/mp4';");
    const std::string check = "CheckMimeType ('video/mp4',)";
    EXPECT_THAT(player.TakeCalls(), ElementsAre(check, Mine("ChangeMimeType", "'video/mp4'"), check));
    player.Reply("CheckMimeType", "(false,)");
    Eval("av.type = 'video/ogg'; av.setMimeType('video/webm');");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre("CheckMimeType ('video/ogg',)", "CheckMimeType ('video/webm',)"));
    EXPECT_TRUE(Logged("not allowed to run"));
    player.Reply("GetMimeType", "('video/mp2t',)");
    for (const int state : {0, 1, 2, 3, 4, 5, 6}) {
        ChangeState(state);
        const bool own = state == 0 || state == 5;
        EXPECT_EQ(Value("av.type"), own ? "string video/mp4" : "string video/mp2t") << state;
        EXPECT_EQ(player.TakeCalls().size(), own ? 0U : 1U) << state;
    }
}

TEST_F(AnAVControl, ReadsAsTextWhateverAPageWritesToDataAndType) {
    Eval("av.data = ''; av.data = null; av.data = {toString: () => 'a.mp4'};");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("SetData", "''"), Mine("SetData", "''"),
                                                Mine("SetData", "'http://tv.example/app/a.mp4'")));
    EXPECT_EQ(Eval("av.data = {toString() { throw 'mine'; }}"), "throws: mine");
    EXPECT_EQ(Eval("av.type = {toString() { throw 'mine'; }}"), "throws: mine");
    EXPECT_EQ(Eval("av.data = Symbol()").substr(0, 18), "throws: TypeError:");
    EXPECT_EQ(Value("av.data"), "string http://tv.example/app/a.mp4");
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(AnAVControl, HasASizeThatIsNotThePagesInFullScreen) {
    Eval(R"(av.onFullScreenChange = (...all) => log.push(all.length, av.fullScreen);
            av.width = 640.9; av.height = -1; av.setWindow(1, 2, 640, 360); av.setWindow(1, 2, 640, 360);)");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("UpdateLayout", "0, 0, 640, 0, false"),
                                                Mine("UpdateLayout", "0, 0, 640, 4294967295, false"),
                                                Mine("UpdateLayout", "1, 2, 640, 360, false")));
    EXPECT_EQ(Value("[av.setFullScreen(true), av.setFullScreen(true)].join()"), "string ,");
    EXPECT_EQ(Log(), "0,true");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("UpdateLayout", "1, 2, 640, 360, true")));
    EXPECT_EQ(Thrown("av.width = {}"), "TypeError|Value is not number");
    EXPECT_EQ(Thrown("av.width = 7"), "Width|Readonly in fullscreen mode");
    EXPECT_EQ(Thrown("av.height = 7"), "Height|Readonly in fullscreen mode");
    EXPECT_EQ(Thrown("av.height = 'high'"), "nothing") << "that was another call";
    EXPECT_EQ(Value("[av.width, av.height].join()"), "string 640,360");
    EXPECT_EQ(Thrown("av.setFullScreen(false); av.width = ' 7 '"), "nothing");
    (void)player.TakeCalls();
    EXPECT_EQ(Value("(av.width = 'wide', av.width = ' ', av.width = NaN, av.width)"), "number 7");
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
    Send(event_t::Plain(E_AVC_UPDATE_LAYOUT, id));
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("UpdateLayout", "1, 2, 7, 360, false")));
}

TEST_F(AnAVControl, ControlsItsPlayer) {
    player.Reply("Stop", "(true,)");
    player.Reply("Seek", "(true,)");
    player.Reply("GetNrTracks", "(3,)");
    player.Reply("GetCurrentTrack", "(2,)");
    EXPECT_EQ(Value("[av.stop(), av.seek(1500.7), av.seek(1e300), av.setVolume(-1e300), av.nrTracks, "
                    "(av.currentTrackIndex = 1, av.currentTrackIndex), av.next(), av.previous(), "
                    "av.getSinkProtocolInfo() + av.getTransportStateVariables() + "
                    "av.setTransportStateVariables()].join()"),
              "string true,true,true,false,3,2,false,false,");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("Stop"), Mine("Seek", "1500"), Mine("Seek", "2147483647"),
                            Mine("SetVolume", "-2147483648"), Mine("GetNrTracks"), Mine("GetCurrentTrack")));
    EXPECT_EQ(Value("av.release()"), "boolean true");
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("Stop"), Mine("ReleasePlayer")));
    EXPECT_EQ(Value("[av.COMPONENT_TYPE_VIDEO, av.COMPONENT_TYPE_AUDIO, av.COMPONENT_TYPE_SUBTITLE].join()"),
              "string 0,1,2");
}

TEST_F(AnAVControl, HasTheComponentsOfTheMediaPlayer) {
    player.Reply("GetAudioComponents", "([(1, 'AAC', false, 101, 7, 2, 'eng', true, 6)],)");
    EXPECT_EQ(Value("av.getComponents(1)[0].language"), "string eng");
    EXPECT_EQ(Value("av.getCurrentActiveComponents().length"), "number 1");
    EXPECT_EQ(Value("av.getComponents(3)"), "null");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("GetAudioComponents", "false"), Mine("GetVideoComponents", "true"),
                            Mine("GetAudioComponents", "true"), Mine("GetSbtComponents", "true")));
    Eval("var audio = av.getComponents(1)[0];");
    (void)player.TakeCalls();
    Eval(R"(av.selectComponent(audio); av.selectComponent(2);
            av.unselectComponent(audio); av.unselectComponent(1))");
    EXPECT_THAT(player.TakeCalls(),
                ElementsAre(Mine("SelectComponent", "1, 101"), Mine("SelectComponent", "2, -1"),
                            Mine("UnselectComponent", "1, 101"), Mine("UnselectComponent", "1, -1")));
    Eval(R"(av.onSelectedComponentChanged = t => log.push('on' + t);
            av.addEventListener('SelectedComponentChange', e => log.push(e.type + e.componentType));)");
    Send(event_t::WithSigned(E_AVC_COMPONENT_SELECT, id, 1));
    EXPECT_EQ(Log(), "on1,SelectedComponentChange1");
}

TEST_F(AnAVControl, HearsOfItsOwnPlayerOnly) {
    Eval(R"(var other = make(); [av, other].forEach((each, i) => {
                const hear = (...all) => log.push([i, ...all].join(' '));
                each.onPlayStateChange = (state, error) => hear(state, error, typeof error);
                each.onPlaySpeedChanged = each.onPlayPositionChanged = hear;
            });)");
    ChangeState(1, 1000);
    Send(event_t::WithFloat(E_AVC_PLAYSPEED, id + 1, -2.5F));
    Send(event_t::WithUnsigned(E_AVC_PLAYPOSITION, id, 4000000000U));
    Fire(E_AVC_STATE, id + 2, 6, 4);
    EXPECT_EQ(Log(), "0 1 1000 number,1 -2.5,0 4000000000");
    EXPECT_EQ(Value("[av.playState, av.error, other.playState].join()"), "string 1,1000,0");
    Fire(E_AVC_STATE, 0, 6, 4);
    EXPECT_EQ(Value("log.sort().join()"), "string 0 6 4 number,1 6 4 number") << "0 addresses all";
    Eval("other.play(1)");
    EXPECT_EQ(player.TakeCalls().front(), Theirs(1, "FlagPlayerActive"));
    Send(event_t::Plain(E_AVC_GOING_DOWN, id));
    Send(event_t::Plain(E_SAS_SESSION_MESSAGE, 0));
    EXPECT_TRUE(Logged("Going down!"));
    EXPECT_TRUE(Logged("SAS Session message!"));
}

TEST_F(AnAVControl, ReadsTheLastReportWhileItsPlayerDoesNotAnswer) {
    ChangeState(1);
    Send(event_t::WithFloat(E_AVC_PLAYSPEED, id, 2));
    Send(event_t::WithUnsigned(E_AVC_PLAYPOSITION, id, 1500));
    for (const char* method : {"GetSpeed", "GetPlayPosition", "GetPlayTime", "GetMimeType", "GetNrTracks"})
        player.Fail(method, "gone");
    EXPECT_EQ(Value("[av.speed, av.playPosition, av.playTime, av.type, av.nrTracks].join()"),
              "string 2,1500,0,,0");
}

TEST_F(AnAVControl, TellsOfMissingRights) {
    Eval("av.onDRMRightsError = (...all) => log.push(all.map(String).join(' '));");
    const SDrmErrorParams params{.contentId = "c\u00e9", .rightsIssuerUrl = "http://r", .errorState = 2};
    Send(event_t::WithRecord(E_AVC_DRM_ERROR_MSG, id, &params));
    Send(event_t::WithUnsigned(E_AVC_DRM_ERROR_MSG, id, 1));
    EXPECT_EQ(Log(), "2 c\u00e9 null http://r,1  null ");
}

TEST_F(AnAVControl, GivesItsPlayerBackWithItsPageItsFrameOrItself) {
    Eval("[av, make()].forEach(each => each.play(1));");
    page.StartLoad(page.main);
    // All players are stopped when the load begins, but the page runs on until the next one is there.
    Eval("av.play(1)");
    (void)player.TakeCalls();
    page.main.Navigate();
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Mine("ReleasePlayer")));

    FakeFrame& child = page.AddFrame();
    child.Eval(R"(var make = () => PrivateObjectFactory.createVideoMpegObject(), av = make();
                  av.play(1); av.release(); av.queue('http://x/a'); var theirs = [...Array(20)].map(make))");
    page.main.Share("theirs", child);
    ChangeState(5);
    (void)player.TakeCalls();
    child.Remove();
    EXPECT_THAT(player.TakeCalls(), ElementsAre(Theirs(2, "ReleasePlayer")));

    // Who still holds the others may begin anew.
    Eval("theirs.forEach((each, i) => { each.play(1); if (i % 2) each.release(); }); theirs = null");
    child.Eval("theirs = null");
    (void)player.TakeCalls();
    page.main.CollectGarbage();
    const std::vector<std::string> calls = player.TakeCalls(14);
    EXPECT_THAT(calls.size(), testing::AllOf(testing::Ge(14U), testing::Le(20U)))
        << "but for false references";
    for (size_t i = 0; i + 1 < calls.size(); i += 2)
        EXPECT_EQ(calls[i + 1], "ReleasePlayer" + calls[i].substr(4)) << "after " << calls[i];
}

class ASasMessageOfRatings : public AnAVControl {
 protected:
    ASasMessageOfRatings() {
        Eval(R"(
            const text = r => r.scheme + r.value + r.name + r.region;
            const show = all => '[' + Array.from(all, text).join('/') + ']';
            av.onParentalRatingChange = (content, ratings, system, blocked) =>
                log.push(['change', content, show(ratings), system, blocked].join(' '));
            av.addEventListener('ParentalRatingError', e =>
                log.push(['error', e.contentID, show(e.ratings), e.DRMSystemID, 'blocked' in e].join(' ')));
        )");
    }

    // A message of kind 3 from the system 19187 with these items.
    static Bytes Message(uint8_t count, const Bytes& items) {
        Bytes message(8 + items.size());
        std::ranges::copy(std::initializer_list<uint8_t>{3, 0x4A, 0xF3, 0, 0, 0, 1, count}, message.begin());
        std::ranges::copy(items, message.begin() + 8);
        return message;
    }
};

TEST_F(ASasMessageOfRatings, IsAChangeThatMayBlock) {
    SendSAS(Message(6, {2, 0, 3, 'D', 'E', 'U', 4, 0, 1, 0,  5, 0, 1, 9,
                        2, 0, 3, 'F', 'R', 'A', 5, 0, 1, 13, 7, 0, 1, 0}));
    SendSAS(
        Message(4, {3, 0, 8, 'h', 't', 't', 'p', ':', '/', '/', 'p', 4, 0, 1, 0, 5, 0, 1, 0, 7, 0, 1, 1}));
    EXPECT_EQ(Log(),
              "change  [dvb-si1212DEU/dvb-si1616FRA] urn:dvb:casystemid:19187 true,"
              "change  [] urn:dvb:casystemid:19187 false");
}

TEST_F(ASasMessageOfRatings, IsAnErrorWhenNobodyKnowsWhatItMeans) {
    for (const Bytes& message : {
             Message(3, {4, 0, 1, 7, 5, 0, 1, 9, 7, 0, 1, 0}),     // another kind of rating
             Message(3, {4, 0, 1, 0, 5, 0, 1, 99, 7, 0, 1, 0}),    // no such value
             Message(3, {4, 0, 1, 0, 5, 0, 2, 0, 9, 7, 0, 1, 0}),  // a value of two bytes
             Message(3, {5, 0, 1, 9, 4, 0, 1, 0, 7, 0, 1, 0}),     // a value before its type
             Message(1, {77, 0, 1, 0}),                            // nothing of what counts
             Message(1, {7, 0, 0}),                                // a status without a value
         }) {
        SendSAS(message);
        EXPECT_EQ(Log(), "error  [] urn:dvb:casystemid:19187 false");
    }
    SendSAS(Message(2, {4, 0, 1, 0, 5, 0, 1, 9}));
    EXPECT_EQ(Log(), "error  [dvb-si1212] urn:dvb:casystemid:19187 false") << "without an access status";
}

TEST_F(ASasMessageOfRatings, IsIgnoredWhenItIsEmptyBrokenOrOfAnotherKind) {
    SendSAS(Message(0, {}));
    EXPECT_TRUE(Logged("Error SAS Message is empty!"));
    LogCapture::Clear();
    Send(event_t::Plain(E_SAS_MESSAGE, 0));
    EXPECT_TRUE(Logged("Error SAS Message is empty!"));
    SendSAS({});
    SendSAS({3});
    SendSAS(Message(9, {4, 0, 1, 0}));
    SendSAS(Message(1, {4, 0xFF, 0xFF, 0}));
    SendSAS({2, 0, 0, 0, 0, 0, 1, 1, 7, 0, 1, 0});
    EXPECT_EQ(Log(), "");
    // Text of the module that is no text, and nobody who listens.
    SendSAS(Message(4, {2, 0, 2, 0xC3, 0xFF, 4, 0, 1, 0, 5, 0, 1, 1, 7, 0, 1, 0}));
    EXPECT_EQ(Log(), "change  [dvb-si44] urn:dvb:casystemid:19187 true");
    Eval("av = null");
    page.main.CollectGarbage();
    SendSAS(Message(1, {7, 0, 1, 0}));
}

}  // namespace
