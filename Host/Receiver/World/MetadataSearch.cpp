#include "Host/Receiver/World/MetadataSearch.h"

#include <algorithm>

namespace Receiver {

namespace {

// Conditions in one query; joining more is refused.
constexpr std::size_t kLargestCondition = 500;
constexpr std::size_t kLargestOrderBy = 16;

constexpr std::int32_t kBroadcastTarget = 1;
constexpr std::int32_t kOnDemandTarget = 2;

}  // namespace

std::uint32_t MetadataSearch::Results::shown() const {
    const auto found = static_cast<std::uint32_t>(programmes.size());
    return offset >= found ? 0 : std::min(count, found - offset);
}

std::uint32_t MetadataSearch::addQuery(std::uint32_t field, std::uint32_t mode, const QueryValue& value) {
    if (!isQueryField(field) || !isQueryMode(mode))
        return 0;
    return store({[=](const FoundProgramme& found) { return matches(found, field, mode, value); }, {}, 1});
}

std::uint32_t MetadataSearch::addQuery(const std::vector<Constraint>& constraints) {
    const auto known = [](const Constraint& constraint) { return isQueryField(constraint.field); };
    if (constraints.size() >= kLargestCondition || !std::ranges::all_of(constraints, known))
        return 0;
    return store(
        {[set = ConstraintSet(constraints)](const FoundProgramme& found) { return set.satisfiedBy(found); },
         constraints, constraints.size() + 1});
}

std::uint32_t MetadataSearch::addQuery(std::uint32_t field) {
    if (static_cast<QueryField>(field) != QueryField::Any)
        return 0;
    return store({[](const FoundProgramme&) { return true; }, {}, 1});
}

std::optional<std::uint32_t> MetadataSearch::join(Junction junction, std::uint32_t left,
                                                  std::uint32_t right) {
    const auto* first = m_queries.find(left);
    const auto* second = m_queries.find(right);
    if (first == nullptr || second == nullptr)
        return std::nullopt;
    const auto size = first->condition->size + second->condition->size + 1;
    if (size > kLargestCondition)
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
    if (negated == nullptr || negated->condition->size >= kLargestCondition)
        return std::nullopt;
    return store(
        {[condition = negated->condition](const FoundProgramme& found) { return !condition->matches(found); },
         {},
         negated->condition->size + 1});
}

std::uint32_t MetadataSearch::addSearch(std::int32_t target) {
    if (target != kBroadcastTarget && target != kOnDemandTarget)
        return 0;
    const auto id = m_searches.nextId();
    m_searches.emplace(id, m_timers, target);
    return id;
}

bool MetadataSearch::setQuery(std::uint32_t searchId, std::uint32_t queryId) {
    auto* search = m_searches.find(searchId);
    const auto* query = m_queries.find(queryId);
    if (search == nullptr || (query == nullptr && queryId != 0))
        return false;
    search->queryId = queryId;
    // The condition is kept, so that the query may be released before the search runs.
    search->condition = query == nullptr ? nullptr : query->condition;
    return true;
}

bool MetadataSearch::setOrderBy(std::uint32_t searchId, const OrderBy& orderBy) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr || orderBy.size() > kLargestOrderBy)
        return false;
    search->orderBy = orderBy;
    return true;
}

bool MetadataSearch::expandOrderBy(std::uint32_t searchId, std::uint32_t field, bool ascending) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr || search->orderBy.size() >= kLargestOrderBy)
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
    if (search->constraints.size() + added.size() > kLargestCondition)
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

bool MetadataSearch::setBounds(std::uint32_t searchId, std::int32_t first, std::int32_t most) {
    auto* search = m_searches.find(searchId);
    if (search == nullptr || first < 0 || most < 0)
        return false;
    search->first = static_cast<std::uint32_t>(first);
    search->most = static_cast<std::uint32_t>(most);
    return true;
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
    auto* found = m_results.find(*resultsId);
    found->complete = found->failed = false;
    auto& timer = m_searches.find(searchId)->timer;
    timer.stop();
    if (m_scenario.search.outcome != SearchOutcome::Never)
        timer.start(m_scenario.search.durationMs, [this, searchId] { finish(searchId); });
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

std::uint32_t MetadataSearch::store(Condition condition) {
    const auto id = m_queries.nextId();
    m_queries.emplace(id, std::make_shared<const Condition>(std::move(condition)));
    return id;
}

void MetadataSearch::finish(std::uint32_t searchId) {
    const auto* search = m_searches.find(searchId);
    auto* results = search == nullptr ? nullptr : m_results.find(search->resultsId);
    if (results == nullptr)
        return;
    results->programmes.clear();
    results->failed = m_scenario.search.outcome == SearchOutcome::Failed;
    if (results->failed)
        return;
    auto matching =
        search->target == kBroadcastTarget ? allShowings(m_scenario, m_present()) : std::vector<Showing>();
    const ConstraintSet constraints(search->constraints);
    std::erase_if(matching, [&](const Showing& candidate) {
        const bool wanted = search->condition == nullptr || search->condition->matches(candidate.found);
        return !wanted || !constraints.satisfiedBy(candidate.found);
    });
    if (!search->orderBy.empty()) {
        std::stable_sort(matching.begin(), matching.end(), [search](const auto& left, const auto& right) {
            return comesFirst(left.found, right.found, search->orderBy);
        });
    }
    for (std::size_t i = search->first; i < matching.size() && i - search->first < search->most; ++i)
        results->programmes.push_back(matching[i].id);
    results->complete = true;
}

}  // namespace Receiver
