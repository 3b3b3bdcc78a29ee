// What a page does with a medium that plays: positions, speeds, pictures, sound and tracks are the medium's
// own.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

#include <unistd.h>

#include <gmock/gmock.h>

#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/ReceiverSimulation.h"
#include "Tests/Media/PlayerFixture.h"

namespace {

using namespace MediaTest;
using namespace Receiver;
using testing::ElementsAre;
using testing::Pair;

class ARealPlayer : public RealPlayer {};

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::vector<std::string> describe(const std::vector<Component>& components) {
    std::vector<std::string> all;
    for (const auto& each : components)
        all.push_back(std::to_string(static_cast<int>(each.type)) + " " + each.encoding + " " +
                      std::to_string(each.pid) + " " + each.language + " " + std::to_string(each.extra));
    return all;
}

TEST_F(ARealPlayer, PlaysToTheEndInTheMediumsOwnTime) {
    const auto start = Clock::now();
    ASSERT_TRUE(plays(fileUrl("tone.mp3")));
    EXPECT_THAT(describe(player->components()), ElementsAre("1 MPEG1_L3 1  2"));
    EXPECT_NEAR(player->duration(), 6000, 150);
    ASSERT_TRUE(reaches(MediaState::Finished));
    EXPECT_GT(millisecondsSince(start), 5500) << "a sink without a device must keep the time";
    EXPECT_THAT(listener.heard, ElementsAre("state 3", "components", "state 1", "speed 1", "state 5"));
    EXPECT_EQ(player->position(), player->duration());
    // And once more from the beginning.
    listener.heard.clear();
    ASSERT_TRUE(player->play(1.0));
    ASSERT_TRUE(reaches(MediaState::Playing));
    EXPECT_LT(player->position(), 5000u);
}

TEST_F(ARealPlayer, ShowsThePicturesOfWhereItIs) {
    ASSERT_TRUE(plays(server.url("good/film.mp4")));
    ASSERT_TRUE(WaitFor([&] { return screen.colour() == Colour::Red; }));
    EXPECT_THAT(screen.size(), Pair(640, 360));
    EXPECT_NEAR(player->duration(), 12000, 150);
    EXPECT_THAT(describe(player->components()), ElementsAre("0 H264 1  178", "1 HEAAC 2  2"));
    ASSERT_TRUE(player->seek(9000));
    EXPECT_GE(player->position(), 9000u);
    ASSERT_TRUE(WaitFor([&] { return screen.colour() == Colour::Blue && listener.has("position 9000"); }));

    // Also while paused, where the position stays.
    ASSERT_TRUE(player->play(0.0));
    ASSERT_TRUE(reaches(MediaState::Paused));
    EXPECT_EQ(player->speed(), 0.0);
    ASSERT_TRUE(player->seek(3000));
    ASSERT_TRUE(WaitFor([&] { return screen.colour() == Colour::Red && listener.has("position 3000"); }));
    EXPECT_NEAR(player->position(), 3000, 50);
    const auto here = player->position();
    const auto paused = Clock::now();
    ASSERT_TRUE(WaitFor([&] { return millisecondsSince(paused) > 400; }));
    EXPECT_EQ(player->position(), here);
    ASSERT_TRUE(player->play(1.0));
    ASSERT_TRUE(reaches(MediaState::Playing));
    ASSERT_TRUE(reachesPosition(3500));
    EXPECT_TRUE(screen.changes());
    // The very end, too: it has its picture, and is soon over.
    ASSERT_TRUE(player->play(0.0));
    ASSERT_TRUE(player->seek(player->duration()));
    ASSERT_TRUE(WaitFor([&] { return screen.colour() == Colour::Blue; }));
    const auto sought = Clock::now();
    ASSERT_TRUE(player->play(1.0));
    ASSERT_TRUE(reaches(MediaState::Finished));
    EXPECT_LT(millisecondsSince(sought), 6000);
    ASSERT_TRUE(plays(server.url("good/film.mp4")));
    EXPECT_FALSE(player->seek(12500)) << "behind the end";
    player->stop();
    EXPECT_EQ(screen.colour(), Colour::None);
    EXPECT_FALSE(player->seek(1000)) << "nothing plays";
    EXPECT_EQ(player->position(), 0u);
    // In the shape that is meant, and no larger than a screen, also when it begins paused.
    player->load(fileUrl("wide.mp4"));
    ASSERT_TRUE(player->play(0.0));
    ASSERT_TRUE(WaitFor([&] { return screen.size() == std::pair(1920, 540); }));
    ASSERT_TRUE(reaches(MediaState::Paused));
    EXPECT_LT(player->position(), 100u);
    EXPECT_THAT(player->components(), testing::SizeIs(1));
}

TEST_F(ARealPlayer, PlaysFasterSlowerAndBackwards) {
    ASSERT_TRUE(plays(server.url("good/film.mp4")));
    for (const double refused : {std::nan(""), HUGE_VAL, 65.0, -65.0, 0.01})
        EXPECT_FALSE(player->play(refused)) << refused;
    for (const double speed : {2.0, 0.5, 8.0}) {
        ASSERT_TRUE(player->seek(1000));
        ASSERT_TRUE(player->play(speed));
        std::ostringstream announced;
        announced << "speed " << speed;
        ASSERT_TRUE(WaitFor([&] {
            return listener.has(announced.str()) && player->state() == MediaState::Playing;
        })) << speed;
        EXPECT_EQ(player->speed(), speed);
        // On a busy machine the film may begin with a stutter; then it keeps its pace.
        auto from = player->position();
        auto start = Clock::now();
        EXPECT_TRUE(WaitFor([&] {
            const auto elapsed = millisecondsSince(start);
            if (elapsed < 200)
                return false;
            const auto here = player->position();
            const auto pace = (here - from) / elapsed;
            from = here;
            start = Clock::now();
            return pace > speed * 0.75 && pace < speed * 1.25;
        })) << speed;
    }
    ASSERT_TRUE(player->seek(8000));
    ASSERT_TRUE(player->play(-8.0));
    ASSERT_TRUE(WaitFor([&] { return listener.has("speed -8") && player->position() < 7000; }));
    EXPECT_EQ(player->state(), MediaState::Playing);
    ASSERT_TRUE(WaitFor([&] { return screen.colour() == Colour::Red; }));
    listener.heard.clear();
    // Rewound to the start it plays on.
    ASSERT_TRUE(WaitFor([&] { return listener.has("speed 1") && player->position() > 200; }));
    EXPECT_LT(player->position(), 5000u);
}

TEST_F(ARealPlayer, PlaysStreamsInSegments) {
    for (const auto* list : {"good/hls/index.m3u8", "good/languages/index.mpd"}) {
        SCOPED_TRACE(list);
        listener.heard.clear();
        ASSERT_TRUE(plays(server.url(list)));
        EXPECT_NEAR(player->duration(), 12000, 150);
        ASSERT_TRUE(WaitFor([&] { return screen.colour() == Colour::Red; }));
        ASSERT_TRUE(player->seek(10500));
        ASSERT_TRUE(WaitFor([&] { return listener.has("position 10500"); }));
        ASSERT_TRUE(WaitFor([&] { return screen.colour() == Colour::Blue; }))
            << reaches(MediaState::Stopped).message();
        ASSERT_TRUE(reaches(MediaState::Finished));
    }
}

// HBBTV_MEDIA_ROUNDS says how often; the places are the same in every run.
TEST_F(ARealPlayer, IsWhereTheLastOfQuickSeeksWanted) {
    const char* wanted = std::getenv("HBBTV_MEDIA_ROUNDS");
    const int rounds = wanted == nullptr ? 8 : std::atoi(wanted);
    alarm(120 + 10 * static_cast<unsigned>(rounds));
    std::mt19937 chance(1);
    const auto below = [&chance](unsigned limit) { return chance() % limit; };
    ASSERT_TRUE(plays(server.url("good/film.ts")));
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        listener.heard.clear();
        std::uint32_t place = 0;
        for (auto seeks = 2 + below(5); seeks > 0; --seeks) {
            place = (below(2) == 0 ? 500 : 6500) + below(4000);
            ASSERT_TRUE(player->seek(place));
            (void)WaitFor([] { return false; }, std::chrono::milliseconds(below(60)));
        }
        const auto told = "position " + std::to_string(place);
        const auto colour = place < 6000 ? Colour::Red : Colour::Blue;
        EXPECT_TRUE(WaitFor([&] { return listener.has(told) && screen.colour() == colour; })) << place;
        EXPECT_GE(player->position() + 100, place);
        EXPECT_LT(player->position(), place + 1500);
        EXPECT_TRUE(reachesPosition(place + 100)) << place;
    }
}

TEST_F(ARealPlayer, OffersOnlyWhatTheServerCanDo) {
    ASSERT_TRUE(plays(server.url("from-start/film.mp4")));
    EXPECT_FALSE(player->seek(3000));
    EXPECT_FALSE(player->play(2.0));
    EXPECT_FALSE(player->play(-1.0));
    ASSERT_TRUE(player->play(0.0));
    ASSERT_TRUE(reaches(MediaState::Paused));
    ASSERT_TRUE(player->play(1.0));
    ASSERT_TRUE(reaches(MediaState::Playing));
    ASSERT_TRUE(reachesPosition(300));
    // Asked for before that was known, it is played as it can be.
    ASSERT_TRUE(plays(server.url("from-start/film.mp4"), 4.0));
    EXPECT_EQ(player->speed(), 1.0);
}

// What has come out of the loudspeaker, as 16-bit samples of one channel.
class Sound {
 public:
    [[nodiscard]] std::string sink() const {
        return "audioconvert ! audioresample ! audio/x-raw,format=S16LE,rate=48000,channels=1 "
               "! filesink sync=true buffer-mode=unbuffered location=" +
               m_file.string();
    }
    // 0 for silence.
    [[nodiscard]] int frequency() const {
        const auto samples = latest();
        int rises = 0;
        for (std::size_t place = 1; place < samples.size(); ++place)
            rises += samples[place - 1] < 0 && samples[place] >= 0 ? 1 : 0;
        return rises * 10;
    }
    [[nodiscard]] int loudness() const {
        const auto samples = latest();
        return samples.empty() ? 0 : *std::max_element(samples.begin(), samples.end());
    }
    void forget() const { std::ofstream(m_file, std::ios::trunc).flush(); }

 private:
    // The last tenth of a second, if there has been that much.
    [[nodiscard]] std::vector<std::int16_t> latest() const {
        constexpr std::size_t window = 4800;
        std::ifstream stream(m_file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        const auto samples = bytes.size() / sizeof(std::int16_t);
        if (samples < window)
            return {};
        std::vector<std::int16_t> last(window);
        std::memcpy(last.data(), bytes.data() + (samples - window) * sizeof(std::int16_t),
                    window * sizeof(std::int16_t));
        return last;
    }

    std::filesystem::path m_file = std::filesystem::path(std::getenv("HOME")) / "sound.raw";
};

class RealSound : public RealPlayer {
 protected:
    RealSound() { children.emplace(Arguments{"--sound", sound.sink()}); }

    [[nodiscard]] testing::AssertionResult sounds(int frequency) {
        const auto near = [&] { return std::abs(sound.frequency() - frequency) <= 20; };
        if (WaitFor(near, std::chrono::seconds(20)))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << sound.frequency() << " Hz";
    }

    Sound sound;
    ReceiverTest::HeardEvents events;
};

class ARealPlayersTracks : public RealSound {
 protected:
    ARealPlayersTracks()
        : players(
              "me", scenario, timers, events, plane,
              [this](MediaListener& ears, PictureSink&) { return makePlayer(ears, screen); },
              [this] { return players.atWork(); }) {
        scenario.media.maximumPlayers = 1;
        scenario.broadcast.volume = 100;
        scenario.locale.audioLanguages = "eng,deu";
    }
    void TearDown() override {
        players.release(1);
        RealPlayer::TearDown();
    }

    [[nodiscard]] bool starts(const std::string& url) {
        players.session(1).location = "file:///page.html";
        players.session(1).setUrl(url);
        return players.acquire(1) && players.player(1)->play(1.0) &&
               WaitFor([&] { return players.player(1)->state() == MediaState::Playing; });
    }
    [[nodiscard]] std::vector<std::string> audio(bool activeOnly) {
        return describe(players.components(1, ComponentType::Audio, activeOnly));
    }

    Plane plane{events, [] {}};
    MediaPlayers players;
};

TEST_F(ARealPlayersTracks, AreHeardAsTheyAreSelected) {
    ASSERT_TRUE(starts(server.url("good/languages.mp4")));
    EXPECT_THAT(audio(false), ElementsAre("1 HEAAC 2 deu 2", "1 HEAAC 3 eng 5"));
    EXPECT_THAT(audio(true), ElementsAre("1 HEAAC 3 eng 5")) << "the language that the viewer prefers";
    ASSERT_TRUE(sounds(880));
    players.selectComponent(1, 1, 2);
    EXPECT_THAT(audio(true), ElementsAre("1 HEAAC 2 deu 2"));
    ASSERT_TRUE(sounds(440));
    players.unselectComponent(1, 1, 2);
    EXPECT_THAT(audio(true), testing::IsEmpty());
    ASSERT_TRUE(sounds(0));
    players.selectComponent(1, 1, AnyPid);
    ASSERT_TRUE(sounds(880));
    players.session(1).setVolume(0);
    ASSERT_TRUE(sounds(0));
    std::erase_if(events.heard, [](const std::string& each) { return !each.starts_with("signed 206"); });
    EXPECT_THAT(events.heard, ElementsAre("signed 206 1 1", "signed 206 1 1", "signed 206 1 1"));
    EXPECT_EQ(players.player(1)->state(), MediaState::Playing);
}

// In segments, only what is heard is fetched.
TEST_F(ARealPlayersTracks, HaveTheirChannelsBeforeTheyAreHeard) {
    const auto channels = [this] {
        std::vector<std::string> all;
        for (const auto& each : players.components(1, ComponentType::Audio, false))
            all.push_back(each.language + " " + std::to_string(each.extra));
        return all;
    };
    for (const auto* list : {"good/languages/index.mpd", "good/languages/index.m3u8"}) {
        SCOPED_TRACE(list);
        ASSERT_TRUE(starts(server.url(list)));
        EXPECT_THAT(channels(), ElementsAre("deu 2", "eng 5"));
        ASSERT_TRUE(sounds(880)) << "the language that the viewer prefers";
        players.selectComponent(1, 1, players.components(1, ComponentType::Audio, false)[0].pid);
        ASSERT_TRUE(sounds(440));
    }
    // One in letters that not every reader knows plays all the same.
    const auto folder = mediaFolder() / "languages";
    std::ifstream stream(folder / "index.mpd");
    std::string list{std::istreambuf_iterator<char>(stream), {}};
    for (const auto& [what, instead] :
         {std::pair("UTF-8", "ISO-8859-1"), std::pair("<Period>", "<Period id=\"f\xfcr dich\">")})
        list.replace(list.find(what), std::strlen(what), instead);
    std::ofstream(folder / "latin.mpd") << list;
    ASSERT_TRUE(starts(server.url("good/languages/latin.mpd")));
    EXPECT_TRUE(sounds(880));
}

TEST_F(ARealPlayersTracks, FollowOneAnotherInTheQueue) {
    ASSERT_TRUE(starts(fileUrl("film.mp4")));
    ASSERT_TRUE(players.session(1).queue(fileUrl("tone.mp3")));
    ASSERT_TRUE(players.player(1)->seek(11800));
    ASSERT_TRUE(
        WaitFor([&] { return players.player(1)->duration() < 7000 && players.player(1)->position() > 0; }));
    ASSERT_TRUE(sounds(660));
    EXPECT_EQ(players.session(1).url(), fileUrl("tone.mp3"));
}

constexpr const char kChannels[] = R"({
  "broadcast": {"current_channel": 1, "related": true, "tune_ms": 1, "volume": 100, "channels": [
    {"id": 1, "name": "One", "id_type": "ID_DVB_T", "picture": "film.mp4", "components": [
      {"type": "audio", "pid": 100, "tag": 1, "encoding": "HEAAC"}]},
    {"id": 2, "name": "Two", "id_type": "ID_DVB_T", "picture": "tone.mp3"},
    {"id": 3, "name": "Three", "id_type": "ID_DVB_T"}]}
})";

class TheSoundOfAChannel : public RealSound {
 protected:
    void TearDown() override {
        for (const auto* caller : {"me", "other"})
            world.forget(caller);
        EXPECT_TRUE(isSilent());
        RealPlayer::TearDown();
    }
    [[nodiscard]] bool isSilent() {
        const bool isOver = WaitFor([] { return filmProcesses(getpid()).empty(); });
        sound.forget();
        return isOver;
    }
    void show(std::uint32_t channel) { (void)television.setChannel(1, {0, "", 0, 0, 0, channel}); }

    World world{nlohmann::json::parse(kChannels), mediaFolder().string(), timers, events,
                [this](MediaListener& ears, PictureSink&) { return makePlayer(ears, screen); }};
    BroadcastPlayers& television = world.caller("me").broadcast();
    BroadcastPlayers& other = world.caller("other").broadcast();
};

TEST_F(TheSoundOfAChannel, IsAsLoudAsTheLoudestOfThoseWhoWatchWantIt) {
    ASSERT_TRUE(television.bindToCurrentChannel(1));
    ASSERT_TRUE(sounds(440));
    // The beginning of a sound is not quite as loud as the rest.
    const auto loudest = sound.loudness();
    const auto isAt = [&](int percent) {
        return WaitFor([&] { return std::abs(sound.loudness() * 100 / loudest - percent) < 15; });
    };
    television.setVolume(1, 40);
    EXPECT_TRUE(isAt(40)) << sound.loudness();
    other.setVolume(1, 70);
    ASSERT_TRUE(other.bindToCurrentChannel(1));
    EXPECT_TRUE(isAt(70)) << sound.loudness();
    other.unselectComponent(1, 1, AnyPid);
    EXPECT_TRUE(isAt(40)) << "who has taken the sound away hears nothing: " << sound.loudness();
    television.unselectComponent(1, 1, 100);
    ASSERT_TRUE(sounds(0));
    television.selectComponent(1, 1, 100);
    EXPECT_TRUE(isAt(40)) << sound.loudness();
    television.setVolume(1, 0);
    ASSERT_TRUE(sounds(0));
    // Another channel has the same volume, and all of its sound.
    television.setVolume(1, 100);
    television.unselectComponent(1, 1, AnyPid);
    show(2);
    EXPECT_TRUE(sounds(660));
}

TEST_F(TheSoundOfAChannel, EndsWithItsPicture) {
    const auto again = [this] {
        show(1);
        return sounds(440);
    };
    ASSERT_TRUE(again());
    show(3);
    EXPECT_TRUE(isSilent()) << "a channel without a picture";
    ASSERT_TRUE(again());
    television.stop(1);
    EXPECT_TRUE(isSilent());
    ASSERT_TRUE(again());
    television.setNullChannel(1, true);
    EXPECT_TRUE(isSilent());
    ASSERT_TRUE(again());
    world.forget("me");
    EXPECT_TRUE(isSilent());
    // Behind an application, at the receiver's volume, until it is closed.
    world.registerView(1, "http://x/", "shell");
    ASSERT_TRUE(sounds(440));
    world.setValue("/broadcast/volume", "0");
    EXPECT_TRUE(sounds(0));
    world.forget("shell");
    EXPECT_TRUE(isSilent());
}

}  // namespace
