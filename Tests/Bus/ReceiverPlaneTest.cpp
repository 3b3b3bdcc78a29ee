// What the receiver tells of the video plane, and the road of a player's frames over the bus.
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gio/gunixfdlist.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/Inc/ReceiverNames.h"
#include "Host/Picture/PictureView.h"
#include "Host/Picture/PictureWriter.h"
#include "Host/Receiver/BusReceiver.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/ReceiverFixture.h"

namespace {

using ReceiverTest::writeFile;
using testing::HasSubstr;

constexpr const char films[] = R"({
  "broadcast": {"current_channel": 1, "tune_ms": 1,
    "channels": [{"id": 1, "name": "One", "id_type": "ID_DVB_T"}]},
  "media": {"mime_types": ["video/mp4"], "connect_ms": 1, "maximum_players": 2, "items": [
    {"url": "*/short*", "duration_ms": 50},
    {"url": "*/broken*", "error": 4},
    {"url": "*/song*", "duration_ms": 60000,
     "components": [{"type": "audio", "encoding": "MPEG1_L3", "pid": 1}]},
    {"url": "*/film*", "duration_ms": 60000}]}
})";

std::string plane(const std::string& player, const std::string& content) {
    return "PlaneChanged(" + player + ", true, " + content + ")";
}

std::string noPlane(const std::string& player) {
    return "PlaneChanged(" + player + ", false, 0, 0, 0, 0, false, '', 'none')";
}

std::string state(int player, int value, int error = 1000) {
    return "PluginEventData(200, " + std::to_string(player) + ", " + std::to_string(value) + ", " +
           std::to_string(error) + ")";
}

std::string speed(int player, const char* value) {
    return "PluginEventFloat(201, " + std::to_string(player) + ", " + value + ")";
}

class ThePlane : public ReceiverTest::RunningReceiver {
 protected:
    [[nodiscard]] std::string scenario() const override { return writeFile("films.json", films); }

    void media(const std::string& method, const std::string& arguments) {
        const auto answer = call("IAVEventHandler." + method, "(uint32 " + arguments + ")");
        ASSERT_TRUE(answer.value) << method << ": " << answer.error;
    }
    void layOut(const std::string& player, const std::string& window) {
        media("UpdateLayout", player + ", " + window);
    }
    void play(const std::string& player, const std::string& url) {
        media("SetData", player + ", '" + url + "'");
        media("GetPlayer", player + ",");
        media("Play", player + ", 1.0");
    }
    [[nodiscard]] std::string planes() { return control("GetPlanes").text(); }
};

TEST_F(ThePlane, ShowsAMediumFromItsFirstPlayingUntilItIsStopped) {
    layOut("1", "uint32 10, uint32 20, uint32 320, uint32 180, false");
    play("1", "http://x/a/film.mp4?token=/y.z#t");
    const auto shown = plane("'broadband', 'me', 1", "10, 20, 320, 180, false, 'film.mp4', 'card'");
    EXPECT_TRUE(hears({state(1, 3), shown, state(1, 1), speed(1, "1.0")})) << "the picture before the event";
    forget();
    media("Play", "1, 0.0");
    EXPECT_TRUE(hears({state(1, 2), speed(1, "0.0")})) << "a pause changes nothing to be seen";
    EXPECT_EQ(planes(), "([('broadband', 'me', 1, 10, 20, 320, 180, false, 'film.mp4', 'card')],)");
    forget();
    media("Stop", "1,");
    media("Stop", "1,");
    EXPECT_TRUE(hears({noPlane("'broadband', 'me', 1"), state(1, 0)}));
    EXPECT_EQ(planes(), "([],)");
}

TEST_F(ThePlane, FollowsTheWindowOfAMediumThatPlays) {
    play("1", "http://x/film.mp4");
    EXPECT_TRUE(hears({state(1, 3), state(1, 1), speed(1, "1.0")})) << "there is no window yet";
    forget();
    layOut("1", "uint32 4294967196, uint32 20, uint32 320, uint32 180, false");
    layOut("1", "uint32 4294967196, uint32 20, uint32 320, uint32 180, false");
    layOut("1", "uint32 0, uint32 0, uint32 0, uint32 0, true");
    layOut("1", "uint32 0, uint32 0, uint32 0, uint32 9, false");
    layOut("1", "uint32 0, uint32 0, uint32 9, uint32 0, false");
    layOut("1", "uint32 1, uint32 2, uint32 3, uint32 4, false");
    EXPECT_TRUE(hears({plane("'broadband', 'me', 1", "4294967196, 20, 320, 180, false, 'film.mp4', 'card'"),
                       plane("'broadband', 'me', 1", "0, 0, 0, 0, true, 'film.mp4', 'card'"),
                       noPlane("'broadband', 'me', 1"),
                       plane("'broadband', 'me', 1", "1, 2, 3, 4, false, 'film.mp4', 'card'")}));
}

TEST_F(ThePlane, RemembersTheWindowOfAReleasedPlayerUntilThePageHasGone) {
    layOut("1", "uint32 1, uint32 2, uint32 3, uint32 4, false");
    for (int time = 0; time < 2; ++time) {
        forget();
        play("1", "http://x/film.mp4");
        EXPECT_TRUE(
            hears({state(1, 3), plane("'broadband', 'me', 1", "1, 2, 3, 4, false, 'film.mp4', 'card'"),
                   state(1, 1), speed(1, "1.0")}));
        forget();
        media("ReleasePlayer", "1,");
        EXPECT_TRUE(hears({noPlane("'broadband', 'me', 1"), state(1, 0)}));
    }
    media("ReleasePlayer", "0,");
    forget();
    play("1", "http://x/film.mp4");
    EXPECT_TRUE(hears({state(1, 3), state(1, 1), speed(1, "1.0")})) << "another page's player";
}

TEST_F(ThePlane, HidesAMediumThatHasEndedOrFails) {
    layOut("1", "uint32 1, uint32 2, uint32 3, uint32 4, false");
    play("1", "http://x/short.mp4");
    EXPECT_TRUE(hears({state(1, 3), plane("'broadband', 'me', 1", "1, 2, 3, 4, false, 'short.mp4', 'card'"),
                       state(1, 1), speed(1, "1.0"), noPlane("'broadband', 'me', 1"), state(1, 5)}));
    forget();
    play("1", "http://x/broken.mp4");
    EXPECT_TRUE(hears({state(1, 0), state(1, 3), state(1, 6, 4)})) << "never anything to be seen";
}

TEST_F(ThePlane, TellsPlayersOfTheSameIdApartAndShowsAllAtOnce) {
    const std::string window = "uint32 0, uint32 0, uint32 16, uint32 9, false";
    ASSERT_TRUE(call("IBroadcastPlayer.UpdateLayout", "(uint32 1, " + window + ")").value);
    layOut("1", window);
    layOut("2", "uint32 16, uint32 0, uint32 16, uint32 9, false");
    ASSERT_TRUE(call("IBroadcastPlayer.BindToCurrentChannel", "(uint32 1,)").value);
    EXPECT_TRUE(hears({"PluginEventData(101, 1, 1, 1000)",
                       plane("'broadcast', 'me', 1", "0, 0, 16, 9, false, 'One', 'card'"),
                       "PluginEventData(101, 1, 2, 1000)"}));
    forget();
    play("1", "http://x/film.mp4");
    ASSERT_TRUE(WaitFor([this] { return signals().size() == 4; }));
    play("2", "http://x/song.mp3");
    ASSERT_TRUE(WaitFor([this] { return signals().size() == 8; }));
    EXPECT_THAT(signals(),
                testing::Contains(plane("'broadband', 'me', 2", "16, 0, 16, 9, false, 'song.mp3', 'audio'")));
    const std::string broadcast = "('broadcast', 'me', 1, 0, 0, 16, 9, false, 'One', 'card')";
    EXPECT_EQ(planes(), "([" + broadcast +
                            ", ('broadband', 'me', 1, 0, 0, 16, 9, false, 'film.mp4', 'card'), "
                            "('broadband', 'me', 2, 16, 0, 16, 9, false, 'song.mp3', 'audio')],)");
    forget();
    media("ReleasePlayer", "0,");
    EXPECT_TRUE(
        hears({noPlane("'broadband', 'me', 1"), state(1, 0), noPlane("'broadband', 'me', 2"), state(2, 0)}));
    EXPECT_EQ(planes(), "([" + broadcast + "],)");
}

TEST_F(ThePlane, HasNoFramesOfPlayersThatDecodeNothing) {
    play("1", "http://x/film.mp4");
    ASSERT_TRUE(WaitFor([this] { return signals().size() == 3; }));
    EXPECT_THAT(control("OpenPicture", "('broadband', 'me', uint32 1)").error,
                HasSubstr("there are no frames of the broadband player 1"));
    EXPECT_THAT(control("OpenPicture", "('broadband', 'me', uint32 7)").error,
                HasSubstr("broadband player 7"));
    EXPECT_THAT(control("OpenPicture", "('broadcast', 'me', uint32 1)").error,
                HasSubstr("broadcast player 1"));
    EXPECT_THAT(control("OpenPicture", "('cable', 'me', uint32 1)").error,
                HasSubstr("no kind of player \"cable\""));
}

// Decodes frames of one colour, on a thread of its own, as long as it plays.
class ColourPlayer : public Receiver::MediaPlayer {
 public:
    static constexpr int Width = 24;
    static constexpr int Height = 16;

    ColourPlayer(Receiver::MediaListener& listener, Receiver::PictureSink& sink)
        : m_listener(listener), m_sink(sink) {}
    ~ColourPlayer() override { end(); }

    void load(const std::string& url) override {
        stop();
        m_colour = static_cast<std::uint8_t>(url.size());
    }
    bool play(double) override {
        change(Receiver::MediaState::Playing);
        end();
        m_memory = std::make_unique<Host::PictureWriter>();
        const auto write = [this,
                            bytes = std::vector<std::uint8_t>(std::size_t{Width} * Height * 4, m_colour)] {
            (void)m_memory->write(Width, Height, Width * 4, bytes.data());
        };
        write();
        m_sink.show(m_memory->share());
        m_thread = std::jthread([write](const std::stop_token& stopped) {
            while (!stopped.stop_requested()) {
                write();
                std::this_thread::yield();
            }
        });
        return true;
    }
    void stop() override {
        end();
        m_sink.clear();
        change(Receiver::MediaState::Stopped);
    }
    bool seek(std::uint32_t) override { return false; }
    Receiver::MediaState state() const override { return m_state; }
    std::uint32_t position() const override { return 0; }
    std::uint32_t duration() const override { return 0; }
    double speed() const override { return 1.0; }
    std::vector<Receiver::Component> components() const override { return {}; }
    void present(const std::vector<Receiver::Component>&) override {}
    void setVolume(std::int32_t) override {}

 private:
    void end() {
        if (m_thread.joinable()) {
            m_thread.request_stop();
            m_thread.join();
        }
    }
    void change(Receiver::MediaState next) {
        if (std::exchange(m_state, next) != next)
            m_listener.mediaStateChanged(next, Receiver::NoError);
    }

    Receiver::MediaListener& m_listener;
    Receiver::PictureSink& m_sink;
    std::unique_ptr<Host::PictureWriter> m_memory;
    std::uint8_t m_colour = 0;
    Receiver::MediaState m_state = Receiver::MediaState::Stopped;
    std::jthread m_thread;
};

// A receiver within the test, with such players, and somebody else on its bus.
class AReceiverThatDecodes : public testing::Test {
 protected:
    AReceiverThatDecodes() {
        Host::GErrorSlot error;
        const Host::GChars address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
        for (auto* side : {&m_receiverSide, &m_shellSide})
            side->reset(g_dbus_connection_new_for_address_sync(
                address.get(),
                static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                  G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
                nullptr, nullptr, error.out()));
        const auto make = [](Receiver::MediaListener& listener, Receiver::PictureSink& sink) {
            return std::make_unique<ColourPlayer>(listener, sink);
        };
        m_receiver = std::make_unique<Receiver::BusReceiver>(
            m_receiverSide.get(), nlohmann::json::parse(R"({"media": {"maximum_players": 2}})"), ".", make);
        std::string problem;
        EXPECT_TRUE(m_receiver->start(problem)) << problem;
    }
    ~AReceiverThatDecodes() override {
        m_receiver.reset();
        for (auto* side : {&m_receiverSide, &m_shellSide})
            g_dbus_connection_close_sync(side->get(), nullptr, nullptr);
    }

    // The reply's text; with a list, also the descriptors that came with it.
    std::string call(const char* interface, const char* path, const char* method, const char* arguments,
                     Host::GObjectHandle<GUnixFDList>* files = nullptr) {
        struct Reply {
            Host::GVariantHandle value;
            Host::GObjectHandle<GUnixFDList> files;
            std::string text;
        } reply;
        const auto finish = [](GObject* source, GAsyncResult* result, gpointer user) {
            auto& finished = *static_cast<Reply*>(user);
            GUnixFDList* list = nullptr;
            Host::GErrorSlot error;
            finished.value.reset(g_dbus_connection_call_with_unix_fd_list_finish(G_DBUS_CONNECTION(source),
                                                                                 &list, result, error.out()));
            finished.files.reset(list);
            finished.text =
                error ? error.message() : Host::GChars(g_variant_print(finished.value.get(), FALSE)).get();
        };
        const auto name = std::string(Receiver::Names::Prefix) + interface;
        ReceiverTest::setLabel(m_shellSide.get(), "me");
        g_dbus_connection_call_with_unix_fd_list(m_shellSide.get(), name.c_str(), path, name.c_str(), method,
                                                 g_variant_new_parsed(ReceiverTest::named(arguments).c_str()),
                                                 nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, 20000, nullptr,
                                                 nullptr, finish, &reply);
        EXPECT_TRUE(WaitFor([&reply] { return !reply.text.empty(); }));
        if (files != nullptr)
            *files = std::move(reply.files);
        return ReceiverTest::labelled(reply.text);
    }
    std::string media(const char* method, const char* arguments) {
        return call("IAVEventHandler", Receiver::Names::ObjectPath, method, arguments);
    }
    std::string control(const char* method, const char* arguments,
                        Host::GObjectHandle<GUnixFDList>* files = nullptr) {
        return call("ReceiverControl", Receiver::Names::ControlPath, method, arguments, files);
    }
    std::unique_ptr<Host::PictureView> open(const char* player) {
        Host::GObjectHandle<GUnixFDList> files;
        EXPECT_EQ(control("OpenPicture", player, &files), "(0,)");
        Host::GErrorSlot error;
        return files ? Host::PictureView::open(
                           Host::Descriptor(g_unix_fd_list_get(files.get(), 0, error.out())))
                     : nullptr;
    }
    bool showsFrames(const char* player) {
        return WaitFor([&] {
            const auto shown = control("GetPlanes", "()");
            return shown.find(player) != std::string::npos && shown.find("'frames'") != std::string::npos;
        });
    }
    // Everything of this colour, in the end.
    static bool becomes(Host::PictureView& view, std::uint8_t colour) {
        return WaitFor([&] {
            view.update();
            return view.width() == ColourPlayer::Width && view.height() == ColourPlayer::Height &&
                   view.pixels().front() == colour * 0x010101U && view.pixels().back() == colour * 0x010101U;
        });
    }

    Host::GObjectHandle<GDBusConnection> m_receiverSide;
    Host::GObjectHandle<GDBusConnection> m_shellSide;
    std::unique_ptr<Receiver::BusReceiver> m_receiver;
};

TEST_F(AReceiverThatDecodes, SharesTheFramesOfEachOfItsPlayers) {
    for (const char* window : {"(uint32 1, uint32 0, uint32 0, uint32 16, uint32 9, false)",
                               "(uint32 2, uint32 9, uint32 0, uint32 16, uint32 9, false)"})
        media("UpdateLayout", window);
    media("SetData", "(uint32 1, 'x/a')");
    media("GetPlayer", "(uint32 1,)");
    EXPECT_THAT(control("OpenPicture", "('broadband', 'me', uint32 1)"), HasSubstr("there are no frames"));
    media("Play", "(uint32 1, 1.0)");
    ASSERT_TRUE(showsFrames("'broadband', 'me', 1"));
    const auto first = open("('broadband', 'me', uint32 1)");
    ASSERT_TRUE(first);
    EXPECT_TRUE(becomes(*first, 3));
    media("SetData", "(uint32 2, 'x/bcd')");
    media("GetPlayer", "(uint32 2,)");
    media("Play", "(uint32 2, 1.0)");
    ASSERT_TRUE(
        WaitFor([this] { return control("OpenPicture", "('broadband', 'me', uint32 2)") == "(0,)"; }));
    const auto second = open("('broadband', 'me', uint32 2)");
    ASSERT_TRUE(second);
    EXPECT_TRUE(becomes(*second, 5));
    // Another medium of the same player has a memory of its own.
    media("SetData", "(uint32 1, 'x/abcdef')");
    EXPECT_THAT(control("OpenPicture", "('broadband', 'me', uint32 1)"), HasSubstr("there are no frames"));
    media("Play", "(uint32 1, 1.0)");
    ASSERT_TRUE(showsFrames("'broadband', 'me', 1"));
    const auto third = open("('broadband', 'me', uint32 1)");
    ASSERT_TRUE(third);
    EXPECT_TRUE(becomes(*third, 8));
    EXPECT_TRUE(becomes(*second, 5));
    // A view stays harmless when the player is gone.
    media("ReleasePlayer", "(uint32 1,)");
    (void)third->update();
    EXPECT_EQ(control("GetPlanes", "()"), "([('broadband', 'me', 2, 9, 0, 16, 9, false, 'bcd', 'frames')],)");
}

TEST_F(AReceiverThatDecodes, EndsWhilePlayersAreAtWork) {
    media("UpdateLayout", "(uint32 1, uint32 0, uint32 0, uint32 16, uint32 9, false)");
    media("SetData", "(uint32 1, 'x/a')");
    media("GetPlayer", "(uint32 1,)");
    media("Play", "(uint32 1, 1.0)");
    EXPECT_TRUE(showsFrames("'broadband', 'me', 1"));
    m_receiver.reset();
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

}  // namespace
