// Searches: what is found, and that what was released is gone.
#include <algorithm>
#include <utility>

#include "Host/Check/Session.h"

namespace Check {

using namespace Host;

namespace {

constexpr char kGroup[] = "Search";
const std::string kInterface = "IMetaDataSearch.";

std::string text(std::uint32_t id) {
    return std::to_string(id);
}

// An object of the middleware's: made, held once, and let go of at the end if nobody has before.
class Object : Pinned {
 public:
    // Kind: "Qc", "Sr" or "Mds".
    Object(Session& session, std::string kind, std::uint32_t id)
        : m_session(session), m_kind(std::move(kind)), m_id(id) {
        require(id != 0, m_kind + ": the id is 0");
        retain();
    }
    ~Object() {
        try {
            while (m_held > 0)
                release();
        } catch (const Failed&) {  // NOLINT(bugprone-empty-catch): Said by the check of that method.
        }
    }

    [[nodiscard]] std::string id() const { return text(m_id); }
    [[nodiscard]] bool isRetained() {
        return booleanOf(m_session.middleware.ask(kInterface + m_kind + "Retain", id()));
    }
    void retain() {
        require(isRetained(), m_kind + "Retain refuses " + id() + ", which exists");
        ++m_held;
    }
    void release() {
        --m_held;
        m_session.middleware.ask(kInterface + m_kind + "Release", id());
    }
    // Held twice, let go of twice: there after the first, gone after the second.
    void checkBalance() {
        retain();
        release();
        retain();
        release();
        release();
        require(!isRetained(),
                m_kind + "Release: " + id() + " was released as often as retained, and is still good");
    }

 private:
    Session& m_session;
    const std::string m_kind;
    const std::uint32_t m_id;
    int m_held = 0;
};

// Every programme: a duration of 0 seconds or more.
std::uint32_t anyProgramme(Middleware& middleware) {
    return unsignedOf(middleware.ask(kInterface + "QcAddDataMode", "6, 3, 0"));
}

std::uint32_t newSearch(Middleware& middleware) {
    return unsignedOf(middleware.ask(kInterface + "MdsAdd", "1"));
}

std::uint32_t resultsOf(Middleware& middleware, const std::string& search) {
    const auto reply = middleware.ask(kInterface + "MdsGetResults", search);
    require(booleanOf(reply, 1), "MdsGetResults does not know search " + search);
    return unsignedOf(reply);
}

std::string find(Session& session) {
    constexpr unsigned kAMinuteMs = 60000;
    constexpr size_t kResult = 8;
    auto& middleware = session.middleware;
    const auto ask = [&](const char* method, const std::string& arguments) {
        return middleware.ask(kInterface + method, arguments);
    };
    Object search(session, "Mds", newSearch(middleware));
    Object query(session, "Qc", anyProgramme(middleware));
    require(booleanOf(ask("MdsSetQuery", search.id() + ", " + query.id())), "MdsSetQuery refuses");
    require(booleanOf(ask("MdsSetOrderBy", search.id() + ", [(5, true)]")),
            "MdsSetOrderBy refuses the order of start times");
    Object results(session, "Sr", resultsOf(middleware, search.id()));
    ask("StartSearch", search.id());
    // As the bundle does, more and more rarely; whatever the limit of a call, a page waits a minute.
    GVariantHandle state;
    const auto begin = g_get_monotonic_time();
    for (gulong pauseMs = 1; !state || !booleanOf(state); pauseMs = std::min(pauseMs * 2, gulong{500})) {
        state = ask("SrQueryResults", results.id());
        require(booleanOf(state, 4), "SrQueryResults does not know its results");
        require(g_get_monotonic_time() - begin < gint64{kAMinuteMs} * 1000,
                "SrQueryResults is not complete after a minute");
        g_usleep(pauseMs * 1000);
    }
    require(booleanOf(ask("SrSetQueryWindow", results.id() + ", 0, 10")),
            "SrSetQueryWindow refuses the first ten");
    state = ask("SrQueryResults", results.id());
    const auto shown = unsignedOf(state, 2);
    const auto size = unsignedOf(state, 3);
    require(shown == std::min(size, 10U), "a window of ten of " + text(size) + " shows " + text(shown));
    std::uint64_t last = 0;
    for (std::uint32_t at = 0; at < shown; ++at) {
        const auto item = ask("SrItemAtIndex", results.id() + ", " + text(at));
        require(booleanOf(item) && booleanOf(item, 2),
                "SrItemAtIndex has nothing at " + text(at) + " of " + text(shown));
        const auto programme = ask("PcGet", text(unsignedOf(item, 1)));
        require(booleanOf(programme, kResult), "PcGet does not know the programme that SrItemAtIndex gave");
        constexpr size_t kStart = 5;
        require(unsignedOf(programme, kStart) >= last, "the results are not in the order of MdsSetOrderBy");
        last = unsignedOf(programme, kStart);
    }
    require(!booleanOf(ask("SrItemAtIndex", results.id() + ", " + text(shown))),
            "SrItemAtIndex has something behind the window");
    ask("CancelSearch", search.id());
    return text(size) + " programmes, the first " + text(shown) + " in order";
}

std::string constraints(Session& session) {
    auto& middleware = session.middleware;
    Object search(session, "Mds", newSearch(middleware));
    Object plain(session, "Qc", anyProgramme(middleware));
    const auto made = middleware.ask(kInterface + "QcAddConstraints", "[(7, 0, '', 1)]");
    Object constrained(session, "Qc", unsignedOf(made));
    const auto added =
        middleware.ask(kInterface + "MdsAddConstraints", search.id() + ", " + constrained.id());
    require(booleanOf(added) && booleanOf(added, 1), "MdsAddConstraints refuses a query of QcAddConstraints");
    require(!booleanOf(middleware.ask(kInterface + "MdsAddConstraints", search.id() + ", " + plain.id())),
            "MdsAddConstraints takes a query that has no constraints");
    constrained.checkBalance();
    require(booleanOf(middleware.ask(kInterface + "MdsRemoveConstraints", search.id() + ", 7")),
            "MdsRemoveConstraints fails once the query is released: a search keeps what it needs");
    return "added, removed and released";
}

std::string junctions(Session& session) {
    auto& middleware = session.middleware;
    Object one(session, "Qc", anyProgramme(middleware));
    Object other(session, "Qc", unsignedOf(middleware.ask(kInterface + "QcAddDataModeStr", "1, 6, 'a'")));
    for (const std::string& method : std::vector<std::string>{"QcAnd", "QcOr", "QcNot"}) {
        const bool isNot = method == "QcNot";
        const std::string second = ", " + other.id();
        const auto reply = middleware.ask(kInterface + method, one.id() + (isNot ? "" : second));
        require(booleanOf(reply, 1), method + " refuses queries that exist");
        Object joint(session, "Qc", unsignedOf(reply));
        joint.checkBalance();
        require(!booleanOf(middleware.ask(kInterface + method, "4294967295" + (isNot ? "" : second)), 1),
                method + " takes a query that does not exist");
    }
    return "and, or, not";
}

std::string balance(Session& session) {
    auto& middleware = session.middleware;
    Object query(session, "Qc", anyProgramme(middleware));
    query.checkBalance();
    Object search(session, "Mds", newSearch(middleware));
    Object results(session, "Sr", resultsOf(middleware, search.id()));
    results.checkBalance();
    search.checkBalance();
    require(!booleanOf(middleware.ask(kInterface + "MdsSetQuery", search.id() + ", 0")),
            "MdsSetQuery knows the search that was released");
    return "queries, results and searches are gone when released as often as retained";
}

}  // namespace

void checkSearch(Session& session) {
    const std::vector<std::string> needs = {"IMetaDataSearch"};
    session.check(kGroup, "A search finds programmes", needs, [&] { return find(session); });
    session.check(kGroup, "Queries are joined", needs, [&] { return junctions(session); });
    session.check(kGroup, "Constraints are added and removed", needs, [&] { return constraints(session); });
    session.check(kGroup, "Retain and release balance", needs, [&] { return balance(session); });
}

}  // namespace Check
