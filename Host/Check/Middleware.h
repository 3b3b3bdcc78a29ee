// The middleware that is looked at: calls with their time, and the signals that it sends.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Host/Check/Contract.h"
#include "Host/Check/Report.h"
#include "Host/Inc/GCallbacks.h"

namespace Check {

// How a check ends that does not pass; what it says is the reason.
class Failed : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};
class Skipped : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

struct Reply {
    Host::GVariantHandle value;  // Null for an error.
    std::string error;           // The error's name on the bus, and
    std::string message;         // what it says.
    bool late = false;           // There was no answer within the limit.
    bool unknown = false;        // The middleware has no such method.
};

struct Signal {
    std::string interface;  // Short, as of all signals and methods here: "IDAEBrowserAPI".
    std::string name;
    std::string text;  // "PluginEventData(101, 1, 2, 1000)"
    Host::GVariantHandle values;

    [[nodiscard]] bool is(const char* wanted, const char* types) const {
        return name == wanted && g_variant_is_of_type(values.get(), G_VARIANT_TYPE(types));
    }
};

// A signal that is waited for. The text is a pattern with * and ?; places tell the order, equal ones none.
struct Expected {
    int place;
    std::string text;
    bool isNeeded = true;
};

class Middleware : Host::Pinned {
 public:
    Middleware(GDBusConnection* bus, const std::vector<Interface>& contract, int limitSeconds);
    ~Middleware();

    // "IDAEBrowserAPI.GetKeyMask" and a tuple.
    [[nodiscard]] Reply call(const std::string& method, const Host::GVariantHandle& arguments);
    // Answered rightly, or the check has failed. The arguments are GVariant text between the parentheses, and
    // get the method's types.
    Host::GVariantHandle ask(const std::string& method, const std::string& arguments = "");
    // In time, and if it is no error of the method's type, or the check has failed.
    void requireAnswer(const std::string& asked, const Reply& reply, const GDBusMethodInfo& method) const;

    // The unique name that owns the interface's name; empty for nobody.
    [[nodiscard]] std::string ownerOf(const Interface& interface);
    // What is told at the path; null if nothing is.
    [[nodiscard]] Host::GNodeInfo introspect(const Interface& interface);

    // What came since the last forget() and fits one of the patterns; the newest is the last.
    void forget() { m_first = m_signals.size(); }
    [[nodiscard]] std::vector<const Signal*> heard(const std::vector<std::string>& patterns) const;
    [[nodiscard]] const std::vector<Signal>& allSignals() const { return m_signals; }
    // Runs until the fact holds; false when it does not within the limit, and `moreMs`.
    bool waitFor(const std::function<bool()>& fact, unsigned moreMs = 0);
    // Of the signals that fit one of `relevant`, exactly the expected ones come, in their order.
    void expect(const std::vector<std::string>& relevant, const std::vector<Expected>& expected,
                unsigned moreMs = 0);

    [[nodiscard]] const Interface* findInterface(const std::string& shortName) const;
    [[nodiscard]] const GDBusMethodInfo* findMethod(const std::string& method) const;
    [[nodiscard]] const Timings& timings() const { return m_timings; }
    [[nodiscard]] std::string limitText() const { return std::to_string(m_limitSeconds) + " s"; }

 private:
    void onSignal(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*);

    const Host::GObjectHandle<GDBusConnection> m_bus;
    const std::vector<Interface>& m_contract;
    const int m_limitSeconds;
    std::vector<unsigned> m_subscriptions;
    std::vector<Signal> m_signals;
    size_t m_first = 0;
    Timings m_timings;
};

// A text as GVariant text.
[[nodiscard]] std::string quoted(const std::string& text);

// As GVariant text without types, "(1, 'a')"; long ones are cut.
[[nodiscard]] std::string textOf(GVariant* value);

}  // namespace Check
