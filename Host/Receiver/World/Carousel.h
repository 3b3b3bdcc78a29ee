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
    Carousel(const Scenario& scenario, Timers& timers, ReceiverEvents& events)
        : m_scenario(scenario), m_timers(timers), m_events(events) {}

    // False without a carousel, and when too many files are under way; otherwise a file response follows,
    // with a false status for a file that is not there.
    [[nodiscard]] bool request(std::uint32_t handle, const std::string& url);

 private:
    void respond(std::uint32_t handle, const std::string& url);

    const Scenario& m_scenario;
    Timers& m_timers;
    ReceiverEvents& m_events;
    static constexpr std::size_t mostPending = 4096;
    BoundedStore<Timer> m_pending{mostPending};
};

}  // namespace Receiver
