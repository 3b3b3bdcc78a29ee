// The real player on the seam that the receiver uses, with media made for the tests.
#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Host/Receiver/GLibTimers.h"
#include "Host/Receiver/Media/GStreamerMediaPlayer.h"
#include "Host/Receiver/World/MediaPlayer.h"
#include "Tests/Media/MediaServer.h"

namespace MediaTest {

[[nodiscard]] std::filesystem::path mediaFolder();
[[nodiscard]] std::string fileUrl(const std::string& name);
// Makes what is missing in the media folder. False, and the reason on the error output, when it cannot.
[[nodiscard]] bool makeMedia();

// What a player has said: "state 1", "state 6 error 4", "speed 1", "position 9000", "components".
class Listener : public Receiver::MediaListener {
 public:
    void mediaStateChanged(Receiver::MediaState state, std::int32_t error) override;
    void mediaSpeedChanged(double speed) override;
    void mediaPositionChanged(std::uint32_t milliseconds) override;
    void mediaComponentsChanged() override { heard.emplace_back("components"); }

    [[nodiscard]] bool has(const std::string& what) const;

    std::vector<std::string> heard;
};

enum class Colour { None, Red, Blue, Other };

// The latest picture, seen by three of its corners: a ball may be in the fourth.
class Screen : public Receiver::PictureSink {
 public:
    void frame(int width, int height, int stride, const std::uint8_t* bgrx) override;
    void clear() override;

    [[nodiscard]] Colour colour() const;
    [[nodiscard]] std::pair<int, int> size() const;
    [[nodiscard]] int frames() const;

 private:
    mutable std::mutex m_mutex;
    Colour m_colour = Colour::None;
    std::pair<int, int> m_size{0, 0};
    int m_frames = 0;
};

class RealPlayer : public testing::Test {
 protected:
    RealPlayer();
    // No pipeline outlives its player for long.
    void TearDown() override;

    [[nodiscard]] std::unique_ptr<Receiver::GStreamerMediaPlayer> makePlayer(Receiver::MediaListener& ears,
                                                                             Screen& shown);
    // Loads and plays, and waits until it is seen and heard.
    [[nodiscard]] testing::AssertionResult plays(const std::string& url, double speed = 1.0);
    // Waits for the state, or for a state from which it cannot be reached any more.
    [[nodiscard]] testing::AssertionResult reaches(Receiver::MediaState state);
    [[nodiscard]] bool reachesPosition(std::uint32_t milliseconds);

    Receiver::Scenario scenario;
    Receiver::GLibTimers timers;
    Listener listener;
    Screen screen;
    MediaServer server{mediaFolder()};
    std::unique_ptr<Receiver::GStreamerMediaPlayer> player;
};

}  // namespace MediaTest
