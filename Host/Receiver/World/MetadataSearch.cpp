#include "Host/Receiver/World/MetadataSearch.h"

#include <algorithm>
#include <cctype>
#include <compare>
#include <set>
#include <tuple>

namespace Receiver {

namespace {

// Conditions in one query; joining more is refused.
constexpr std::size_t largestCondition = 500;
constexpr std::size_t largestOrderBy = 16;

struct FieldValue {
    bool isText = false;
    std::string text;
    std::int64_t number = 0;
};

std::optional<FieldValue> fieldOf(const FoundProgramme& found, std::uint32_t field) {
    const auto& programme = *found.programme;
    switch (static_cast<QueryField>(field)) {
        case QueryField::Name:
            return FieldValue{true, programme.name, 0};
        case QueryField::Description:
            return FieldValue{true, programme.description, 0};
        case QueryField::ProgrammeId:
            return FieldValue{true, programme.id, 0};
        case QueryField::Start:
            return FieldValue{false, {}, found.start};
        case QueryField::Duration:
            return FieldValue{false, {}, std::int64_t{programme.durationMinutes} * 60};
        case QueryField::ChannelId:
            return FieldValue{false, {}, found.channelId};
        case QueryField::Rating:
            return FieldValue{false, {}, programme.rating};
    }
    return std::nullopt;
}

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

template <typename Value>
bool compares(const Value& left, std::uint32_t mode, const Value& right) {
    switch (static_cast<QueryMode>(mode)) {
        case QueryMode::Equal:
            return left == right;
        case QueryMode::NotEqual:
            return left != right;
        case QueryMode::Greater:
            return left > right;
        case QueryMode::GreaterOrEqual:
            return left >= right;
        case QueryMode::Less:
            return left < right;
        case QueryMode::LessOrEqual:
            return left <= right;
        case QueryMode::Contains:
            break;
    }
    return false;
}

bool textMatches(const FoundProgramme& found, std::uint32_t field, std::uint32_t mode,
                 const std::string& wanted) {
    const auto value = fieldOf(found, field);
    if (!value || !value->isText)
        return false;
    if (static_cast<QueryMode>(mode) == QueryMode::Contains)
        return folded(value->text).find(folded(wanted)) != std::string::npos;
    return compares(value->text, mode, wanted);
}

bool numberMatches(const FoundProgramme& found, std::uint32_t field, std::uint32_t mode,
                   std::uint32_t wanted) {
    const auto value = fieldOf(found, field);
    return value && !value->isText && compares(value->number, mode, std::int64_t{wanted});
}

bool satisfies(const FoundProgramme& found, const std::vector<Constraint>& constraints) {
    return std::all_of(constraints.begin(), constraints.end(), [&found](const Constraint& constraint) {
        if (constraint.text.empty())
            return numberMatches(found, constraint.field, static_cast<std::uint32_t>(QueryMode::Equal),
                                 constraint.number);
        return textMatches(found, constraint.field, static_cast<std::uint32_t>(QueryMode::Contains),
                           constraint.text);
    });
}

bool comesFirst(const FoundProgramme& left, const FoundProgramme& right, const OrderBy& orderBy) {
    for (const auto& [field, ascending] : orderBy) {
        const auto ofLeft = fieldOf(left, field);
        const auto ofRight = fieldOf(right, field);
        if (!ofLeft || !ofRight)
            continue;
        const auto order =
            std::tie(ofLeft->text, ofLeft->number) <=> std::tie(ofRight->text, ofRight->number);
        if (std::is_neq(order))
            return ascending ? std::is_lt(order) : std::is_gt(order);
    }
    return false;
}

}  // namespace

std::uint32_t MetadataSearch::Results::shown() const {
    const auto found = static_cast<std::uint32_t>(programmes.size());
    return offset >= found ? 0 : std::min(count, found - offset);
}

std::uint32_t MetadataSearch::addQuery(std::uint32_t field, std::uint32_t mode, std::uint32_t value) {
    return store(
        {[=](const FoundProgramme& found) { return numberMatches(found, field, mode, value); }, {}, 1});
}

std::uint32_t MetadataSearch::addQuery(std::uint32_t field, std::uint32_t mode, const std::string& value) {
    return store(
        {[=](const FoundProgramme& found) { return textMatches(found, field, mode, value); }, {}, 1});
}

std::uint32_t MetadataSearch::addQuery(const std::vector<Constraint>& constraints) {
    if (constraints.size() >= largestCondition)
        return 0;
    return store({[constraints](const FoundProgramme& found) { return satisfies(found, constraints); },
                  constraints, constraints.size() + 1});
}

std::uint32_t MetadataSearch::addQuery() {
    return store({[](const FoundProgramme&) { return true; }, {}, 1});
}

std::optional<std::uint32_t> MetadataSearch::join(Junction junction, std::uint32_t left,
                                                  std::uint32_t right) {
    const auto* first = m_queries.find(left);
    const auto* second = m_queries.find(right);
    if (first == nullptr || second == nullptr)
        return std::nullopt;
    const auto size = first->condition->size + second->condition->size + 1;
    if (size > largestCondition)
        return std::nullopt;
    return store({[junction, a = first->condition, b = second->condition](const FoundProgramme& found) {
                      return junction == Junction::And ? a->matches(found) && b->matches(found)
                                                       : a->matches(found) || b->matches(found);
                  },
                  {},
                  size});
}

std::optional<std::uint32_t> MetadataSearch::negate(std::uint32_t id) {
    const auto* negated = m_queries.find(id);
    if (negated == nullptr || negated->condition->size >= largestCondition)
        return std::nullopt;
    return store(
        {[condition = negated->condition](const FoundProgramme& found) { return !condition->matches(found); },
         {},
         negated->condition->size + 1});
}

std::uint32_t MetadataSearch::addSearch(std::int32_t target) {
    const auto id = m_searches.nextId();
    m_searches.emplace(id, m_timers, target);
    return id;
}

bool MetadataSearch::setQuery(std::uint32_t searchId, std::uint32_t queryId) {
    auto* search = m_searches.find(searchId);
    const auto* query = m_queries.find(queryId);
    if (search == nullptr || query == nullptr)
        return false;
    search->queryId = queryId;
    // The condition is kept, so that the query may be released before the search runs.
    search->condition = query->condition;
    return true;
}

bool MetadataSearch::setOrderBy(std::uint32_t searchId, const OrderBy& orderBy) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr || orderBy.size() > largestOrderBy)
        return false;
    search->orderBy = orderBy;
    return true;
}

bool MetadataSearch::expandOrderBy(std::uint32_t searchId, std::uint32_t field, bool ascending) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr || search->orderBy.size() >= largestOrderBy)
        return false;
    search->orderBy.emplace_back(field, ascending);
    return true;
}

bool MetadataSearch::addConstraints(std::uint32_t searchId, std::uint32_t queryId) {
    auto* search = m_searches.find(searchId);
    const auto* query = m_queries.find(queryId);
    if (search == nullptr || query == nullptr || query->condition->constraints.empty())
        return false;
    const auto& added = query->condition->constraints;
    if (search->constraints.size() + added.size() > largestCondition)
        return false;
    search->constraints.insert(search->constraints.end(), added.begin(), added.end());
    return true;
}

bool MetadataSearch::removeConstraints(std::uint32_t searchId, std::uint32_t field) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr)
        return false;
    std::erase_if(search->constraints,
                  [field](const Constraint& constraint) { return constraint.field == field; });
    return true;
}

bool MetadataSearch::clearConstraints(std::uint32_t searchId) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr)
        return false;
    search->constraints.clear();
    return true;
}

std::optional<std::uint32_t> MetadataSearch::resultsOf(std::uint32_t searchId) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr)
        return std::nullopt;
    if (m_results.find(search->resultsId) == nullptr)
        search->resultsId = addResults(searchId);
    return search->resultsId;
}

std::uint32_t MetadataSearch::addResults(std::uint32_t searchId) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr)
        return 0;
    const auto id = m_results.nextId();
    m_results.emplace(id, searchId);
    search->resultsId = id;
    return id;
}

bool MetadataSearch::setWindow(std::uint32_t resultsId, std::int32_t start, std::int32_t count) {
    auto* found = m_results.find(resultsId);
    if (found == nullptr || start < 0 || count < 0)
        return false;
    found->offset = static_cast<std::uint32_t>(start);
    found->count = static_cast<std::uint32_t>(count);
    return true;
}

void MetadataSearch::start(std::uint32_t searchId) {
    const auto resultsId = resultsOf(searchId);
    if (!resultsId)
        return;
    m_results.find(*resultsId)->complete = false;
    m_searches.find(searchId)->timer.start(m_scenario.search.durationMs,
                                           [this, searchId] { finish(searchId); });
}

void MetadataSearch::abort(std::uint32_t searchId) {
    auto* search = m_searches.find(searchId);
    if (search != nullptr)
        search->timer.stop();
}

void MetadataSearch::cancel(std::uint32_t searchId) {
    abort(searchId);
    const auto* search = m_searches.find(searchId);
    auto* found = search == nullptr ? nullptr : m_results.find(search->resultsId);
    if (found == nullptr)
        return;
    found->programmes.clear();
    found->complete = false;
}

std::optional<FoundProgramme> MetadataSearch::programme(std::uint32_t id) const {
    for (const auto& [candidate, found] : everything()) {
        if (candidate == id)
            return found;
    }
    return std::nullopt;
}

std::uint32_t MetadataSearch::store(Condition condition) {
    const auto id = m_queries.nextId();
    m_queries.emplace(id, std::make_shared<const Condition>(std::move(condition)));
    return id;
}

std::vector<std::pair<std::uint32_t, FoundProgramme>> MetadataSearch::everything() const {
    std::vector<std::pair<std::uint32_t, FoundProgramme>> all;
    // An id is the place among all programmes of the scenario, so it stays the same while time goes on.
    std::uint32_t firstOfChannel = 1;
    for (const auto& channel : m_scenario.broadcast.channels) {
        if (!channel.hidden) {
            std::set<const Programme*> seen;
            for (const auto& [programme, start] : m_programmesOf(channel.id)) {
                const auto index = static_cast<std::uint32_t>(programme - channel.programmes.data());
                // The schedule repeats; the earliest showing counts.
                if (seen.insert(programme).second)
                    all.emplace_back(firstOfChannel + index, FoundProgramme{channel.id, programme, start});
            }
        }
        firstOfChannel += static_cast<std::uint32_t>(channel.programmes.size());
    }
    return all;
}

void MetadataSearch::finish(std::uint32_t searchId) {
    const auto* search = m_searches.find(searchId);
    auto* results = search == nullptr ? nullptr : m_results.find(search->resultsId);
    if (results == nullptr)
        return;
    auto matching = everything();
    std::erase_if(matching, [search](const auto& candidate) {
        const bool wanted = search->condition == nullptr || search->condition->matches(candidate.second);
        return !wanted || !satisfies(candidate.second, search->constraints);
    });
    std::stable_sort(matching.begin(), matching.end(), [search](const auto& left, const auto& right) {
        return comesFirst(left.second, right.second, search->orderBy);
    });
    results->programmes.clear();
    for (const auto& [id, found] : matching)
        results->programmes.push_back(id);
    results->complete = true;
}

}  // namespace Receiver
