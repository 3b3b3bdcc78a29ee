// A caller's subscriptions to the scenario's stream events; each fires on a timer of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Host/Receiver/World/BoundedStore.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class StreamEvents {
 public:
    StreamEvents(CallerName caller, const Scenario& scenario, Timers& timers, ReceiverEvents& events)
        : m_caller(std::move(caller)), m_scenario(scenario), m_timers(timers), m_events(events) {}

    // The job id, or 0 when the broadcast carries no such event or the caller has too many subscriptions.
    [[nodiscard]] std::uint32_t subscribe(const std::string& url, const std::string& name);
    [[nodiscard]] bool unsubscribe(std::uint32_t jobId);

    // Fires now what is subscribed to under this name; how many that were.
    std::size_t trigger(const std::string& name, const std::vector<std::uint8_t>& data);

    [[nodiscard]] std::size_t size() const { return m_subscriptions.size(); }

 private:
    struct Subscription {
        Subscription(Timers& timers, std::string forUrl, std::string forName)
            : url(std::move(forUrl)), name(std::move(forName)), timer(timers) {}

        std::string url;
        std::string name;
        std::size_t fired = 0;
        Timer timer;
    };

    // The scenario may have changed since the last trigger, so the source is looked up each time.
    [[nodiscard]] const StreamEventSource* source(const std::string& url, const std::string& name) const;
    void waitForTrigger(std::uint32_t jobId, Subscription& subscription, std::uint32_t periodMs);
    void trigger(std::uint32_t jobId);

    const CallerName m_caller;
    const Scenario& m_scenario;
    Timers& m_timers;
    ReceiverEvents& m_events;
    BoundedStore<Subscription> m_subscriptions{256};
};

}  // namespace Receiver
