// hbbtv-media: plays films for the receiver, which starts it, each in a process of its own. It loads
// GStreamer once, and becomes two for each film whose line the receiver hands it; that process ends with the
// line.
#include <algorithm>
#include <csignal>
#include <iostream>

// The header of glibc 2.36 does not say that it is C.
extern "C" {
#include <sys/pidfd.h>
}
#include <sys/prctl.h>
#include <unistd.h>

#include <gio/gunixconnection.h>

#include "Host/Inc/CommandLine.h"
#include "Host/Media/Film.h"
#include "Host/Receiver/GLibTimers.h"
#include "Host/Receiver/Media/MediaWords.h"
#include "Host/Receiver/World/ReceiverEvents.h"

namespace {

using namespace Receiver;

constexpr int kLineNumber = 3;
constexpr std::uint32_t kTickMs = 200;

// What most media need. Loaded ahead, it does not keep a film waiting.
constexpr const char* kUsualPlugins[] = {"app",
                                         "audioconvert",
                                         "audiofx",
                                         "audioparsers",
                                         "audioresample",
                                         "coreelements",
                                         "isomp4",
                                         "libav",
                                         "mpegtsdemux",
                                         "playback",
                                         "soup",
                                         "typefindfunctions",
                                         "videoconvertscale",
                                         "videofilter",
                                         "videoparsersbad",
                                         "volume"};

// What is under way when the film is over needs no end of its own.
[[noreturn]] void leave() {
    _exit(0);
}

class Player : private MediaListener {
 public:
    Player(Host::Descriptor line, const std::string& sound)
        : m_tick(m_timers),
          m_picture([this](bool shown) { pictureChanged(shown); }),
          m_subtitles([this](const Media::Subtitle& due) {
              m_timers.post([this, due] {
                  m_subtitle = due;
                  sayWhatIsToBeRead();
              });
          }),
          // Never destroyed, as it wants it.
          m_pipeline(
              *new Media::Pipeline(m_picture, m_subtitles, sound, [this](GstMessage* each) { hear(each); })),
          m_film(m_pipeline, m_timers, *this),
          m_link(std::move(line), MediaLink::Writes::Wait,
                 {[this](MediaMessage& message) { obey(message); }, leave}) {
        // By a descriptor, nobody else can be mistaken for this process.
        say(MediaWords::Ready, nullptr, Host::Descriptor(pidfd_open(getpid(), 0)));
    }

 private:
    void mediaStateChanged(MediaState state, std::int32_t error) override {
        sayFilm();
        say(MediaWords::State,
            g_variant_new(MediaWords::State.type, static_cast<std::int32_t>(state), error));
    }
    void mediaSpeedChanged(double speed) override {
        sayFilm();
        say(MediaWords::Speed, g_variant_new_double(speed));
    }
    void mediaPositionChanged(std::uint32_t milliseconds) override {
        sayFilm();
        say(MediaWords::Sought, g_variant_new_uint32(milliseconds));
    }
    void mediaComponentsChanged() override {
        GVariantBuilder all;
        g_variant_builder_init(&all, G_VARIANT_TYPE(MediaWords::Components.type));
        for (const auto& each : m_film.components())
            g_variant_builder_add(&all, "(isnsi)", static_cast<std::int32_t>(each.type),
                                  each.encoding.c_str(), each.pid, each.language.c_str(), each.extra);
        say(MediaWords::Components, g_variant_builder_end(&all));
    }
    void pictureChanged(bool shown) {
        m_timers.post([this, shown] {
            say(MediaWords::Picture, g_variant_new_boolean(shown ? TRUE : FALSE),
                shown ? m_picture.share() : Host::Descriptor());
        });
    }

    void hear(GstMessage* message) {
        m_film.handle(message);
        // Now it may move, or stand.
        if (m_pipeline.isSource(message))
            sayFilm();
    }

    void obey(const MediaMessage& message) {
        auto* content = message.content.get();
        m_number = message.number;
        if (message.is(MediaWords::Load)) {
            load(content);
        } else if (message.is(MediaWords::Begin)) {
            m_film.begin();
        } else if (message.is(MediaWords::Play)) {
            m_film.play(g_variant_get_double(content));
        } else if (message.is(MediaWords::Seek)) {
            m_film.seek(g_variant_get_uint32(content));
        } else if (message.is(MediaWords::Present)) {
            gsize count = 0;
            const auto* pids = static_cast<const std::int16_t*>(
                g_variant_get_fixed_array(content, &count, sizeof(std::int16_t)));
            m_film.present({pids, pids + count});
            sayWhatIsToBeRead();
        } else if (message.is(MediaWords::Volume)) {
            m_pipeline.setVolume(g_variant_get_int32(content) / 100.0);
        }
        sayFilm();
    }
    void load(GVariant* content) {
        const char* url = nullptr;
        const char* userAgent = nullptr;
        double speed = 1.0;
        std::uint32_t limitMs = 0;
        std::int32_t volume = 100;
        g_variant_get(content, "(&s&sdui)", &url, &userAgent, &speed, &limitMs, &volume);
        m_pipeline.setVolume(volume / 100.0);
        m_pipeline.setUserAgent(userAgent);
        m_film.load(url, speed, limitMs);
        tick();
    }

    void tick() {
        sayFilm();
        sayWhatIsToBeRead();
        m_tick.start(kTickMs, [this] { tick(); });
    }
    void sayWhatIsToBeRead() {
        // After a seek it is another moment's.
        const auto position = m_film.position();
        const bool isDue = position + kTickMs >= m_subtitle.from && position < m_subtitle.until;
        const std::string text = isDue && m_film.showsSubtitles() ? m_subtitle.text : std::string();
        if (std::exchange(m_read, text) != text)
            say(MediaWords::Subtitle, g_variant_new_string(text.c_str()));
    }
    void sayFilm() {
        const auto position = m_film.position();
        say(MediaWords::Film,
            g_variant_new(MediaWords::Film.type, m_timers.now(), position, m_film.duration(), m_film.pace(),
                          m_film.speed(), m_film.isSeekable() ? TRUE : FALSE));
    }
    void say(const MediaWord& word, GVariant* content = nullptr, const Host::Descriptor& file = {}) {
        if (!m_link.send(word, m_number, content, file))
            leave();
    }

    GLibTimers m_timers;
    Timer m_tick;
    Media::PictureOutput m_picture;
    Media::SubtitleOutput m_subtitles;
    Media::Subtitle m_subtitle;  // the last one that was due
    std::string m_read;          // what the receiver has been told
    Media::Pipeline& m_pipeline;
    Media::Film m_film;
    MediaLink m_link;
    std::uint32_t m_number = 0;
};

// Whatever ends the process that started this one, and wherever this one is stuck then.
void endWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

[[noreturn]] void play(Host::Descriptor line, const std::string& sound) {
    const Host::GMainLoopHandle loop(g_main_loop_new(nullptr, FALSE));
    const Player player(std::move(line), sound);
    g_main_loop_run(loop.get());
    leave();
}

// Nothing here makes a thread or a main context, which no other process could share.
[[noreturn]] void serve(const std::string& sound) {
    const Host::GObjectHandle<GSocket> socket(g_socket_new_from_fd(kLineNumber, nullptr));
    if (!socket)
        leave();
    const Host::GObjectHandle<GSocketConnection> receiver(
        g_socket_connection_factory_create_connection(socket.get()));
    // Nobody waits for those that have ended.
    std::signal(SIGCHLD, SIG_IGN);
    for (;;) {
        Host::Descriptor line(
            g_unix_connection_receive_fd(G_UNIX_CONNECTION(receiver.get()), nullptr, nullptr));
        if (!line)
            leave();
        if (fork() != 0)
            continue;
        endWithParent();
        std::signal(SIGCHLD, SIG_DFL);
        g_socket_close(socket.get(), nullptr);
        play(std::move(line), sound);
    }
}

}  // namespace

int main(int count, char** arguments) {
    endWithParent();
    const Host::CommandLine commandLine = {"hbbtv-media", HBBTV_VERSION, nullptr,
                                           "Plays films for hbbtv-receiver, which starts it."};
    std::string sound;
    Host::OptionTexts texts;
    const GOptionEntry entries[] = {
        {"sound", 0, 0, G_OPTION_ARG_STRING, texts.placeFor(sound), "Where sound goes", "SINK"}, {}};
    const std::string problem =
        Host::parseCommandLine(commandLine, entries, {arguments + 1, arguments + std::max(count, 1)});
    texts.take();
    if (!problem.empty())
        return Host::refuseCommandLine(commandLine, problem);
    GError* error = nullptr;
    // The first time this may look through all of GStreamer's plugins.
    if (!gst_init_check(nullptr, nullptr, &error)) {
        std::cerr << "hbbtv-media: there is no GStreamer: " << error->message << std::endl;
        return 1;
    }
    for (const auto* name : kUsualPlugins)
        if (auto* plugin = gst_plugin_load_by_name(name))
            gst_object_unref(plugin);
    serve(sound);
}
