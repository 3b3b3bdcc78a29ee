// The receiver's state on a clock of the test's own: what takes minutes or months on the wire.
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <tuple>

#include "Host/Receiver/World/CallLog.h"
#include "Host/Receiver/World/Capabilities.h"
#include "Host/Receiver/World/KeyCodes.h"
#include "Host/Receiver/World/Urls.h"
#include "Tests/Bus/ReceiverFixture.h"
#include "Tests/Bus/ReceiverSimulation.h"

namespace {

using namespace ReceiverTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char kTwoProgrammes[] =
    R"({"broadcast": {"channels": [{"id": 1, "name": "One", "id_type": "ID_DVB_T",
  "programmes": [
    {"event_id": 12, "name": "Second", "start_minutes": 20, "duration_minutes": 40, "parental_rating": 9},
    {"event_id": 11, "name": "First", "description": "of two", "start_minutes": -10, "duration_minutes": 30}
  ]}]},
  "locale": {"country": "DEU", "ui_languages": "eng"}})";

TEST(ASchedule, AlwaysHasAPresentAndAFollowingProgrammeEvenAfterMonths) {
    Simulation simulation(kTwoProgrammes);
    const auto names = [&simulation] {
        std::vector<std::string> list;
        for (const auto& [programme, start] : simulation.world.programmes(1)) {
            // The present one has begun and not ended, what follows begins later.
            const auto now = simulation.world.utc();
            EXPECT_EQ(start <= now, list.empty());
            EXPECT_GT(start + programme->durationMinutes * 60, now);
            list.push_back(programme->name);
        }
        return list;
    };
    EXPECT_THAT(names(), ElementsAre("First", "Second"));
    simulation.timers.pass(20 * 60 * 1000);
    EXPECT_THAT(names(), ElementsAre("Second", "First"));
    simulation.timers.pass(40 * 60 * 1000);
    EXPECT_THAT(names(), ElementsAre("First", "Second"));
    simulation.timers.pass(std::int64_t{200} * 24 * 3600 * 1000);
    EXPECT_THAT(names(), Not(IsEmpty()));
    EXPECT_THAT(simulation.world.programmes(2), IsEmpty());
}

TEST(ASchedule, DescribesAnEventByItsDescriptors) {
    Simulation simulation(kTwoProgrammes);
    const auto& channel = *simulation.world.scenario().channel(1);
    EXPECT_THAT(descriptors(channel, 11, {}, "eng", "DEU"),
                ElementsAre(ElementsAre(0x4D, 18, 'e', 'n', 'g', 6, 0x15, 'F', 'i', 'r', 's', 't', 7, 0x15,
                                        'o', 'f', ' ', 't', 'w', 'o')));
    EXPECT_THAT(descriptors(channel, 12, {0x55, -1, -1}, "eng", "DEU"),
                ElementsAre(ElementsAre(0x55, 4, 'D', 'E', 'U', 6)));
    EXPECT_THAT(descriptors(channel, 11, {0x55, -1, -1}, "eng", "DEU"), IsEmpty());
    EXPECT_THAT(descriptors(channel, 99, {}, "eng", "DEU"), IsEmpty());
}

constexpr const char kMedia[] =
    R"({"media": {"mime_types": ["video/mp4"], "connect_ms": 100, "maximum_players": 1,
  "items": [{"url": "*/broken*", "error": 4}, {"url": "*/film*", "duration_ms": 10000}]}})";

const auto itPlays = ElementsAre("data 200 1 3 1000", "data 200 1 1 1000", "float 201 1 1");

TEST(AMediaPlayer, PlaysPausesSeeksAndFinishesByTheClock) {
    Simulation simulation(kMedia);
    auto& players = simulation.me.media();
    auto& events = simulation.events;
    players.session(1).setUrl("http://x/film.mp4");
    EXPECT_EQ(players.player(1), nullptr);
    ASSERT_TRUE(players.acquire(1));
    auto& player = *players.player(1);
    ASSERT_TRUE(player.play(1.0));
    EXPECT_THAT(simulation.heardAfter(100), itPlays);
    simulation.timers.pass(2000);
    EXPECT_EQ(player.position(), 2000u);
    ASSERT_TRUE(player.play(0.0));
    simulation.timers.pass(60000);
    EXPECT_EQ(player.position(), 2000u);
    ASSERT_TRUE(player.play(2.0));
    EXPECT_THAT(events.take(),
                ElementsAre("data 200 1 2 1000", "float 201 1 0", "data 200 1 1 1000", "float 201 1 2"));
    ASSERT_TRUE(player.seek(9000));
    EXPECT_FALSE(player.seek(10001));
    simulation.timers.pass(499);
    EXPECT_EQ(player.position(), 9998u);
    EXPECT_THAT(simulation.heardAfter(1), ElementsAre("unsigned 202 1 9000", "data 200 1 5 1000"));
    EXPECT_EQ(player.position(), 10000u);
    EXPECT_FALSE(player.seek(1)) << "nothing plays";
    // Rewinding ends at the start, where it plays on.
    ASSERT_TRUE(player.play(1.0));
    simulation.timers.pass(1100);
    ASSERT_TRUE(player.play(-4.0));
    events.take();
    EXPECT_THAT(simulation.heardAfter(1250), ElementsAre("float 201 1 1"));
    EXPECT_EQ(player.position(), 1000u);
    for (const double unplayable : {0.0 / 0.0, 1.0 / 0.0, 1e300})
        EXPECT_FALSE(player.play(unplayable));
    players.release(1);
    EXPECT_THAT(events.take(), ElementsAre("data 200 1 0 1000"));
    simulation.timers.pass(0);
    EXPECT_EQ(simulation.timers.pending(), 0u);
}

TEST(AMediaPlayer, ReportsMediaThatDoNotPlayAndGoesOnWithTheQueue) {
    Simulation simulation(kMedia);
    auto& players = simulation.me.media();
    ASSERT_TRUE(players.acquire(1));
    EXPECT_FALSE(players.player(1)->play(1.0)) << "there is no medium";
    players.session(1).setUrl("http://x/broken.mp4");
    ASSERT_TRUE(players.player(1)->play(1.0));
    EXPECT_THAT(simulation.heardAfter(100), ElementsAre("data 200 1 3 1000", "data 200 1 6 4"));
    EXPECT_EQ(players.session(1).error(), 4);
    players.session(1).setUrl("http://x/elsewhere.mp4");
    ASSERT_TRUE(players.player(1)->play(1.0));
    EXPECT_THAT(simulation.heardAfter(100),
                ElementsAre("data 200 1 0 1000", "data 200 1 3 1000", "data 200 1 6 5"));

    // Between two of the queue there is no stop, and one that fails does not hold the next up.
    players.session(1).setUrl("http://x/film1.mp4");
    ASSERT_TRUE(players.play(1, 1.0));
    for (const char* queued : {"broken.mp4", "elsewhere.mp4", "film2.mp4"})
        ASSERT_TRUE(players.queue(1, std::string("http://x/") + queued));
    (void)simulation.heardAfter(10099);
    EXPECT_THAT(simulation.heardAfter(301),
                ElementsAre("data 200 1 5 1000", "data 200 1 3 1000", "data 200 1 6 4", "data 200 1 3 1000",
                            "data 200 1 6 5", "data 200 1 3 1000", "data 200 1 1 1000", "float 201 1 1"));
    EXPECT_EQ(players.session(1).url(), "http://x/film2.mp4");
    ASSERT_TRUE(players.queue(1, "http://x/film3.mp4"));
    EXPECT_THAT(simulation.heardAfter(10100),
                ElementsAre("data 200 1 5 1000", "data 200 1 3 1000", "data 200 1 1 1000", "float 201 1 1"));
    // What is queued when nothing plays plays at once: after an end, a stop, an error, and with a new player.
    EXPECT_THAT(simulation.heardAfter(10000), ElementsAre("data 200 1 5 1000"));
    for (const auto& quiet :
         std::vector<std::function<void()>>{[] {}, [&] { EXPECT_TRUE(players.stop(1)); },
                                            [&] {
                                                players.session(1).setUrl("http://x/broken");
                                                EXPECT_TRUE(players.play(1, 1.0));
                                                simulation.timers.pass(100);
                                            },
                                            [&] { players.release(1); }}) {
        quiet();
        (void)simulation.events.take();
        EXPECT_TRUE(players.queue(1, "http://x/film4.mp4"));
        EXPECT_THAT(simulation.heardAfter(100), itPlays);
    }
    // The only decoder is at work; once the first has finished it is free, and the first has to wait in turn.
    EXPECT_FALSE(players.acquire(2));
    simulation.timers.pass(20000);
    EXPECT_TRUE(players.acquire(2));
    players.session(2).setUrl("http://x/film1.mp4");
    EXPECT_TRUE(players.play(2, 1.0));
    (void)simulation.events.take();
    EXPECT_FALSE(players.play(1, 1.0));
    EXPECT_THAT(simulation.events.take(), ElementsAre("data 200 1 0 1000", "data 200 1 0 3"));
    // What is queued goes with what is stopped.
    ASSERT_TRUE(players.session(2).queue("http://x/film2.mp4"));
    EXPECT_TRUE(players.stop(2));
    EXPECT_TRUE(players.play(2, 1.0));
    simulation.timers.pass(20000);
    EXPECT_EQ(players.player(2)->state(), MediaState::Finished);
    EXPECT_EQ(players.session(2).url(), "http://x/film1.mp4");
    EXPECT_TRUE(players.supports("Video/MP4; codecs=\"avc1\""));
    EXPECT_FALSE(players.setMimeType(2, "video/ogg"));
}

TEST(AMediaPlayer, PlaysFilesOfTheReceiverOnlyForPagesThatAreFilesThemselves) {
    Simulation simulation(R"({"media": {"connect_ms": 0, "items": [{"url": "*/film*"}]}})");
    auto& players = simulation.me.media();
    auto& page = players.session(1).location;
    const auto heardOfPlaying = [&](const char* file) {
        players.session(1).setUrl(file);
        EXPECT_TRUE(players.acquire(1) && players.play(1, 1.0));
        const auto heard = simulation.heardAfter(0);
        (void)players.stop(1);
        simulation.events.take();
        return heard;
    };
    const auto connecting = "data 200 1 3 1000", refused = "data 200 1 6 5";
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"file:///srv/page.html", "file:///srv/film.mp4", true},
        {"http://page.example/", "http://x/film.mp4", true},
        {"file:///srv/page.html", "file:///srv/none.mp4", false},
        {"http://page.example/", "file:///srv/film.mp4", false},
        {"http://page.example/", "FILE:///srv/none.mp4", false},
        {"dvb://1.2.3/file:", "file:/srv/film.mp4", false},
        {"", "file:///srv/film.mp4", false}};
    for (const auto& [location, file, isAllowed] : cases) {
        SCOPED_TRACE(location + std::string(" plays ") + file);
        page = location;
        if (isAllowed)
            EXPECT_THAT(heardOfPlaying(file), itPlays);
        else
            EXPECT_THAT(heardOfPlaying(file), ElementsAre(connecting, refused));
    }
    // Nor behind what a page may play.
    EXPECT_TRUE(players.queue(1, "file:///srv/film.mp4"));
    EXPECT_THAT(simulation.events.take(), ElementsAre(connecting, refused));
}

constexpr const char kTwoChannels[] =
    R"({"broadcast": {"current_channel": 1, "tune_ms": 100, "channels": [
  {"id": 1, "name": "One", "id_type": "ID_DVB_T"}, {"id": 2, "name": "Two", "id_type": "ID_DVB_T"}]}})";

TEST(TheVideoPlane, ShowsAPlayerWhereItsWindowIsForAsLongAsItPresents) {
    Simulation simulation(kTwoChannels);
    auto& broadcast = simulation.me.broadcast();
    EXPECT_TRUE(broadcast.bindToCurrentChannel(1));
    EXPECT_THAT(simulation.heardAfter(100), ElementsAre("data 101 1 1 1000", "data 101 1 2 1000"))
        << "no window yet";
    broadcast.setWindow(1, {200, 100, 640, 360});
    EXPECT_THAT(simulation.events.take(), ElementsAre("plane 1 200 100 640 360 0 One"));
    EXPECT_TRUE(broadcast.stepChannel(1, true));
    EXPECT_THAT(simulation.events.take(), ElementsAre("no plane 1", "data 101 1 1 1000"));
    broadcast.setWindow(1, {0, 0, 0, 0, true});
    EXPECT_THAT(simulation.events.take(), IsEmpty()) << "black while it connects";
    EXPECT_THAT(simulation.heardAfter(100),
                ElementsAre("data 100 1 2 1000", "plane 1 0 0 0 0 1 Two", "data 101 1 2 1000"));
    broadcast.setWindow(1, {0, 0, 0, 0});
    broadcast.setWindow(1, {0, 0, 0, 10});
    EXPECT_THAT(simulation.events.take(), ElementsAre("no plane 1"));
    broadcast.setWindow(1, {1, 2, 3, 4});
    broadcast.release(1);
    EXPECT_THAT(simulation.events.take(),
                ElementsAre("plane 1 1 2 3 4 0 Two", "no plane 1", "data 101 1 0 1000"));
}

TEST(TheVideoPlane, ShowsAMediumFromItsFirstPlayingUntilItIsOver) {
    Simulation simulation(kMedia);
    auto& players = simulation.me.media();
    const auto playing = [&](const char* url) {
        players.session(1).setUrl(url);
        EXPECT_TRUE(players.acquire(1) && players.play(1, 1.0));
        return simulation.heardAfter(100);
    };
    EXPECT_THAT(playing("http://x/film.mp4"), itPlays) << "there is no window yet";
    const std::vector<VideoWindow> windows = {{10, 20, 32, 18}, {10, 20, 32, 18}, {0, 0, 0, 0, true},
                                              {0, 0, 0, 9},     {0, 0, 9, 0},     {1, 2, 3, 4}};
    for (const VideoWindow& window : windows)
        players.setWindow(1, window);
    EXPECT_THAT(simulation.events.take(),
                ElementsAre("plane 1 10 20 32 18 0 film.mp4", "plane 1 0 0 0 0 1 film.mp4", "no plane 1",
                            "plane 1 1 2 3 4 0 film.mp4"));
    EXPECT_TRUE(players.play(1, 0.0));
    EXPECT_THAT(simulation.events.take(), ElementsAre("data 200 1 2 1000", "float 201 1 0"))
        << "a pause changes nothing to be seen";
    for (int time = 0; time < 2; ++time)
        EXPECT_TRUE(players.stop(1));
    EXPECT_THAT(simulation.events.take(), ElementsAre("no plane 1", "data 200 1 0 1000"));
    // The window stays until the page has gone.
    for (const std::uint32_t released : {1U, 0U}) {
        EXPECT_THAT(playing("http://x/a/film.mp4"),
                    ElementsAre("data 200 1 3 1000", "plane 1 1 2 3 4 0 film.mp4", "data 200 1 1 1000",
                                "float 201 1 1"));
        players.release(released);
        EXPECT_THAT(simulation.events.take(), ElementsAre("no plane 1", "data 200 1 0 1000"));
    }
    EXPECT_THAT(playing("http://x/film.mp4"), itPlays) << "another page's player";
    players.setWindow(1, {1, 2, 3, 4});
    (void)simulation.events.take();
    EXPECT_THAT(simulation.heardAfter(10000), ElementsAre("no plane 1", "data 200 1 5 1000"));
    EXPECT_THAT(playing("http://x/broken.mp4"),
                ElementsAre("data 200 1 0 1000", "data 200 1 3 1000", "data 200 1 6 4"))
        << "never anything to be seen";
}

TEST(TheVideoPlane, ShowsTheOneTunersChannelInEveryPlayer) {
    Simulation simulation(kTwoChannels);
    auto& broadcast = simulation.me.broadcast();
    for (const std::uint32_t player : {1u, 2u}) {
        EXPECT_TRUE(broadcast.bindToCurrentChannel(player));
        broadcast.setWindow(player, {player, 0, 16, 9});
    }
    simulation.timers.pass(100);
    EXPECT_TRUE(broadcast.stepChannel(2, true));
    (void)simulation.events.take();
    EXPECT_THAT(simulation.heardAfter(100),
                ElementsAre("plane 1 1 0 16 9 0 Two", "data 100 1 2 1000", "data 100 2 2 1000",
                            "plane 2 2 0 16 9 0 Two", "data 101 2 2 1000"));
    broadcast.setNullChannel(2, false);
    EXPECT_THAT(simulation.events.take(),
                ElementsAre("data 100 1 0 1000", "no plane 1", "data 101 1 0 1000", "data 100 2 0 1000",
                            "no plane 2", "data 101 2 0 1000"));
}

TEST(TheRunningChannel, IsBehindTheApplicationsWhileNoPlayerDoesAnything) {
    Simulation simulation(kTwoChannels);
    auto& running = simulation.events.running;
    EXPECT_EQ(simulation.world.runningChannel().name, "One");
    EXPECT_TRUE(simulation.me.broadcast().bindToCurrentChannel(1));
    simulation.timers.pass(100);
    EXPECT_THAT(running, ElementsAre("")) << "also when its player shows nothing yet";
    EXPECT_TRUE(simulation.me.broadcast().stepChannel(1, true));
    simulation.timers.pass(100);
    simulation.me.broadcast().release(1);
    simulation.timers.pass(1);
    EXPECT_THAT(running, ElementsAre("", "Two"));
    simulation.world.setValue("/broadcast/channels/1/locked", "true");
    simulation.timers.pass(1);
    simulation.world.setValue("/broadcast/current_channel", "1");
    simulation.timers.pass(1);
    simulation.world.setValue("/broadcast/related", "false");
    simulation.timers.pass(1);
    EXPECT_THAT(running, ElementsAre("", "Two", "", "One", ""));
}

TEST(ATuner, NeverFinishesAChangeThatIsOvertakenStoppedOrReleased) {
    Simulation simulation(kTwoChannels);
    auto& broadcast = simulation.me.broadcast();
    const auto setChannel = [&broadcast](std::uint32_t id) {
        ChannelRequest request;
        request.id = id;
        EXPECT_TRUE(broadcast.setChannel(1, request));
    };
    setChannel(1);
    (void)simulation.heardAfter(50);
    setChannel(2);
    EXPECT_THAT(simulation.heardAfter(1000),
                ElementsAre("data 101 1 1 1000", "data 100 1 2 1000", "data 101 1 2 1000"));
    setChannel(1);
    broadcast.stop(1);
    broadcast.stop(1);
    EXPECT_THAT(simulation.heardAfter(1000), ElementsAre("data 101 1 1 1000", "data 101 1 3 1000"));
    EXPECT_TRUE(broadcast.bindToCurrentChannel(2));
    EXPECT_THAT(simulation.heardAfter(1000), ElementsAre("data 101 2 1 1000", "data 101 2 2 1000"));
    // Player 0 stands for all.
    setChannel(1);
    broadcast.release(0);
    EXPECT_THAT(simulation.heardAfter(1000),
                ElementsAre("data 101 1 1 1000", "data 101 1 0 1000", "data 101 2 0 1000"));
    EXPECT_EQ(simulation.world.value("/broadcast/current_channel"), 2);
    EXPECT_EQ(broadcast.state(1), BroadcastState::Unrealized);
}

TEST(AWorld, StaysWithinItsBoundsWhateverClientsLeaveBehind) {
    Simulation simulation(R"({"stream_events": [{"url": "*", "name": "e"}], "media": {"connect_ms": 0,
        "items": [{"url": "*"}]}, "drm": {"systems": [{"id": "s", "reply_ms": 1000}]}})");
    auto& world = simulation.world;
    auto& me = simulation.me;
    ASSERT_TRUE(me.media().acquire(1));
    me.media().session(1).setUrl("http://x/film.mp4");
    ASSERT_TRUE(me.media().play(1, 1.0));
    (void)simulation.heardAfter(0);
    for (std::uint32_t id = 1; id <= 3000; ++id) {
        me.broadcast().setVolume(id, 1);
        me.media().session(id + 1).setAttribute("name" + std::to_string(id), "value");
        me.media().session(1).setAttribute("name" + std::to_string(id), "value");
        (void)me.media().session(1).queue("http://x/" + std::to_string(id));
        (void)me.streamEvents().subscribe("dvb://x", "e");
        (void)me.search().addQuery(0);
        (void)me.search().addSearch(1);
        (void)me.sendDrmMessage("s");
        world.addProfile({static_cast<std::uint16_t>(id), 1, 1, 1});
    }
    const auto state = world.value("/state");
    EXPECT_LE(state["broadcast_players"].size(), 64u);
    EXPECT_LE(state["media_players"].size(), 64u);
    EXPECT_LE(state["media_players"]["me 1"]["attributes"].size(), 64u);
    EXPECT_LE(state["stream_event_subscriptions"].get<int>(), 256);
    EXPECT_LE(state["queries"].get<int>(), 1024);
    EXPECT_LE(state["searches"].get<int>(), 256);
    EXPECT_LE(simulation.timers.pending(), 256u + 64u + 1u);
    EXPECT_EQ(me.media().session(1).state(), MediaState::Playing) << "what plays does not make room";
    EXPECT_THAT(simulation.events.take(), IsEmpty());
    EXPECT_EQ(me.streamEvents().subscribe("dvb://x", "e"), 0u) << "none is lost without a word";
    // The latest client is served like the first.
    EXPECT_EQ(me.broadcast().volume(3000), 1);
    CallLog log;
    for (std::size_t i = 0; i < CallLog::Limit + 5; ++i)
        log.add("Interface.Method", "(" + std::to_string(i) + ",)", i);
    ASSERT_EQ(log.calls().size(), CallLog::Limit);
    EXPECT_EQ(log.calls().front().arguments, "(5,)");
    // A text that is too long is not cut in the middle of a character.
    const std::string fits(CallLog::ArgumentsLimit - 1, 'a');
    EXPECT_EQ(log.add("Interface.Method", fits + "\u00e4", 0).arguments, fits + "...");
}

TEST(AWorld, AnswersDrmMessagesAsTheScenarioSays) {
    Simulation simulation(
        R"({"drm": {"systems": [{"id": "s", "result_code": 2, "result_message": "no", "reply_ms": 50},
                                 {"id": "silent", "replies": false}]}})");
    const auto first = simulation.me.sendDrmMessage("s");
    const auto second = simulation.me.sendDrmMessage("other");
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(simulation.me.sendDrmMessage("silent"), first + 2);
    EXPECT_THAT(simulation.heardAfter(0), ElementsAre("drm " + std::to_string(second) + " 5 "));
    EXPECT_THAT(simulation.heardAfter(50), ElementsAre("drm " + std::to_string(first) + " 2 no"));
    EXPECT_THAT(simulation.heardAfter(3'600'000), IsEmpty());
}

TEST(AWorld, FiresAStreamEventsPayloadsOneAfterAnother) {
    Simulation simulation(
        R"({"stream_events": [{"url": "*", "name": "e", "period_ms": 10, "text": ["one", "two"]}]})");
    (void)simulation.me.streamEvents().subscribe("dvb://x", "e");
    simulation.timers.pass(30);
    EXPECT_THAT(simulation.events.payloads, ElementsAre("one", "two", "one"));
    EXPECT_THROW(simulation.world.setValue("/stream_events/0/text", "[]"), ScenarioError);
}

TEST(AWorld, FollowsChangesOfTheScenarioWithSubscriptionsUnderWay) {
    Simulation simulation(R"({"stream_events": [{"url": "*", "name": "e", "period_ms": 100}]})");
    const auto fired = "stream e " + std::to_string(simulation.me.streamEvents().subscribe("dvb://x", "e"));
    simulation.timers.pass(100);
    simulation.world.setValue("/stream_events", "[]");
    EXPECT_THAT(simulation.heardAfter(10000), ElementsAre(fired));
    simulation.world.setValue("/stream_events/-", R"({"url": "*", "name": "e", "period_ms": 5000})");
    EXPECT_THAT(simulation.heardAfter(1000), ElementsAre(fired));
    // A refused change leaves everything as it was.
    EXPECT_THROW(simulation.world.setValue("/stream_events/0/period_ms", "0"), ScenarioError);
    EXPECT_EQ(simulation.world.value("/stream_events/0/period_ms"), 5000);
}

TEST(ACarousel, GivesFilesOfItsFolderAndNoOthers) {
    const std::filesystem::path home = std::getenv("HOME");
    std::filesystem::create_directories(home / "carousel" / "sub");
    (void)ReceiverTest::writeFile("secret.txt", "secret");
    (void)ReceiverTest::writeFile("carousel/sub/a b.txt", "content");
    std::filesystem::create_symlink(home / "secret.txt", home / "carousel" / "link.txt");
    Simulation simulation(R"({"carousel": {"folder": "carousel", "reply_ms": 10}})", home.string());
    const auto response = [&simulation](const std::string& url) {
        EXPECT_TRUE(simulation.me.carousel().request(5, url));
        const auto heard = simulation.heardAfter(10);
        return heard.size() == 1 ? heard.front() : "not one response";
    };
    (void)ReceiverTest::writeFile("carousel/sub/index.html", "page");
    std::filesystem::create_directories(home / "outside");
    (void)ReceiverTest::writeFile("outside/index.html", "outside");
    std::filesystem::create_directory_symlink(home / "outside", home / "carousel" / "out");
    for (const char* url :
         {"dvb://current.car/sub/a%20b.txt?x#y", "dvb://3070.3e9.65.1/sub/a%20b.txt",
          "dvb://1..2;4d2/sub/../sub/a%20b.txt", "dvb:/sub/a%20b.txt", "DVB:///sub%2Fa b.txt"})
        EXPECT_EQ(response(url), "file 5 content 1") << url;
    for (const char* url : {"dvb://1.2.3/sub/", "dvb:/sub/?from=a/b", "dvb://1.2.3/sub%2f"})
        EXPECT_EQ(response(url), "file 5 page 1") << url;
    for (const char* url :
         {"dvb://current.car/none.txt", "dvb://current.car/../secret.txt", "dvb://current.car/link.txt",
          "dvb://current.car/%2e%2e/secret.txt", "dvb://current.car/..%2fsecret.txt",
          "dvb://current.car/out/", "dvb://current.car/out/index.html", "dvb://current.car/sub",
          "dvb://current.car/sub/index.html/", "dvb://current.car", "dvb://current.car?/sub/a%20b.txt",
          "dvb://current.car/", "dvb:sub", "dvb://current.car//etc/passwd", "dvb://current.car/%zz",
          "dvb://current.car/sub/%00", "", "http://x/sub/a%20b.txt", "sub/a%20b.txt"})
        EXPECT_EQ(response(url), "file 5  0") << url;
    (void)ReceiverTest::writeFile("carousel/sub/index.html", "new page");
    EXPECT_EQ(response("dvb://1.2.3/sub/"), "file 5 new page 1") << "files are read when they are asked for";
    // A page of many files asks for all of them at once. None is forgotten: one too many is refused.
    std::size_t accepted = 0;
    while (accepted < 10000 && simulation.me.carousel().request(5, "dvb:/sub/"))
        ++accepted;
    simulation.timers.pass(10);
    EXPECT_EQ(simulation.events.take().size(), accepted);
    EXPECT_EQ(accepted, 4096U);
    EXPECT_EQ(response("dvb:/sub/"), "file 5 new page 1");
    Simulation without("{}");
    EXPECT_FALSE(without.me.carousel().request(1, "dvb://x/a"));
}

TEST(TheCapabilities, AreOneLineOfXmlThatFitsIntoAScriptsText) {
    Simulation simulation(R"({"capabilities": {"ui_profiles": ["OITF_HD_UIPROF+DRM+DVB_T", "<\"&'\\\n"],
        "video": [{"name": "MP4", "type": "video/mp4", "transport": "dash"}]}})");
    const auto xml = capabilitiesXml(simulation.world.scenario());
    EXPECT_EQ(xml.find_first_of("\"\n\r\\"), std::string::npos);
    EXPECT_THAT(xml, HasSubstr("name='&lt;&quot;&amp;&apos;&#92; '"));
    EXPECT_THAT(xml,
                HasSubstr("<video_profile name='MP4' type='video/mp4' transport='dash'/></profilelist>"));
    const auto has = [&simulation](const char* name) {
        return hasCapability(simulation.world.scenario(), name);
    };
    EXPECT_TRUE(has("OITF_HD_UIPROF"));
    EXPECT_TRUE(has("+DRM"));
    EXPECT_TRUE(has("OITF_HD_UIPROF+DVB_T"));
    EXPECT_FALSE(has("OITF_HD_UIPROF+PVR"));
    EXPECT_FALSE(has("+DR"));
    EXPECT_FALSE(has(""));
    simulation.world.setValue("/capabilities/description", R"("say \"no\"\n")");
    EXPECT_EQ(capabilitiesXml(simulation.world.scenario()), "say \"no\"\n")
        << "a text of one's own is sent as it is";
    EXPECT_TRUE(has("+DRM"));
}

TEST(Addresses, AreTakenApartAsAReceiverDoes) {
    EXPECT_EQ(originOf("HTTP://User@LocalHost/a:b"), "http://localhost:80");
    EXPECT_EQ(originOf("https://h:8443/x"), "https://h:8443");
    EXPECT_EQ(originOf("http://[::1]:9/"), "http://[::1]:9");
    EXPECT_EQ(originOf("file:///tmp/a.html"), "file://");
    EXPECT_EQ(originOf("dvb://3070.3E9.65;4d2/a.html"), "dvb://3070.3e9.65");
    EXPECT_EQ(originOf("dvb:/a.html"), "dvb://");
    for (const char* none :
         {"", "a.html", "/a", "data:text/html,x", "about:blank", "http://", "http://h:99999999/", "dvb:a/b"})
        EXPECT_EQ(originOf(none), "") << none;
    EXPECT_TRUE(matchesPattern("http://localhost:80", "http://localhost:*"));
    EXPECT_TRUE(matchesPattern("abcabd", "a*ab*"));
    EXPECT_FALSE(matchesPattern("abc", "a*b"));
    EXPECT_FALSE(matchesPattern("", "?"));

    const auto service = parseDvbService("dvb://30.1f.7e;4d2~20260101T1000Z--PT1H/path");
    ASSERT_TRUE(service);
    EXPECT_EQ(std::make_tuple(service->onid, service->tsid, service->sid, service->eventId),
              std::make_tuple(0x30u, std::optional(0x1fu), 0x7eu, std::optional(std::uint16_t{0x4d2})));
    EXPECT_FALSE(parseDvbService("dvb://1..2")->tsid);
    for (const char* none :
         {"http://1.2.3", "dvb://1.2", "dvb://x.2.3", "dvb://1.2.3;", "dvb://10000.2.3", "dvb://"})
        EXPECT_FALSE(parseDvbService(none)) << none;
    EXPECT_EQ(keyCode("VK_PLAY_PAUSE"), 463u);
    EXPECT_EQ(keyCode("0"), 0u);
    EXPECT_EQ(keyCode("-1"), std::nullopt);
}

}  // namespace
