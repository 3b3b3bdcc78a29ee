// Media from the network: a medium that cannot be played, and one that plays to its end.
#include <algorithm>

#include "Host/Check/Session.h"

namespace Check {

using namespace Host;

namespace {

constexpr char kGroup[] = "Media";
enum Place { First, Then };

// The signals of one media player, as they read.
class MediaPlayer : public Player {
 public:
    explicit MediaPlayer(Session& session) : Player(session, "IAVEventHandler", "ReleasePlayer") {}

    void expect(const std::string& signal, const std::vector<Expected>& expected, unsigned moreMs = 0) {
        m_session.middleware.expect({signal + ", " + m_id + ",*"}, expected, moreMs);
    }
    [[nodiscard]] std::string state(const std::string& value, const std::string& error = "*") const {
        return "PluginEventData(200, " + m_id + ", " + value + ", " + error + ")";
    }
    [[nodiscard]] std::string speed(const std::string& value) const {
        return "PluginEventFloat(201, " + m_id + ", " + value + ")";
    }

    // As the bundle sets a player up.
    void open(const std::string& url) {
        require(!booleanOf(ask("FlagPlayerActive")), "FlagPlayerActive is true before GetPlayer");
        if (!booleanOf(ask("GetPlayer")))
            throw Skipped("GetPlayer says that resources are short");
        ask("SetLocation", ", 'http://check.invalid/'");
        ask("SetData", ", " + quoted(url));
        ask("SetMimeType", ", 'video/mp4'");
        require(booleanOf(ask("FlagPlayerActive")), "FlagPlayerActive is false after GetPlayer");
        m_session.middleware.forget();
        require(booleanOf(ask("Play", ", 1.0")), "Play refuses the medium");
    }
};

std::string broken(Session& session) {
    MediaPlayer player(session);
    player.open("http://media.invalid/missing.mp4");
    player.expect("PluginEventData(200", {{First, player.state("3"), false}, {Then, player.state("6")}});
    return session.middleware.heard({player.state("6")}).front()->text;
}

std::string playToTheEnd(Session& session) {
    constexpr unsigned kLongestMs = 60000;
    constexpr unsigned kBeforeEndMs = 1000;
    if (session.options.media.empty())
        throw Skipped("--media names a medium that plays to its end");
    auto& middleware = session.middleware;
    MediaPlayer player(session);
    player.open(session.options.media);
    player.expect(
        "PluginEventData(200",
        {{First, player.state("3"), false}, {First, player.state("4"), false}, {Then, player.state("1")}});
    player.expect("PluginEventFloat(201", {{First, player.speed("1.0")}});

    middleware.forget();
    require(booleanOf(player.ask("Play", ", 0.0")), "Play refuses speed 0");
    player.expect("PluginEventData(200", {{First, player.state("2")}});
    player.expect("PluginEventFloat(201", {{First, player.speed("0.0")}});
    middleware.forget();
    require(booleanOf(player.ask("Play", ", 1.0")), "Play refuses to go on");
    player.expect("PluginEventData(200", {{First, player.state("1")}});

    const auto duration = unsignedOf(player.ask("GetPlayTime"));
    if (duration == 0)
        throw Skipped("it plays and pauses; its end is not known, and so is not waited for");
    middleware.forget();
    const auto target = duration > kBeforeEndMs ? duration - kBeforeEndMs : 0;
    require(booleanOf(player.ask("Seek", ", " + std::to_string(target))),
            "Seek refuses " + std::to_string(target) + " ms");
    player.expect("PluginEventUnsigned(202", {{First, "PluginEventUnsigned(202, *"}});
    require(!booleanOf(player.ask("Seek", ", 4294967295")), "Seek accepts a position behind the end");
    player.expect(
        "PluginEventData(200",
        {{First, player.state("4"), false}, {First, player.state("1"), false}, {Then, player.state("5")}},
        std::min(duration, kLongestMs));
    middleware.forget();
    player.ask("Stop");
    player.expect("PluginEventData(200", {{First, player.state("0")}});
    player.ask("ReleasePlayer");
    require(!booleanOf(player.ask("FlagPlayerActive")), "FlagPlayerActive is true after ReleasePlayer");
    return "played, paused, sought, ended and stopped; " + std::to_string(duration) + " ms long";
}

}  // namespace

void checkMedia(Session& session) {
    const std::vector<std::string> needs = {"IAVEventHandler", "IDAEBrowserAPI"};
    session.check(kGroup, "A medium that is not there is told", needs, [&] { return broken(session); });
    session.check(kGroup, "Play, pause, seek and end are told", needs, [&] { return playToTheEnd(session); });
}

}  // namespace Check
