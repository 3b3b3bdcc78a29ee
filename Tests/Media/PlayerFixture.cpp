#include "Tests/Media/PlayerFixture.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <unistd.h>

#include <gmock/gmock.h>

#include "Host/Receiver/World/ReceiverEvents.h"
#include "Tests/Bus/BusFixture.h"

namespace MediaTest {

using Receiver::MediaState;

namespace {

constexpr std::chrono::seconds patience(30);

Colour colourOf(std::uint32_t pixel) {
    const auto red = static_cast<int>(pixel & 0xff);
    const auto blue = static_cast<int>(pixel >> 16 & 0xff);
    if (red > blue + 60)
        return Colour::Red;
    return blue > red + 60 ? Colour::Blue : Colour::Other;
}

std::string firstLineOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

}  // namespace

std::filesystem::path mediaFolder() {
    return HBBTV_TEST_MEDIA;
}

std::string fileUrl(const std::string& name) {
    return "file://" + (mediaFolder() / name).string();
}

bool makeMedia() {
    // Quoted: the folder may lie anywhere.
    const auto command = std::string("'") + HBBTV_MAKE_MEDIA + "' '" + HBBTV_TEST_MEDIA + "'";
    return std::system(command.c_str()) == 0;
}

void Listener::mediaStateChanged(MediaState state, std::int32_t error) {
    std::ostringstream text;
    text << "state " << static_cast<int>(state);
    if (error != Receiver::NoError)
        text << " error " << error;
    heard.push_back(text.str());
}

void Listener::mediaSpeedChanged(double speed) {
    std::ostringstream text;
    text << "speed " << speed;
    heard.push_back(text.str());
}

void Listener::mediaPositionChanged(std::uint32_t milliseconds) {
    heard.push_back("position " + std::to_string(milliseconds));
}

bool Listener::has(const std::string& what) const {
    return std::find(heard.begin(), heard.end(), what) != heard.end();
}

Colour Screen::colour() {
    (void)changes();
    if (m_view == nullptr || m_view->width() == 0)
        return Colour::None;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(m_view->width() * m_view->height()));
    if (!m_view->read(pixels.data()))
        return Colour::Other;
    const auto right = m_view->width() - 3;
    const auto bottom = m_view->height() - 3;
    const auto at = [&](int x, int y) {
        return colourOf(pixels[static_cast<std::size_t>(y * m_view->width() + x)]);
    };
    const auto corners = {at(2, 2), at(right, 2), at(2, bottom), at(right, bottom)};
    for (const auto candidate : {Colour::Red, Colour::Blue}) {
        if (std::count(corners.begin(), corners.end(), candidate) >= 3)
            return candidate;
    }
    return Colour::Other;
}

std::pair<int, int> Screen::size() {
    (void)changes();
    return m_view == nullptr ? std::pair(0, 0) : std::pair(m_view->width(), m_view->height());
}

std::vector<int> mediaProcesses(int parent) {
    std::vector<int> found;
    const std::filesystem::path tasks = "/proc/" + std::to_string(parent) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks)) {
        std::istringstream children(firstLineOf(task.path() / "children"));
        for (int child = 0; children >> child;) {
            if (firstLineOf("/proc/" + std::to_string(child) + "/comm") == "hbbtv-media")
                found.push_back(child);
        }
    }
    return found;
}

std::vector<int> filmProcesses(int parent) {
    const auto programs = mediaProcesses(parent);
    return programs.empty() ? programs : mediaProcesses(programs.front());
}

RealPlayer::RealPlayer() : player(makePlayer(listener, screen)) {}

void RealPlayer::TearDown() {
    player.reset();
    children.reset();
    EXPECT_TRUE(WaitFor([] { return mediaProcesses(getpid()).empty(); })) << "a process stays";
}

std::unique_ptr<Receiver::MediaPlayer> RealPlayer::makePlayer(Receiver::MediaListener& ears, Screen& shown) {
    return std::make_unique<Receiver::ChildMediaPlayer>(scenario, timers, *children, ears, shown);
}

testing::AssertionResult RealPlayer::plays(const std::string& url, double speed) {
    player->load(url);
    if (!player->play(speed))
        return testing::AssertionFailure() << "refused to play " << url;
    return reaches(MediaState::Playing);
}

testing::AssertionResult RealPlayer::reaches(MediaState state) {
    (void)WaitFor(
        [&] {
            return player->state() == state || player->state() == MediaState::Error ||
                   player->state() == MediaState::Finished;
        },
        patience);
    if (player->state() == state)
        return testing::AssertionSuccess();
    auto result = testing::AssertionFailure();
    result << "state " << static_cast<int>(player->state()) << " at " << player->position() << " ms, heard:";
    for (const auto& what : listener.heard)
        result << "\n  " << what;
    return result;
}

bool RealPlayer::reachesPosition(std::uint32_t milliseconds) {
    return WaitFor([&] { return player->position() >= milliseconds; }, patience);
}

}  // namespace MediaTest
