// The real player on the seam that the receiver uses, with media made for the tests.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Host/Picture/PictureView.h"
#include "Host/Receiver/GLibTimers.h"
#include "Host/Receiver/Media/ChildMediaPlayer.h"
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

// The latest picture, as the shell sees it; by three of its corners: a ball may be in the fourth.
class Screen : public Receiver::PictureSink {
 public:
    void show(Host::Descriptor memory) override { m_view = Host::PictureView::open(std::move(memory)); }
    void clear() override { m_view.reset(); }
    void subtitle(const std::string&) override {}

    [[nodiscard]] Colour colour();
    [[nodiscard]] std::pair<int, int> size();
    // Whether there is another picture than at the last look.
    [[nodiscard]] bool changes() { return m_view != nullptr && m_view->update(); }

 private:
    std::unique_ptr<Host::PictureView> m_view;
};

// The program for films that this program, or another one, has for a child; and the processes of its films.
[[nodiscard]] std::vector<int> mediaProcesses(int parent);
[[nodiscard]] std::vector<int> filmProcesses(int parent);

class RealPlayer : public testing::Test {
 protected:
    using Arguments = std::vector<std::string>;

    RealPlayer();
    // No process outlives its player for long.
    void TearDown() override;

    [[nodiscard]] std::unique_ptr<Receiver::MediaPlayer> makePlayer(Receiver::MediaListener& ears,
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
    // Nobody wants to hear a test.
    std::optional<Receiver::MediaChildren> children{std::in_place,
                                                    Arguments{"--sound", "fakesink sync=true"}};
    std::unique_ptr<Receiver::MediaPlayer> player;
};

}  // namespace MediaTest
