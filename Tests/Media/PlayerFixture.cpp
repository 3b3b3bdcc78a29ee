#include "Tests/Media/PlayerFixture.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include <gmock/gmock.h>

#include "Host/Receiver/Media/GstHandles.h"
#include "Host/Receiver/Media/WorkQueue.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Tests/Bus/BusFixture.h"

namespace MediaTest {

using Receiver::MediaState;

namespace {

constexpr std::chrono::seconds patience(30);

Colour colourOf(const std::uint8_t* bgrx) {
    const int blue = bgrx[0];
    const int red = bgrx[2];
    if (red > blue + 60)
        return Colour::Red;
    return blue > red + 60 ? Colour::Blue : Colour::Other;
}

// GStreamer's own account of its elements; Main.cpp has it kept.
std::vector<std::string> livingElements() {
    std::vector<std::string> names;
    GList* tracers = gst_is_initialized() ? gst_tracing_get_active_tracers() : nullptr;
    for (const GList* each = tracers; each != nullptr; each = each->next) {
        if (g_signal_lookup("get-live-objects", G_OBJECT_TYPE(each->data)) == 0)
            continue;
        GstStructure* living = nullptr;
        g_signal_emit_by_name(each->data, "get-live-objects", &living);
        const std::unique_ptr<GstStructure, Host::GFree<&gst_structure_free>> owned(living);
        const auto* list = gst_structure_get_value(living, "live-objects-list");
        for (guint i = 0; i < gst_value_list_get_size(list); ++i) {
            const auto* entry = gst_value_get_structure(gst_value_list_get_value(list, i));
            const auto* object = gst_structure_get_value(entry, "object");
            names.emplace_back(G_OBJECT_TYPE_NAME(g_value_get_object(object)));
        }
    }
    g_list_free_full(tracers, gst_object_unref);
    return names;
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

void Screen::frame(int width, int height, int stride, const std::uint8_t* bgrx) {
    const auto at = [&](int x, int y) { return colourOf(bgrx + y * stride + x * 4); };
    const auto corners = {at(2, 2), at(width - 3, 2), at(2, height - 3), at(width - 3, height - 3)};
    const std::lock_guard lock(m_mutex);
    m_size = {width, height};
    ++m_frames;
    m_colour = Colour::Other;
    for (const auto candidate : {Colour::Red, Colour::Blue}) {
        if (std::count(corners.begin(), corners.end(), candidate) >= 3)
            m_colour = candidate;
    }
}

void Screen::clear() {
    const std::lock_guard lock(m_mutex);
    m_colour = Colour::None;
}

Colour Screen::colour() const {
    const std::lock_guard lock(m_mutex);
    return m_colour;
}

std::pair<int, int> Screen::size() const {
    const std::lock_guard lock(m_mutex);
    return m_size;
}

int Screen::frames() const {
    const std::lock_guard lock(m_mutex);
    return m_frames;
}

RealPlayer::RealPlayer() : player(makePlayer(listener, screen)) {}

void RealPlayer::TearDown() {
    player.reset();
    EXPECT_TRUE(Receiver::WorkQueue::waitForAll(10000)) << "a pipeline does not end";
    EXPECT_THAT(livingElements(), testing::IsEmpty());
}

std::unique_ptr<Receiver::GStreamerMediaPlayer> RealPlayer::makePlayer(Receiver::MediaListener& ears,
                                                                       Screen& shown) {
    // Nobody wants to hear a test.
    return std::make_unique<Receiver::GStreamerMediaPlayer>(
        scenario, timers, ears, Receiver::MediaOutputs{&shown, "fakesink sync=true"});
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
