// Media that do not play, or not to their end: always a state and an error, never a wait without end.
#include <cstdlib>
#include <fstream>
#include <iterator>

#include <sys/stat.h>

#include <gmock/gmock.h>

#include "Tests/Bus/BusFixture.h"
#include "Tests/Media/PlayerFixture.h"

namespace {

using namespace MediaTest;
using namespace Receiver;
using testing::ElementsAre;

class ABrokenMedium : public RealPlayer {
 protected:
    void expectFailure(const std::string& url, std::int32_t error) {
        SCOPED_TRACE(url);
        listener.heard.clear();
        player->load(url);
        ASSERT_TRUE(player->play(1.0));
        ends(error);
        EXPECT_EQ(player->position(), 0u);
        EXPECT_THAT(player->components(), testing::IsEmpty());
    }
    void ends(std::int32_t error) {
        ASSERT_TRUE(reaches(MediaState::Error));
        EXPECT_EQ(listener.heard.back(), "state 6 error " + std::to_string(error));
    }
};

TEST_F(ABrokenMedium, SaysWhyItDoesNotPlay) {
    std::string refused;
    {
        const MediaServer gone(mediaFolder());
        refused = gone.url("good/film.mp4");
    }
    expectFailure(refused, MediaError::CannotConnect);
    expectFailure(server.url("good/nothing.mp4"), MediaError::ContentNotAvailable);
    expectFailure(server.url("good/nothing.m3u8"), MediaError::ContentNotAvailable);
    expectFailure(fileUrl("nothing.mp4"), MediaError::ContentNotAvailable);
    expectFailure("no address", MediaError::ContentNotAvailable);
    expectFailure(server.url("good/text.mp4"), MediaError::Corrupt);
    expectFailure(server.url("good/page.mp4"), MediaError::Corrupt);
    expectFailure(fileUrl("broken.mp4"), MediaError::Corrupt);
    expectFailure(server.url("good/broken.mp4"), MediaError::Corrupt);
    expectFailure(fileUrl("unknown-codec.mp4"), MediaError::UnsupportedFormat);
    expectFailure("carrier-pigeon://film", MediaError::UnsupportedFormat);
    expectFailure("fd://0", MediaError::UnsupportedFormat);
    // The player is none the worse for it.
    EXPECT_TRUE(plays(server.url("good/film.mp4")));
}

TEST_F(ABrokenMedium, MayBeNoFileAtAll) {
    scenario.media.connectLimitMs = 1000;
    const auto pipe = std::string(std::getenv("HOME")) + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
    expectFailure("file://" + pipe, MediaError::Corrupt);
    expectFailure("file://" + mediaFolder().string(), MediaError::ContentNotAvailable);
    expectFailure("file:///dev/zero", MediaError::Corrupt);
}

// What a network address leads to is from the network, too: no detour tells a page which files there are.
class AMediumOfTheNetwork : public RealPlayer {
 protected:
    // The newer demuxers of lists read HTTP only, whatever the list says; the older ones, whatever there is.
    AMediumOfTheNetwork() {
        g_setenv("GST_PLUGIN_FEATURE_RANK", "hlsdemux2:NONE,dashdemux2:NONE", TRUE);
        children.emplace(Arguments{"--sound", "fakesink sync=true"});
        player = makePlayer(listener, screen);
    }
    ~AMediumOfTheNetwork() override { g_unsetenv("GST_PLUGIN_FEATURE_RANK"); }

    // The list, its segments being files of the folder.
    static std::string withFilesOf(const std::string& folder, const char* list, const char* segment) {
        std::ifstream stream(mediaFolder() / list);
        std::string content{std::istreambuf_iterator<char>(stream), {}};
        const auto address = "file://" + folder + "/";
        for (auto at = content.find(segment); at != std::string::npos;
             at = content.find(segment, at + address.size() + 1))
            content.insert(at, address);
        return content;
    }
    // A film that says that it is to be had elsewhere.
    static std::string reference(const std::string& address) {
        const auto box = [](const char* name, const std::string& content) {
            return number(content.size() + 8) + name + content;
        };
        return box("moov",
                   box("rmra", box("rmda", box("rdrf", number(0) + "url " + number(address.size() + 1) +
                                                           address + std::string(1, '\0')))));
    }
    // What is heard of the medium that the server says to have elsewhere.
    [[nodiscard]] std::vector<std::string> heardOf(const std::string& url) {
        listener.heard.clear();
        player->load(url);
        EXPECT_TRUE(player->play(1.0));
        (void)reaches(MediaState::Playing);
        player->stop();
        return listener.heard;
    }

 private:
    static std::string number(std::size_t value) {
        std::string bytes;
        for (const int shift : {24, 16, 8, 0})
            bytes += static_cast<char>(value >> shift & 0xff);
        return bytes;
    }
};

TEST_F(AMediumOfTheNetwork, LeadsToNoLocalFile) {
    scenario.media.connectLimitMs = 3000;
    const std::filesystem::path home = std::getenv("HOME");
    const MediaServer own(home);
    const auto heardOfOwn = [&](const std::string& name, const std::string& content) {
        std::ofstream(home / name) << content;
        return heardOf(own.url("good/" + name));
    };
    const auto detours = [&](const std::string& folder) {
        return std::vector{
            heardOf(server.url("elsewhere" + folder.substr(mediaFolder().string().size()) + "/film.mp4")),
            heardOfOwn("index.m3u8", withFilesOf(folder + "/hls", "hls/index.m3u8", "segment")),
            heardOfOwn("variants.m3u8",
                       "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=300000\nfile://" + folder + "/hls/index.m3u8\n"),
            heardOfOwn("index.mpd", withFilesOf(folder + "/languages", "languages/index.mpd", "$Rep")),
            heardOfOwn("film.mp4", reference("file://" + folder + "/film.mp4"))};
    };
    const auto there = detours(mediaFolder());
    EXPECT_THAT(there, testing::Each(testing::Contains(testing::StartsWith("state 6"))));
    EXPECT_EQ(there, detours(mediaFolder() / "nowhere"));
}

TEST_F(ABrokenMedium, IsNotWaitedForWithoutEnd) {
    scenario.media.connectLimitMs = 300;
    player->load(server.url("silent/film.mp4"));
    ASSERT_TRUE(player->play(1.0));
    EXPECT_EQ(player->state(), MediaState::Connecting);
    ASSERT_TRUE(reaches(MediaState::Error));
    EXPECT_THAT(listener.heard, ElementsAre("state 3", "state 6 error 1"));
}

TEST_F(ABrokenMedium, EndsInTheErrorStateWhenItEndsTooEarly) {
    ASSERT_TRUE(plays(fileUrl("truncated.mp4")));
    ASSERT_TRUE(player->seek(5000));
    ends(MediaError::Corrupt);
}

TEST_F(ABrokenMedium, DiesWhilePlayingWhenTheServerDropsTheConnection) {
    ASSERT_TRUE(plays(server.url("dropped/film.mp4")));
    ASSERT_TRUE(reachesPosition(300));
    server.drop();
    ends(MediaError::CannotConnect);
}

TEST_F(ABrokenMedium, BuffersAndThenDiesWhenTheServerSendsNothingMore) {
    scenario.media.connectLimitMs = 2000;
    ASSERT_TRUE(plays(server.url("stalled/film.mp4")));
    ASSERT_TRUE(reaches(MediaState::Buffering));
    // A pause needs no more of it.
    ASSERT_TRUE(player->play(0.0));
    ASSERT_TRUE(reaches(MediaState::Paused));
    EXPECT_FALSE(
        WaitFor([&] { return player->state() == MediaState::Error; }, std::chrono::milliseconds(2200)));
    ASSERT_TRUE(player->play(1.0));
    ends(MediaError::CannotConnect);
}

}  // namespace
