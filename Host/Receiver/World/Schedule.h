// The programmes of a channel at a moment. A schedule repeats for ever, so that a receiver which has run for
// months still shows something.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

struct ScheduledProgramme {
    const Programme* programme = nullptr;
    std::int64_t start = 0;  // seconds since 1970
};

// The round that the schedule is in: how often it has begun again. 0 before its first programme, too.
[[nodiscard]] std::int64_t roundAt(const Channel& channel, std::int64_t origin, std::int64_t now);

[[nodiscard]] ScheduledProgramme showing(const Channel& channel, const Programme& programme,
                                         std::int64_t origin, std::int64_t round);

[[nodiscard]] std::int64_t endOf(const ScheduledProgramme& scheduled);

// What has not ended yet, in order of time: the present programme (if one is on now), and at least one after
// it. "origin" is the moment, in seconds since 1970, that the schedule's minutes count from.
[[nodiscard]] std::vector<ScheduledProgramme> upcoming(const Channel& channel, std::int64_t origin,
                                                       std::int64_t now);

// The programme that is on now, or null.
[[nodiscard]] const Programme* present(const Channel& channel, std::int64_t origin, std::int64_t now);

// Which descriptors are wanted; a negative number stands for any.
struct DescriptorFilter {
    std::int32_t tag = -1;
    std::int32_t extendedTag = -1;
    std::int32_t privateDataSpecifier = -1;
};

// The event's descriptors, each as its bytes. Besides those of the scenario, every event carries its short
// event descriptor and, where it is rated, its parental rating descriptor; both need the language and the
// country.
[[nodiscard]] std::vector<std::vector<std::uint8_t>> descriptors(const Channel& channel,
                                                                 std::uint16_t eventId,
                                                                 const DescriptorFilter& filter,
                                                                 const std::string& language,
                                                                 const std::string& country);

}  // namespace Receiver
