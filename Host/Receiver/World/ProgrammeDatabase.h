// All showings of the scenario's programmes that a search can find, each named by an id.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Host/Receiver/World/ProgrammeFields.h"
#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

// Seconds since 1970: what the minutes of schedules count from, and the present.
struct Moment {
    std::int64_t origin = 0;
    std::int64_t now = 0;
};

struct Showing {
    std::uint32_t id = 0;
    FoundProgramme found;
};

// What has not ended yet, hidden channels left out, in order of time.
[[nodiscard]] std::vector<Showing> allShowings(const Scenario& scenario, const Moment& moment);

// The showing with this id, which may have ended since; nothing once the scenario has no such programme. An
// id stays good for a thousand rounds of its channel's schedule.
[[nodiscard]] std::optional<FoundProgramme> findShowing(const Scenario& scenario, const Moment& moment,
                                                        std::uint32_t id);

}  // namespace Receiver
