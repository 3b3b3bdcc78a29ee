// The receiver as a program with a medium that it decodes, on the bus.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>

#include <unistd.h>

#include <gio/gunixfdlist.h>

#include "Host/Inc/ReceiverNames.h"
#include "Host/Receiver/Media/MediaWords.h"
#include "Tests/Bus/ReceiverFixture.h"
#include "Tests/Media/PlayerFixture.h"

namespace {

using MediaTest::fileUrl;
using ReceiverTest::RunningReceiver;
using ReceiverTest::writeFile;
using testing::Contains;
using testing::HasSubstr;

class AReceiverWithARealPlayer : public RunningReceiver {
 protected:
    void play(const std::string& url, const std::string& player = "(uint32 7,") {
        (void)call("IAVEventHandler.SetLocation", player + " 'file:///page.html')");
        (void)call("IAVEventHandler.SetData", player + " '" + url + "')");
        EXPECT_EQ(ask("IAVEventHandler.SetVolume", player + " 0)"), "(true,)");
        EXPECT_EQ(ask("IAVEventHandler.GetPlayer", player + ")"), "(true,)");
        EXPECT_EQ(ask("IAVEventHandler.Play", player + " 1.0)"), "(true,)");
    }
    // Of the pictures that a shell is given of the player.
    [[nodiscard]] bool shows(std::uint32_t player, MediaTest::Colour colour) {
        MediaTest::Screen screen;
        return WaitFor([&] {
            open(screen, player);
            return screen.colour() == colour;
        });
    }
    void open(MediaTest::Screen& screen, std::uint32_t player, const char* kind = "broadband") {
        const char* me = g_dbus_connection_get_unique_name(connection());
        GUnixFDList* list = nullptr;
        const Host::GVariantHandle reply(g_dbus_connection_call_with_unix_fd_list_sync(
            connection(), Receiver::Names::Control, Receiver::Names::ControlPath, Receiver::Names::Control,
            "OpenPicture", g_variant_new("(ssu)", kind, me, player), G_VARIANT_TYPE("(h)"),
            G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &list, nullptr, nullptr));
        const Host::GObjectHandle<GUnixFDList> files(list);
        if (reply && files)
            screen.show(Host::Descriptor(g_unix_fd_list_get(files.get(), 0, nullptr)));
    }
    [[nodiscard]] bool hearsOf(const std::string& signal) {
        return WaitFor([&] { return testing::Value(signals(), Contains(signal)); });
    }
};

TEST_F(AReceiverWithARealPlayer, WritesTheSubtitlesThatAPageHasSelectedOverTheFilmWhileTheyAreDue) {
    (void)call("IAVEventHandler.UpdateLayout",
               "(uint32 7, uint32 0, uint32 0, uint32 320, uint32 180, false)");
    const auto reads = [this](const char* text) {
        return hearsOf(
            "PlaneChanged('broadband', 'me', 7, true, 0, 0, 320, 180, false, 'subtitles.mkv', 'frames', '" +
            std::string(text) + "')");
    };
    play(fileUrl("subtitles.mkv"));
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 1, 1000)"));
    EXPECT_EQ(ask("IAVEventHandler.GetSbtComponents", "(uint32 7, true)"), "([],)");
    const auto all = ask("IAVEventHandler.GetSbtComponents", "(uint32 7, false)");
    EXPECT_THAT(all, HasSubstr("'deu'"));
    (void)call("IAVEventHandler.SelectComponent", "(uint32 7, 2, -1)");
    EXPECT_TRUE(reads("Good evening & welcome\\nto the news"));
    forget();
    EXPECT_TRUE(reads(""));
    EXPECT_TRUE(reads("The weather"));
    // Before the first text, away from it, and before the second.
    forget();
    EXPECT_EQ(ask("IAVEventHandler.Seek", "(uint32 7, uint32 800)"), "(true,)");
    EXPECT_TRUE(reads("Good evening & welcome\\nto the news"));
    forget();
    EXPECT_EQ(ask("IAVEventHandler.Seek", "(uint32 7, uint32 6000)"), "(true,)");
    EXPECT_TRUE(reads(""));
    EXPECT_EQ(ask("IAVEventHandler.Seek", "(uint32 7, uint32 2800)"), "(true,)");
    EXPECT_TRUE(reads("The weather"));
    forget();
    (void)call("IAVEventHandler.UnSelectComponent", "(uint32 7, 2, -1)");
    EXPECT_TRUE(reads(""));
}

TEST_F(AReceiverWithARealPlayer, TellsPagesAboutTheMediumItself) {
    EXPECT_EQ(ask("IAVEventHandler.CheckMimeType", "('application/vnd.apple.mpegurl',)"), "(true,)");
    (void)call("IAVEventHandler.UpdateLayout",
               "(uint32 7, uint32 1, uint32 2, uint32 320, uint32 180, false)");
    play(fileUrl("film.mp4"));
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 1, 1000)"));
    EXPECT_TRUE(
        hearsOf("PlaneChanged('broadband', 'me', 7, true, 1, 2, 320, 180, false, 'film.mp4', 'frames', '')"));
    EXPECT_EQ(ask("IAVEventHandler.GetPlayTime", "(uint32 7,)"), "(12021,)");
    EXPECT_EQ(ask("IAVEventHandler.GetVideoComponents", "(uint32 7, true)"),
              "([(0, 'H264', false, 1, 0, 0x01, '', false, 178)],)");
    EXPECT_EQ(ask("IAVEventHandler.Seek", "(uint32 7, uint32 11500)"), "(true,)");
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 5, 1000)"));
    // What the scenario describes is still simulated.
    play("http://media.invalid/broken.mp4");
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 6, 4)"));
    // What plays at the end of the program ends with it.
    play(fileUrl("film.mp4"));
}

TEST_F(AReceiverWithARealPlayer, SharesThePicturesOfEachOfItsPlayers) {
    play(fileUrl("film.mp4"));
    play(fileUrl("film.mp4"), "(uint32 8,");
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 1, 1000)"));
    ASSERT_TRUE(hearsOf("PluginEventData(200, 8, 1, 1000)"));
    EXPECT_EQ(ask("IAVEventHandler.Play", "(uint32 7, 0.0)"), "(true,)");
    EXPECT_EQ(ask("IAVEventHandler.Seek", "(uint32 8, uint32 9000)"), "(true,)");
    EXPECT_TRUE(shows(8, MediaTest::Colour::Blue));
    EXPECT_TRUE(shows(7, MediaTest::Colour::Red));
    // Another medium of the same player has pictures of its own, and one that is given back none.
    play(fileUrl("film.mp4"), "(uint32 8,");
    EXPECT_TRUE(shows(8, MediaTest::Colour::Red));
    (void)call("IAVEventHandler.ReleasePlayer", "(uint32 8,)");
    EXPECT_THAT(control("OpenPicture", "('broadband', 'me', uint32 8)").error,
                HasSubstr("there are no frames"));
    // The other goes on.
    EXPECT_EQ(ask("IAVEventHandler.Seek", "(uint32 7, uint32 9000)"), "(true,)");
    EXPECT_TRUE(shows(7, MediaTest::Colour::Blue));
}

class AChannelWithAPicture : public AReceiverWithARealPlayer {
 protected:
    void setPicture(const std::string& url) { setWorld("/broadcast/channels/0/picture", "\"" + url + "\""); }
    void present() {
        forget();
        (void)call("IBroadcastPlayer.UpdateLayout",
                   "(uint32 1, uint32 0, uint32 0, uint32 64, uint32 36, false)");
        EXPECT_EQ(ask("IBroadcastPlayer.BindToCurrentChannel", "(uint32 1,)"), "(true,)");
    }
    [[nodiscard]] static std::string plane(const std::string& picture) {
        return "PlaneChanged('broadcast', 'me', 1, true, 0, 0, 64, 36, false, 'Nordlicht 1', '" + picture +
               "', '')";
    }
    [[nodiscard]] auto count(const std::string& signal) const {
        return std::count(signals().begin(), signals().end(), signal);
    }
    [[nodiscard]] bool runs(const std::string& channel) {
        return WaitFor([&] { return control("GetRunningChannel").text() == channel; });
    }
    [[nodiscard]] std::vector<int> films() { return MediaTest::filmProcesses(pid()); }
};

TEST_F(AChannelWithAPicture, ShowsItAgainAndAgainForAsLongAsSomebodyLooks) {
    setPicture(fileUrl("film.mp4"));
    EXPECT_EQ(control("GetRunningChannel").text(), "('Nordlicht 1', 'none')");
    EXPECT_THAT(films(), testing::IsEmpty()) << "there is no screen yet";
    EXPECT_EQ(control("RegisterView", "(1, 'http://x/')").error, "");
    ASSERT_TRUE(runs("('Nordlicht 1', 'frames')"));
    const auto film = films();
    MediaTest::Screen behind;
    open(behind, 0, "broadcast");
    EXPECT_EQ(behind.colour(), MediaTest::Colour::Red);
    present();
    ASSERT_TRUE(hearsOf(plane("frames")));
    MediaTest::Screen screen;
    open(screen, 1, "broadcast");
    // Red, blue, and without a word red again.
    for (const auto colour : {MediaTest::Colour::Red, MediaTest::Colour::Blue, MediaTest::Colour::Red})
        EXPECT_TRUE(WaitFor([&] { return screen.colour() == colour; }, std::chrono::seconds(30)));
    EXPECT_TRUE(WaitFor([&] { return screen.changes(); }));
    EXPECT_EQ(count(plane("frames")), 1);
    (void)call("IBroadcastPlayer.Release", "(uint32 1,)");
    EXPECT_TRUE(runs("('Nordlicht 1', 'frames')"));
    EXPECT_EQ(control("UnregisterView", "(1,)").error, "");
    EXPECT_TRUE(WaitFor([this] { return films().empty(); }));
    EXPECT_EQ(film.size(), 1u);
}

TEST_F(AChannelWithAPicture, BeginsAFilmAnewThatCannotBeTakenBack) {
    MediaTest::MediaServer server(MediaTest::mediaFolder());
    setPicture(server.url("from-start/hls/segment0.ts"));
    present();
    ASSERT_TRUE(hearsOf(plane("frames")));
    const auto first = films();
    EXPECT_TRUE(WaitFor([this] { return count(plane("frames")) > 1; }, std::chrono::seconds(30)));
    EXPECT_GT(count(plane("none")), 1) << "the memory of before is none any more";
    EXPECT_NE(films(), first);
}

TEST_F(AChannelWithAPicture, ShowsACardInsteadOfOneThatCannotBePlayed) {
    for (const auto& picture :
         {std::string(), std::string("nowhere.mp4"), fileUrl("broken.mp4"), fileUrl("tone.mp3")}) {
        setPicture(picture);
        present();
        EXPECT_TRUE(hearsOf(plane("card"))) << picture;
        const bool hasFilm = picture.find("tone") != std::string::npos;
        EXPECT_TRUE(WaitFor([&] { return films().size() == (hasFilm ? 1u : 0u); })) << picture;
        EXPECT_THAT(control("OpenPicture", "('broadcast', 'me', uint32 1)").error,
                    HasSubstr("there are no frames"));
        (void)call("IBroadcastPlayer.Release", "(uint32 1,)");
    }
    // By then it was said to be simulated.
    setPicture(fileUrl("film.mp4"));
    setWorld("/media/player", "\"simulated\"");
    present();
    EXPECT_TRUE(hearsOf(plane("card")));
}

// As the system sees the receiver: what it holds, and the processes of its films.
struct Holdings {
    explicit Holdings(int process) {
        const auto proc = std::filesystem::path("/proc") / std::to_string(process);
        const auto count = [&proc](const char* folder) {
            return std::distance(std::filesystem::directory_iterator(proc / folder), {});
        };
        descriptors = count("fd");
        threads = count("task");
        films = static_cast<std::ptrdiff_t>(MediaTest::filmProcesses(process).size());
    }
    auto operator<=>(const Holdings&) const = default;

    std::ptrdiff_t descriptors;
    std::ptrdiff_t threads;
    std::ptrdiff_t films;
};

// What nobody else has of the memory, in KiB.
int privateMemory(int process) {
    std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string word; rollup >> word;) {
        int amount = 0;
        if (word == "Private_Dirty:" && rollup >> amount)
            return amount;
    }
    return 0;
}

// HBBTV_MEDIA_ROUNDS says how often; the moments are the same in every run. Long ones tell of the memory.
TEST_F(AReceiverWithARealPlayer, HoldsNothingOfFilmsThatWereLetGoAtAnyMoment) {
    MediaTest::MediaServer server(MediaTest::mediaFolder());
    play(server.url("good/film.mp4"));
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 1, 1000)"));
    (void)call("IAVEventHandler.Stop", "(uint32 7,)");
    ASSERT_TRUE(WaitFor([this] { return MediaTest::filmProcesses(pid()).empty(); }));
    const Holdings before(pid());
    const char* wanted = std::getenv("HBBTV_MEDIA_ROUNDS");
    const int rounds = wanted == nullptr ? 40 : std::atoi(wanted);
    alarm(120 + static_cast<unsigned>(rounds));
    constexpr const char* paths[] = {"good/film.mp4",       "good/hls/index.m3u8", "good/languages/index.mpd",
                                     "good/film.ts",        "good/tone.mp3",       "silent/film.mp4",
                                     "from-start/film.mp4", "dropped/film.mp4",    "good/nothing.mp4"};
    std::mt19937 chance(1);
    const auto below = [&chance](unsigned limit) { return chance() % limit; };
    for (int round = 0; round < rounds; ++round) {
        const auto url = server.url(paths[below(std::size(paths))]);
        EXPECT_EQ(ask("IAVEventHandler.SetData", "(uint32 7, '" + url + "')"), "()");
        (void)call("IAVEventHandler.GetPlayer", "(uint32 7,)");
        EXPECT_EQ(ask("IAVEventHandler.Play", "(uint32 7, 1.0)"), "(true,)");
        for (auto deeds = below(4); deeds > 0; --deeds) {
            (void)WaitFor([] { return false; }, std::chrono::milliseconds(below(60)));
            const auto place = std::to_string(below(12000));
            (void)(below(2) == 0 ? call("IAVEventHandler.Seek", "(uint32 7, uint32 " + place + ")")
                                 : call("IAVEventHandler.Play",
                                        below(2) == 0 ? "(uint32 7, 0.0)" : "(uint32 7, -4.0)"));
        }
        (void)call(below(2) == 0 ? "IAVEventHandler.Stop" : "IAVEventHandler.ReleasePlayer", "(uint32 7,)");
        forget();
        (void)control("ClearCalls", "()");
        if (round % 500 != 499)
            continue;
        std::cout << round + 1 << " rounds: " << privateMemory(pid()) << " KiB" << std::endl;
    }
    EXPECT_TRUE(WaitFor([&] { return Holdings(pid()) <= before; }))
        << Holdings(pid()).descriptors << " descriptors, not " << before.descriptors << "; "
        << Holdings(pid()).threads << " threads, not " << before.threads << "; " << Holdings(pid()).films
        << " processes";
    play(fileUrl("film.mp4"));
    EXPECT_TRUE(hearsOf("PluginEventData(200, 7, 1, 1000)"));
}

TEST_F(AReceiverWithARealPlayer, OutlivesTheProcessesOfItsFilms) {
    // Long enough for a film to begin on a busy machine, and waited for only by what was stopped.
    setWorld("/media/connect_limit_ms", "4000");
    for (const auto find : {MediaTest::filmProcesses, MediaTest::mediaProcesses}) {
        for (const int signal : {SIGKILL, SIGABRT, SIGSTOP}) {
            play(fileUrl("film.mp4"));
            ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 1, 1000)")) << signal;
            ::kill(find(pid()).at(0), signal);
            // A program that stands still is noticed by the next film.
            if (find == &MediaTest::mediaProcesses && signal == SIGSTOP)
                play(fileUrl("film.mp4"));
            ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 6, 2)")) << signal;
            forget();
        }
    }
    play(fileUrl("film.mp4"));
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 1, 1000)"));
    // They do not outlive it.
    auto processes = MediaTest::mediaProcesses(pid());
    std::ranges::copy(MediaTest::filmProcesses(pid()), std::back_inserter(processes));
    ASSERT_EQ(processes.size(), 2u);
    kill();
    EXPECT_TRUE(WaitFor([&] {
        return std::none_of(processes.begin(), processes.end(),
                            [](int each) { return ::kill(each, 0) == 0; });
    }));
}

// Instead of films being played the script "media.sh" says what it likes.
class AReceiverWithABrokenPlayer : public AReceiverWithARealPlayer {
 protected:
    void SetUp() override {
        const auto program =
            writeFile("program.sh", "#!/bin/sh\nexec " FILM_SCRIPTS " " + writeFile("media.sh", ""));
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        g_setenv("HBBTV_MEDIA", program.c_str(), TRUE);
        AReceiverWithARealPlayer::SetUp();
        g_setenv("HBBTV_MEDIA", HBBTV_MEDIA, TRUE);
    }
    static std::string packet(const char* word, const char* content) {
        const auto message = "(uint32 9, '" + std::string(word) + "', <" + content + ">)";
        const Host::GVariantHandle value(
            g_variant_parse(G_VARIANT_TYPE("(usv)"), message.c_str(), nullptr, nullptr, nullptr));
        EXPECT_TRUE(value) << message;
        return {static_cast<const char*>(g_variant_get_data(value.get())), g_variant_get_size(value.get())};
    }
};

TEST_F(AReceiverWithABrokenPlayer, BelievesNothingUnseen) {
    std::string says;
    int count = 0;
    for (const auto& [word, content] : std::initializer_list<std::pair<const char*, const char*>>{
             {"ready", "()"},
             {"ready", "()"},
             {"state", "(1, -7)"},
             {"state", "(99, 1000)"},
             {"state", "'1'"},
             {"nonsense", "5"},
             {"speed", "1e300"},
             {"film", "(int64 -9000000000000000000, uint32 4000000000, uint32 0, 64.0, 1.0, true)"},
             {"film", "(int64 0, uint32 0, uint32 0, inf, 1.0, true)"},
             {"components", "[(77, 'x', int16 -1, '', 5)]"},
             {"picture", "true"}}) {
        const auto file = writeFile("packet" + std::to_string(count++), packet(word, content));
        says += "cat " + file + " >&3\n";
    }
    for (const auto& script :
         {std::string(), std::string("echo nonsense >&3\ncat >&2 <&3\n"),
          std::string("head -c 70000 /dev/zero | dd bs=70000 iflag=fullblock status=none >&3\n"
                      "cat >&2 <&3\n"),
          says}) {
        SCOPED_TRACE(script);
        (void)writeFile("media.sh", script);
        play(fileUrl("film.mp4"));
        EXPECT_TRUE(hearsOf("PluginEventData(200, 7, 6, 2)"));
        forget();
    }
    EXPECT_EQ(ask("IAVEventHandler.IsAVPlayerAlive", "(uint32 7,)"), "(true,)");
}

TEST_F(AReceiverWithARealPlayer, SimulatesWhatItIsToldToSimulate) {
    setWorld("/media/player", "\"simulated\"");
    play(fileUrl("film.mp4"));
    ASSERT_TRUE(hearsOf("PluginEventData(200, 7, 6, 5)")) << "there is no such item";
}

}  // namespace
