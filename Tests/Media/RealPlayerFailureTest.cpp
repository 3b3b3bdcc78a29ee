// Media that do not play, or not to their end: always a state and an error, never a wait without end.
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
        ASSERT_TRUE(reaches(MediaState::Error));
        const auto said = "state 6 error " + std::to_string(error);
        EXPECT_EQ(listener.heard.back(), said);
        EXPECT_EQ(player->position(), 0u);
        EXPECT_THAT(player->components(), testing::IsEmpty());
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
    ASSERT_TRUE(reaches(MediaState::Error));
    EXPECT_EQ(listener.heard.back(), "state 6 error 4");
}

TEST_F(ABrokenMedium, DiesWhilePlayingWhenTheServerDropsTheConnection) {
    ASSERT_TRUE(plays(server.url("dropped/film.mp4")));
    ASSERT_TRUE(reachesPosition(300));
    server.drop();
    ASSERT_TRUE(reaches(MediaState::Error));
    EXPECT_EQ(listener.heard.back(), "state 6 error 1");
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
    ASSERT_TRUE(reaches(MediaState::Error));
    EXPECT_EQ(listener.heard.back(), "state 6 error 1");
}

}  // namespace
