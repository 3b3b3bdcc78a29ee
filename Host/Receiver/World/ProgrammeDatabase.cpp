#include "Host/Receiver/World/ProgrammeDatabase.h"

#include <algorithm>

#include "Host/Receiver/World/Schedule.h"

namespace Receiver {

namespace {

// An id is the programme's place among all of the scenario and, below it, the round of the schedule. Rounds
// are counted around; no two showings that are known at one time are so far apart.
constexpr std::int64_t kRounds = 2048;
constexpr std::int64_t kMostRoundsAhead = kRounds / 2 - 1;

std::uint32_t idOf(std::uint32_t place, std::int64_t round) {
    return static_cast<std::uint32_t>(place * kRounds + round % kRounds + 1);
}

// The round next to the present one that an id means.
std::int64_t roundOf(std::int64_t remainder, std::int64_t present) {
    const auto round = present - present % kRounds + remainder;
    if (round > present + kRounds / 2)
        return std::max(round - kRounds, remainder);
    return round < present - kRounds / 2 ? round + kRounds : round;
}

// Each programme's next showing, and what else begins until then.
void addShowings(std::vector<Showing>& all, const Channel& channel, std::uint32_t firstPlace,
                 const Moment& moment, std::int64_t until) {
    const auto present = roundAt(channel, moment.origin, moment.now);
    for (std::size_t i = 0; i < channel.programmes.size(); ++i) {
        const auto place = firstPlace + static_cast<std::uint32_t>(i);
        auto round = present;
        auto next = showing(channel, channel.programmes[i], moment.origin, round);
        if (endOf(next) <= moment.now)
            next = showing(channel, channel.programmes[i], moment.origin, ++round);
        do {
            all.push_back({idOf(place, round), {&channel, next.programme, next.start}});
            next = showing(channel, channel.programmes[i], moment.origin, ++round);
        } while (next.start < until && round <= present + kMostRoundsAhead);
    }
}

}  // namespace

std::vector<Showing> allShowings(const Scenario& scenario, const Moment& moment) {
    std::vector<Showing> all;
    const auto until = moment.now + std::int64_t{scenario.search.hours} * 3600;
    std::uint32_t place = 0;
    for (const auto& channel : scenario.broadcast.channels) {
        if (!channel.hidden)
            addShowings(all, channel, place, moment, until);
        place += static_cast<std::uint32_t>(channel.programmes.size());
    }
    std::ranges::stable_sort(all, {}, [](const Showing& showing) { return showing.found.start; });
    return all;
}

std::optional<FoundProgramme> findShowing(const Scenario& scenario, const Moment& moment, std::uint32_t id) {
    if (id == 0)
        return std::nullopt;
    auto place = static_cast<std::size_t>((id - 1) / kRounds);
    for (const auto& channel : scenario.broadcast.channels) {
        if (place >= channel.programmes.size()) {
            place -= channel.programmes.size();
            continue;
        }
        if (channel.hidden)
            break;
        const auto round = roundOf((id - 1) % kRounds, roundAt(channel, moment.origin, moment.now));
        const auto found = showing(channel, channel.programmes[place], moment.origin, round);
        return FoundProgramme{&channel, found.programme, found.start};
    }
    return std::nullopt;
}

}  // namespace Receiver
