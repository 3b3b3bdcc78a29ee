// The fields of a programme that a search can compare, and the comparisons. The numbers are those of the
// bundle's object Query.
#pragma once

#include <cstdint>
#include <map>
#include <set>
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

// Constraints on one field are alternatives, those on different fields must all be met. Many numbers for one
// field, a list of channels say, cost hardly more than one.
class ConstraintSet {
 public:
    explicit ConstraintSet(const std::vector<Constraint>& constraints);

    [[nodiscard]] bool satisfiedBy(const FoundProgramme& found) const;

 private:
    struct Alternatives {
        std::set<std::uint32_t> numbers;
        std::vector<std::string> texts;
    };

    std::map<std::uint32_t, Alternatives> m_byField;
};

using OrderBy = std::vector<std::pair<std::uint32_t, bool>>;  // field, ascending

[[nodiscard]] bool comesFirst(const FoundProgramme& left, const FoundProgramme& right,
                              const OrderBy& orderBy);

}  // namespace Receiver
