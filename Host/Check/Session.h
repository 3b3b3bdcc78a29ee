// One look at one middleware: what was asked for, and the checks, each of which becomes a line of the report.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Host/Check/Middleware.h"
#include "Host/Check/Report.h"

namespace Check {

struct Options {
    int limitSeconds = 5;
    std::set<std::string> only;  // Short names of interfaces; empty for all six.
    std::string media;           // A medium that plays to its end.
    std::string file;            // A file of the object carousel that is there.
    std::string streamEvent;     // "NAME@URL", one that fires by itself.
    std::string shell;           // The program that shows a page; empty for none.

    [[nodiscard]] bool claims(const std::string& interface) const {
        return only.empty() || only.contains(interface);
    }
};

class Session {
 public:
    Session(GDBusConnection* bus, const std::vector<Interface>& contract, const Options& options,
            std::function<void(const Finding&)> tell);

    [[nodiscard]] Report run();

    // For the checks themselves.
    Middleware middleware;
    const std::vector<Interface>& contract;
    const Options& options;

    // Claimed, and somebody owns the name.
    [[nodiscard]] bool has(const std::string& interface) const {
        return options.claims(interface) && m_owned.contains(interface);
    }
    void tell(Finding finding);
    // A check that uses these interfaces; it answers what it has seen.
    void check(const std::string& group, const std::string& name, const std::vector<std::string>& needs,
               const std::function<std::string()>& look);
    // Never used before.
    [[nodiscard]] std::string newPlayer() { return std::to_string(++m_lastPlayer); }
    [[nodiscard]] std::vector<std::uint32_t> channels();
    // What pages zap to: shown, and not locked.
    [[nodiscard]] std::vector<std::uint32_t> watchableChannels();
    // 0 for none.
    [[nodiscard]] std::uint32_t currentChannel();

 private:
    const std::function<void(const Finding&)> m_tell;
    std::set<std::string> m_owned;
    Report m_report;
    unsigned m_lastPlayer = 1000;

    friend void checkNames(Session& session);
};

// A player that nobody has had before, of one of the two interfaces. It is let go of at the end: one that is
// left behind would be heard and shown on.
class Player : Host::Pinned {
 public:
    // More: what comes behind the player's id.
    Host::GVariantHandle ask(const std::string& method, const std::string& more = "");

 protected:
    Player(Session& session, std::string interface, std::string release);
    ~Player();

    Session& m_session;
    const std::string m_id;

 private:
    const std::string m_interface;
    const std::string m_release;
};

// In the order in which they run. The methods come last: odd arguments may leave odd traces.
void checkNames(Session& session);
void checkSettings(Session& session);
void checkChannels(Session& session);
void checkTelevision(Session& session);
void checkMedia(Session& session);
void checkSearch(Session& session);
void checkMessages(Session& session);
void checkPage(Session& session);
void checkMethods(Session& session);
void checkSignalTypes(Session& session);

// The one value of a tuple with one value, or the value at a place.
[[nodiscard]] std::uint32_t unsignedOf(const Host::GVariantHandle& tuple, size_t at = 0);
[[nodiscard]] std::int32_t signedOf(const Host::GVariantHandle& tuple, size_t at = 0);
[[nodiscard]] bool booleanOf(const Host::GVariantHandle& tuple, size_t at = 0);
[[nodiscard]] std::string stringOf(const Host::GVariantHandle& tuple, size_t at = 0);

// Fails with the reason unless the fact holds.
void require(bool fact, const std::string& reason);

}  // namespace Check
