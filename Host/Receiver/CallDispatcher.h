// The one door through which every call of the six interfaces comes: it writes the call down, makes it slow
// or lets it fail where somebody asked for that, and then has it answered.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <set>
#include <string>

#include <gio/gio.h>

#include "Host/Inc/GHandles.h"
#include "Host/Receiver/World/CallLog.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class CallDispatcher {
 public:
    explicit CallDispatcher(Timers& timers) : m_timers(timers) {}
    CallDispatcher(const CallDispatcher&) = delete;
    CallDispatcher& operator=(const CallDispatcher&) = delete;

    // Makes the methods of an interface known by their short names.
    void addInterface(const GDBusInterfaceInfo& interface);
    void onRecorded(std::function<void(const Call&)> listener) { m_listener = std::move(listener); }

    // Takes over the invocation; "answer" runs at most once, perhaps later.
    void receive(Host::GObjectHandle<GDBusMethodInvocation> invocation,
                 std::function<void(Host::GObjectHandle<GDBusMethodInvocation>)> answer);

    // All three return false for a method that none of the interfaces has ("Interface.Method").
    [[nodiscard]] bool delay(const std::string& method, std::uint32_t milliseconds);
    [[nodiscard]] bool fail(const std::string& method, const std::string& message);
    // Calls that wait are answered now.
    void reset();
    // The caller has left the bus: what it waited for is never done.
    void forget(const std::string& caller);

    [[nodiscard]] CallLog& log() { return m_log; }

 private:
    struct Treatment {
        std::uint32_t delayMs = 0;
        std::optional<std::string> failure;
    };
    struct Waiting {
        Waiting(Timers& timers, std::string by) : caller(std::move(by)), timer(timers) {}

        const std::string caller;
        std::function<void()> finish;
        Timer timer;
    };

    void finishFirst();

    Timers& m_timers;
    CallLog m_log;
    std::function<void(const Call&)> m_listener;
    std::set<std::string> m_methods;
    std::map<std::string, Treatment> m_treatments;
    std::list<Waiting> m_waiting;
};

}  // namespace Receiver
