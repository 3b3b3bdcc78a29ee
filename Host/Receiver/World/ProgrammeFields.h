// The fields of a programme that a search can compare, and the comparisons. The numbers are those of the
// bundle's object Query.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

enum class QueryField : std::uint32_t {
    Any = 0,  // no field: every programme matches
    Name,
    LongName,
    Description,
    LongDescription,
    StartTime,  // seconds since 1970
    Duration,   // seconds
    ChannelId,  // as a number the channel's id, as a text its ccid
    Episode,
    TotalEpisodes,
    ProgrammeId,  // compared without case, as CRIDs are
    ProgrammeIdType,
    ParentalRating,
    EndTime
};

enum class QueryMode : std::uint32_t {
    Equal = 0,
    NotEqual,
    Greater,
    GreaterOrEqual,
    Less,
    LessOrEqual,
    Contains  // without case; numbers by their digits
};

[[nodiscard]] bool isQueryField(std::uint32_t field);
[[nodiscard]] bool isQueryMode(std::uint32_t mode);

struct FoundProgramme {
    const Channel* channel = nullptr;
    const Programme* programme = nullptr;
    std::int64_t start = 0;
};

using QueryValue = std::variant<std::string, std::uint32_t>;

// A text that spells a number compares with a number as that number; otherwise both compare as texts. A
// programme that has no such field matches nothing.
[[nodiscard]] bool matches(const FoundProgramme& found, std::uint32_t field, std::uint32_t mode,
                           const QueryValue& wanted);

struct Constraint {
    std::uint32_t field = 0;
    QueryValue value;
};

// Constraints on one field are alternatives, those on different fields must all be met.
[[nodiscard]] bool satisfies(const FoundProgramme& found, const std::vector<Constraint>& constraints);

using OrderBy = std::vector<std::pair<std::uint32_t, bool>>;  // field, ascending

[[nodiscard]] bool comesFirst(const FoundProgramme& left, const FoundProgramme& right,
                              const OrderBy& orderBy);

}  // namespace Receiver
