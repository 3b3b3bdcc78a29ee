// Live television: the answers, and the signals that tell what came of it.
#include <algorithm>

#include "Host/Check/Session.h"

namespace Check {

using namespace Host;

namespace {

constexpr char kGroup[] = "Live television";
enum Place { First, Then };

// The signals of one broadcast player, as they read.
class BroadcastPlayer : public Player {
 public:
    explicit BroadcastPlayer(Session& session) : Player(session, "IBroadcastPlayer", "Release") {}

    [[nodiscard]] std::string state(const std::string& value, const std::string& error = "1000") const {
        return "PluginEventData(101, " + m_id + ", " + value + ", " + error + ")";
    }
    [[nodiscard]] std::string change(const std::string& channel, const std::string& error = "1000") const {
        return "PluginEventData(100, " + m_id + ", " + channel + ", " + error + ")";
    }
    void expect(const std::vector<Expected>& expected) {
        const std::vector<std::string> relevant = {"PluginEventData(100, " + m_id + ",*",
                                                   "PluginEventData(101, " + m_id + ",*"};
        m_session.middleware.expect(relevant, expected);
        // What comes too much has come before this answer.
        ask("GetChannel");
        m_session.middleware.expect(relevant, expected);
        m_session.middleware.forget();
    }

    void bind() {
        if (!booleanOf(ask("BindToCurrentChannel")))
            throw Skipped("BindToCurrentChannel says that there is no current channel");
        expect({{First, state("1"), false}, {Then, state("2")}});
    }
    // Whether the channel that was asked for is shown; it may be refused, if that is told as it should be.
    bool isShown(const std::string& channel) {
        auto& middleware = m_session.middleware;
        const std::vector<std::string> told = {"PluginEventData(100, " + m_id + ",*"};
        require(middleware.waitFor([&] { return !middleware.heard(told).empty(); }),
                change(channel, "*") + " did not come within " + middleware.limitText());
        const bool isShown = middleware.heard(told).front()->text.ends_with(", 1000)");
        if (isShown)
            expect({{First, state("1"), false}, {Then, change(channel)}, {Then, state("2")}});
        else
            expect({{First, state("1"), false}, {Then, change("*", "*")}, {Then, state("0", "*"), false}});
        return isShown;
    }
    bool zapTo(std::uint32_t channel) {
        const std::string id = std::to_string(channel);
        const auto answer = ask("SetChannel", ", 0, '', -1, -1, -1, " + id);
        require(booleanOf(answer, 1), "SetChannel refuses channel " + id + " of the list");
        require(unsignedOf(answer) == channel,
                "SetChannel of channel " + id + " answers with " + std::to_string(unsignedOf(answer)));
        return isShown(id);
    }
};

std::string zap(Session& session) {
    constexpr size_t kTried = 3;
    BroadcastPlayer player(session);
    player.bind();
    const auto before = session.currentChannel();
    auto others = session.watchableChannels();
    std::erase(others, before);
    for (size_t at = 0; at < std::min(others.size(), kTried); ++at) {
        if (!player.zapTo(others[at]))
            continue;
        const auto told = player.ask("GetChannel");
        require(booleanOf(told, 1) && unsignedOf(told) == others[at],
                "GetChannel is " + textOf(told.get()) + " when channel " + std::to_string(others[at]) +
                    " is shown");
        require(session.currentChannel() == others[at],
                "CurrentChannel is another than the one that is shown");
        require(player.zapTo(before), "the channel before cannot be shown any more");
        return "to channel " + std::to_string(others[at]) + " and back";
    }
    throw Skipped("there is no other channel that can be shown");
}

std::string step(Session& session) {
    BroadcastPlayer player(session);
    player.bind();
    const auto before = session.currentChannel();
    if (!booleanOf(player.ask("NextOrPrevChannel", ", true"), 1))
        throw Skipped("NextOrPrevChannel refuses");
    (void)player.isShown("*");
    require(player.zapTo(before), "the channel before cannot be shown any more");
    return "to the next channel and back";
}

std::string failedZap(Session& session) {
    BroadcastPlayer player(session);
    player.bind();
    const auto before = session.currentChannel();
    // No broadcaster has these numbers.
    (void)player.ask("SetChannel", ", 12, '', 65535, 65535, 65535, 0");
    require(!player.isShown("*"), "a channel that does not exist is told as shown");
    require(session.currentChannel() == before, "after a channel that does not exist, CurrentChannel is " +
                                                    std::to_string(session.currentChannel()));
    return "told with an error; the channel before stays current";
}

std::string stopAndRelease(Session& session) {
    BroadcastPlayer player(session);
    player.bind();
    player.ask("Stop");
    player.expect({{First, player.state("3")}});
    player.bind();
    player.ask("Release");
    player.expect({{First, player.state("0")}});
    require(!booleanOf(player.ask("GetChannel"), 1), "GetChannel still has a channel after Release");
    return "states 3 and 0";
}

std::string components(Session& session) {
    constexpr size_t kPid = 3;
    BroadcastPlayer player(session);
    player.bind();
    const auto pids = [&](const char* active) {
        const auto reply = player.ask("GetAudioComponents", std::string(", ") + active);
        const GVariantHandle list(g_variant_get_child_value(reply.get(), 0));
        std::vector<int> found;
        for (size_t at = 0; at < g_variant_n_children(list.get()); ++at) {
            const GVariantHandle component(g_variant_get_child_value(list.get(), at));
            const GVariantHandle pid(g_variant_get_child_value(component.get(), kPid));
            found.push_back(g_variant_get_int16(pid.get()));
        }
        return found;
    };
    const auto all = pids("false");
    const auto active = pids("true");
    const auto other = std::find_if(all.begin(), all.end(), [&](int pid) {
        return std::find(active.begin(), active.end(), pid) == active.end();
    });
    if (other == all.end())
        throw Skipped("the current channel has no second sound");
    player.ask("SelectComponent", ", 1, " + std::to_string(*other));
    session.middleware.expect({"PluginEventSigned(108, *"}, {{First, "PluginEventSigned(108, *, 1)"}});
    require(pids("true") == std::vector{*other},
            "GetAudioComponents does not tell what SelectComponent has chosen");
    return "from the sound with pid " + std::to_string(active.empty() ? 0 : active.front()) + " to " +
           std::to_string(*other);
}

}  // namespace

void checkTelevision(Session& session) {
    const std::vector<std::string> needs = {"IBroadcastPlayer", "IDAEBrowserAPI"};
    std::vector<std::string> needsChannels = needs;
    needsChannels.emplace_back("IJSChannelCache");
    session.check(kGroup, "A bind is presented", needs, [&] {
        BroadcastPlayer player(session);
        player.bind();
        return "states 1 and 2, or 2 at once";
    });
    session.check(kGroup, "A zap is told and presented", needsChannels, [&] { return zap(session); });
    session.check(kGroup, "The next channel is told", needs, [&] { return step(session); });
    session.check(kGroup, "A failed zap is told", needs, [&] { return failedZap(session); });
    session.check(kGroup, "Stop and release are told", needs, [&] { return stopAndRelease(session); });
    session.check(kGroup, "Another sound is told", needs, [&] { return components(session); });
}

}  // namespace Check
