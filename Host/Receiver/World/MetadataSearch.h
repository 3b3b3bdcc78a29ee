// Searches over the programmes of the scenario: queries, searches and their results, each named by an id.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Host/Receiver/World/BoundedStore.h"
#include "Host/Receiver/World/ProgrammeDatabase.h"
#include "Host/Receiver/World/ProgrammeFields.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

// A condition on programmes; shared by the queries that were made from it.
struct Condition {
    std::function<bool(const FoundProgramme&)> matches;
    std::vector<Constraint> constraints;  // of a query made from constraints
    std::size_t size = 1;
};

class MetadataSearch {
 public:
    using Present = std::function<Moment()>;

    MetadataSearch(const Scenario& scenario, Timers& timers, Present present)
        : m_scenario(scenario), m_timers(timers), m_present(std::move(present)) {}

    // An object lives until the last of those who retained it releases it. False for an unknown id.
    struct Counted {
        std::uint32_t retained = 0;
    };
    struct Query : Counted {
        explicit Query(std::shared_ptr<const Condition> given) : condition(std::move(given)) {}
        std::shared_ptr<const Condition> condition;
    };
    struct Search : Counted {
        Search(Timers& timers, std::int32_t searchTarget) : target(searchTarget), timer(timers) {}
        std::int32_t target;
        std::uint32_t queryId = 0;
        std::shared_ptr<const Condition> condition;
        std::vector<Constraint> constraints;
        OrderBy orderBy;  // by time where it says nothing
        // Of all that matches, no more than this part is found.
        std::uint32_t first = 0;
        std::uint32_t most = 0xFFFFFFFF;
        std::uint32_t resultsId = 0;
        Timer timer;
    };
    struct Results : Counted {
        explicit Results(std::uint32_t ofSearch) : searchId(ofSearch) {}
        std::uint32_t searchId;
        bool complete = false;
        bool failed = false;
        std::uint32_t offset = 0;
        std::uint32_t count = 0xFFFFFFFF;
        std::vector<std::uint32_t> programmes;  // all that were found
        // How many of them lie in the window.
        [[nodiscard]] std::uint32_t shown() const;
    };

    [[nodiscard]] BoundedStore<Query>& queries() { return m_queries; }
    [[nodiscard]] BoundedStore<Search>& searches() { return m_searches; }
    [[nodiscard]] BoundedStore<Results>& results() { return m_results; }

    // Each makes a query and gives its id; 0 for fields and modes that there are not.
    [[nodiscard]] std::uint32_t addQuery(std::uint32_t field, std::uint32_t mode, const QueryValue& value);
    [[nodiscard]] std::uint32_t addQuery(const std::vector<Constraint>& constraints);
    // For the field that stands for none: a query that every programme satisfies.
    [[nodiscard]] std::uint32_t addQuery(std::uint32_t field);
    // Nothing for unknown queries and for one that would become too large.
    enum class Junction { And, Or };
    [[nodiscard]] std::optional<std::uint32_t> join(Junction junction, std::uint32_t left,
                                                    std::uint32_t right);
    [[nodiscard]] std::optional<std::uint32_t> negate(std::uint32_t id);

    // 0 for a target that there is not. What is on demand is never found here.
    [[nodiscard]] std::uint32_t addSearch(std::int32_t target);
    // 0 stands for no query, which every programme satisfies.
    [[nodiscard]] bool setQuery(std::uint32_t searchId, std::uint32_t queryId);
    [[nodiscard]] bool setOrderBy(std::uint32_t searchId, const OrderBy& orderBy);
    [[nodiscard]] bool expandOrderBy(std::uint32_t searchId, std::uint32_t field, bool ascending);
    // The constraints of a query that was made from some join those of the search.
    [[nodiscard]] bool addConstraints(std::uint32_t searchId, std::uint32_t queryId);
    [[nodiscard]] bool removeConstraints(std::uint32_t searchId, std::uint32_t field);
    [[nodiscard]] bool clearConstraints(std::uint32_t searchId);
    // The results of a search, made when it has none; nothing for an unknown search.
    [[nodiscard]] std::optional<std::uint32_t> resultsOf(std::uint32_t searchId);
    [[nodiscard]] std::uint32_t addResults(std::uint32_t searchId);
    // Bounds what the search finds from its next start on.
    [[nodiscard]] bool setBounds(std::uint32_t searchId, std::int32_t first, std::int32_t most);
    // What of the found programmes can be read.
    [[nodiscard]] bool setWindow(std::uint32_t resultsId, std::int32_t start, std::int32_t count);

    void start(std::uint32_t searchId);
    // Leaves the results that there are.
    void abort(std::uint32_t searchId);
    // Takes the results away too.
    void cancel(std::uint32_t searchId);

    // The programme that results name by this id; nothing once the scenario has no such programme.
    [[nodiscard]] std::optional<FoundProgramme> programme(std::uint32_t id) const {
        return findShowing(m_scenario, m_present(), id);
    }

    template <typename Object>
    [[nodiscard]] static bool retain(BoundedStore<Object>& store, std::uint32_t id) {
        auto* object = store.find(id);
        if (object != nullptr)
            ++object->retained;
        return object != nullptr;
    }
    template <typename Object>
    static void release(BoundedStore<Object>& store, std::uint32_t id) {
        auto* object = store.find(id);
        if (object != nullptr && object->retained-- <= 1)
            store.erase(id);
    }

 private:
    [[nodiscard]] std::uint32_t store(Condition condition);
    void finish(std::uint32_t searchId);

    const Scenario& m_scenario;
    Timers& m_timers;
    Present m_present;
    BoundedStore<Query> m_queries{1024};
    BoundedStore<Search> m_searches{256};
    BoundedStore<Results> m_results{256};
};

}  // namespace Receiver
