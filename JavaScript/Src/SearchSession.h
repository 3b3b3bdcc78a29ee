// One search at the receiver, behind a MetadataSearch and its SearchResults: its state, what was found, and
// the events that tell of it.
//
// The receiver does not tell when a search has ended, so it is asked, more and more rarely, from the main
// loop; only while a search runs. As long as it runs, or an event of it is on its way, the page's
// MetadataSearch object is kept, for the event names it. That ends with the page at the latest.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "API/Src/IProgrammeCollection.h"
#include "API/Src/MetadataQuery.h"
#include "IPC/DBUS/Src/MetadataSearchWK_DBus.h"
#include "InjectedBundle/Src/JSHandles.h"
#include "InjectedBundle/Src/MainLoopTimer.h"
#include "InjectedBundle/Src/PageBound.h"
#include "JavaScript/Src/RetainedId.h"

namespace OipfJavaScript {

class JSHbbTVEventHandler;

// The search manager as its searches know it: null once it is gone.
struct SearchManagerLink {
    JSHbbTVEventHandler* manager = nullptr;
};

class SearchSession final : public std::enable_shared_from_this<SearchSession>, private PageBound {
 public:
    // As pages see it.
    enum EState : int32_t { E_STATE_FINISHED = 0, E_STATE_IDLE = 3, E_STATE_FAILED = 4 };

    // How long a running search is waited for, in milliseconds.
    struct Patience {
        unsigned first = 1;       // before the receiver is asked for the first time
        unsigned longest = 500;   // between two questions, which come half as often each time
        unsigned limit = 60'000;  // altogether; then the search has failed
    };

    struct Found {
        TCProgramInfo info;
        uint32_t channelId = 0;
        std::string ccid;
    };

    SearchSession(JSContextRef context, RetainedId<IMetadataSearchCacheWK> search,
                  std::shared_ptr<const SearchManagerLink> manager, const Patience& patience);
    // Runs in finalisers: calls nothing of the engine.
    ~SearchSession() override;

    // Of the search's MetadataSearch, whose methods, and those of its results, are the only callers from here
    // on.
    void SetPageObject(JSObjectRef search) { m_pageObject = search; }
    [[nodiscard]] JSObjectRef PageObject() const { return m_pageObject; }

    // Each drops what was found or is being looked for, which is an event. What the receiver refuses makes
    // GetResults fail until it is set: a search never finds something else than what was asked for.
    bool SetQuery(uint32_t queryId);
    [[nodiscard]] bool HasQuery() const { return m_hasQuery; }
    // Those on one field are alternatives.
    void AddConstraints(const TConstraints& constraints);
    void RemoveConstraints(EQueryType type);
    // Instead of all that was set: the query alone, by the order, and at most so many.
    bool Replace(uint32_t queryId, const TConstraints& constraints, const TOrderBy& orderBy,
                 std::optional<uint32_t> most);

    // Fetches a part of the results; the search is started where it has not been.
    void GetResults(uint32_t offset, uint32_t count);
    // Stops, and takes away all that was set.
    void Abort();

    // The part that was fetched; empty until then.
    [[nodiscard]] uint32_t Length() const { return m_length; }
    [[nodiscard]] uint32_t Offset() const { return m_offset; }
    [[nodiscard]] uint32_t TotalSize() const { return m_totalSize; }
    // Null when the receiver has no such programme any more. Good until the next call.
    [[nodiscard]] const Found* At(uint32_t index);

 private:
    enum class Phase { Idle, Searching, Found, Failed };
    enum Part : unsigned { kQuery = 1, kConstraints = 2, kOrder = 4, kBounds = 8 };

    void OnPageLeft() override;
    // Remembers whether the receiver has that part as it was asked for. Gives the answer back.
    bool Settle(Part part, bool isSet);
    bool PutQuery(uint32_t queryId);
    // No constraints, and this order.
    void SetTheRest(const TOrderBy& orderBy);
    void SetBounds(std::optional<uint32_t> most);
    void Cancel();
    void DropWindow();
    void ParametersChange();
    void Fail();
    void FireLater(EState state);
    void FirePending();
    void Fire(EState state);
    void AskLater(unsigned milliseconds);
    void Ask();
    void Pin();
    void UnpinIfSettled();
    [[nodiscard]] const std::string& CcidOf(uint32_t channelId);

    const std::shared_ptr<const SearchManagerLink> m_manager;
    const Patience m_patience;
    RetainedId<IMetadataSearchCacheWK> m_search;
    RetainedId<ISearchResultsCacheWK> m_results;
    JSObjectRef m_pageObject = nullptr;
    ProtectedValue m_pin;

    Phase m_phase = Phase::Idle;
    bool m_isLeft = false;
    unsigned m_refused = 0;  // parts
    bool m_hasQuery = false;
    bool m_isBounded = false;
    MainLoopTimer m_question;
    unsigned m_interval = 0;
    unsigned m_waited = 0;
    MainLoopTimer m_delivery;
    std::deque<EState> m_pending;

    uint32_t m_length = 0;
    uint32_t m_offset = 0;
    uint32_t m_totalSize = 0;
    std::map<uint32_t, Found> m_found;        // what was read of the window, by index
    std::map<uint32_t, std::string> m_ccids;  // by the channel's identifier in the channel cache
};

}  // namespace OipfJavaScript
