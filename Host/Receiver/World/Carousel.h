// Files of the object carousel: those of a folder that the scenario names.
#pragma once

#include <cstdint>
#include <string>

#include "Host/Receiver/World/BoundedStore.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class Carousel {
 public:
    Carousel(CallerName caller, const Scenario& scenario, Timers& timers, ReceiverEvents& events)
        : m_caller(std::move(caller)), m_scenario(scenario), m_timers(timers), m_events(events) {}

    // False without a carousel, and when too many files are under way to the caller; otherwise a file
    // response follows, with a false status for a file that is not there.
    [[nodiscard]] bool request(std::uint32_t handle, const std::string& url);
    [[nodiscard]] std::size_t size() const { return m_pending.size(); }

 private:
    void respond(std::uint32_t handle, const std::string& url);

    const CallerName m_caller;
    const Scenario& m_scenario;
    Timers& m_timers;
    ReceiverEvents& m_events;
    BoundedStore<Timer> m_pending{4096};
};

}  // namespace Receiver
