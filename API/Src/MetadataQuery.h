// What a metadata search compares, how, and in which order it lists what it found. The numbers cross the wire
// and are the constants FIELD_... and COMPARISON_... of the object Query.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// A field of a programme.
enum EQueryType : uint32_t {
    E_QUERY_ANY = 0,  // no field: every programme meets the condition
    E_QUERY_NAME = 1,
    E_QUERY_LONG_NAME = 2,
    E_QUERY_DESCRIPTION = 3,
    E_QUERY_LONG_DESCRIPTION = 4,
    E_QUERY_START_TIME = 5,  // seconds since 1970
    E_QUERY_DURATION = 6,    // seconds
    E_QUERY_CHANNEL_ID = 7,  // as a number the identifier in the channel cache, as a text the ccid
    E_QUERY_EPISODE = 8,
    E_QUERY_TOTAL_EPISODES = 9,
    E_QUERY_PROGRAMME_ID = 10,
    E_QUERY_PROGRAMME_ID_TYPE = 11,
    E_QUERY_PARENTAL_RATING = 12,
    E_QUERY_END_TIME = 13,  // start time and duration together; pages have no name for it
};

enum EQueryMode : uint32_t {
    E_MODE_EQUAL = 0,
    E_MODE_NOT_EQUAL = 1,
    E_MODE_GREATER = 2,
    E_MODE_GREATER_OR_EQUAL = 3,
    E_MODE_LESS = 4,
    E_MODE_LESS_OR_EQUAL = 5,
    E_MODE_CONTAINS = 6,
};

// Most significant first; true is ascending.
using TOrderBy = std::vector<std::pair<EQueryType, bool>>;

// What a field must be. On the wire an empty text cannot be told from the number 0.
using TConstraint = std::variant<std::string, uint32_t>;

// Constraints on one field are alternatives; those on different fields must all hold.
using TConstraints = std::multimap<EQueryType, TConstraint>;
