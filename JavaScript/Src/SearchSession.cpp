#include "JavaScript/Src/SearchSession.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "InjectedBundle/Src/JSHbbTVEventHandler.h"
#include "JavaScript/Src/CChannelImpl.h"

namespace OipfJavaScript {

namespace {

constexpr char kEvent[] = "MetadataSearch";

// Windows are signed on the wire.
int ToWindow(uint32_t value) {
    return static_cast<int>(std::min<uint32_t>(value, std::numeric_limits<int>::max()));
}

}  // namespace

SearchSession::SearchSession(JSContextRef context, RetainedId<IMetadataSearchCacheWK> search,
                             std::shared_ptr<const SearchManagerLink> manager, const Patience& patience)
    : PageBound(context), m_manager(std::move(manager)), m_patience(patience), m_search(std::move(search)) {}

SearchSession::~SearchSession() {
    // A search that runs is pinned: it is finalised only when the whole engine goes away, its values with it.
    m_pin.Abandon();
    if (m_phase == Phase::Searching && m_search)
        IMetadataSearchManagerWK::GetInstance()->SendCancelSearch(m_search.Get());
    m_results.Release();
}

void SearchSession::OnPageLeft() {
    m_isLeft = true;
    m_question.Stop();
    m_delivery.Stop();
    m_pending.clear();
    if (m_phase == Phase::Searching && m_search)
        IMetadataSearchManagerWK::GetInstance()->SendCancelSearch(m_search.Get());
    m_phase = Phase::Idle;
    DropWindow();
    m_results.Release();
    m_search.Release();
    m_pin.Release();
}

bool SearchSession::Settle(Part part, bool isSet) {
    static const std::map<Part, const char*> kNames = {{kQuery, "the query"},
                                                       {kConstraints, "a constraint"},
                                                       {kOrder, "the order"},
                                                       {kBounds, "the number of results"}};
    m_refused = isSet ? m_refused & ~part : m_refused | part;
    if (!isSet)
        HBBTV_LOG_OBJECT(ERROR, "the receiver refused %s", kNames.at(part));
    return isSet;
}

bool SearchSession::PutQuery(uint32_t queryId) {
    ParametersChange();
    if (m_isBounded)
        SetBounds(std::nullopt);
    return m_search && IMetadataSearchCacheWK::GetInstance()->SetQuery(m_search.Get(), queryId);
}

bool SearchSession::SetQuery(uint32_t queryId) {
    // 0 would be none: one that is not kept, or that a receiver kept which is no more.
    const bool isSet = Settle(kQuery, queryId != 0 && PutQuery(queryId));
    m_hasQuery |= isSet;
    return isSet;
}

void SearchSession::AddConstraints(const TConstraints& constraints) {
    ParametersChange();
    if (!m_search || constraints.empty())
        return;
    const RetainedId<IQueryCacheWK> query(IQueryCacheWK::GetInstance()->Add(constraints));
    bool added = false;
    const bool isAsked =
        query && IMetadataSearchCacheWK::GetInstance()->AddConstraints(m_search.Get(), query.Get(), added);
    if (!isAsked || !added)
        Settle(kConstraints, false);
}

void SearchSession::RemoveConstraints(EQueryType type) {
    ParametersChange();
    if (m_search)
        Settle(kConstraints, IMetadataSearchCacheWK::GetInstance()->RemoveConstraints(m_search.Get(), type));
}

bool SearchSession::Replace(uint32_t queryId, const TConstraints& constraints, const TOrderBy& orderBy,
                            std::optional<uint32_t> most) {
    if (!m_search)
        return false;
    const bool isSet = SetQuery(queryId);
    SetTheRest(orderBy);
    AddConstraints(constraints);
    if (most)
        SetBounds(most);
    return isSet;
}

void SearchSession::SetTheRest(const TOrderBy& orderBy) {
    IMetadataSearchCacheCommon* const searches = IMetadataSearchCacheWK::GetInstance();
    Settle(kConstraints, searches->ClearConstraints(m_search.Get()));
    Settle(kOrder, searches->SetOrderBy(m_search.Get(), orderBy));
}

void SearchSession::SetBounds(std::optional<uint32_t> most) {
    if (!m_search)
        return;
    bool accepted = false;
    const int count = most ? ToWindow(*most) : std::numeric_limits<int>::max();
    m_isBounded = most.has_value();
    const bool isAsked =
        IMetadataSearchCacheWK::GetInstance()->SetQueryWindow(m_search.Get(), 0, count, accepted);
    Settle(kBounds, isAsked && accepted);
}

void SearchSession::Cancel() {
    if (m_search)
        IMetadataSearchManagerWK::GetInstance()->CancelSearch(m_search.Get());
}

void SearchSession::DropWindow() {
    m_length = m_offset = m_totalSize = 0;
    m_found.clear();
    m_ccids.clear();
}

void SearchSession::ParametersChange() {
    const Phase before = std::exchange(m_phase, Phase::Idle);
    if (before != Phase::Searching && before != Phase::Found)
        return;
    m_question.Stop();
    Cancel();
    DropWindow();
    FireLater(E_STATE_IDLE);
}

void SearchSession::GetResults(uint32_t offset, uint32_t count) {
    if (m_isLeft)
        return;
    DropWindow();
    uint32_t resultsId = 0;
    if (m_search && !m_results &&
        IMetadataSearchCacheWK::GetInstance()->GetResults(m_search.Get(), resultsId))
        m_results = RetainedId<ISearchResultsCacheWK>(resultsId);
    bool accepted = false;
    if (m_refused != 0 || !m_results ||
        !ISearchResultsCacheWK::GetInstance()->SetQueryWindow(m_results.Get(), ToWindow(offset),
                                                              ToWindow(count), accepted) ||
        !accepted) {
        Fail();
        return FireLater(E_STATE_FAILED);
    }
    const bool wasFound = m_phase == Phase::Found;
    if ((m_phase == Phase::Idle || m_phase == Phase::Failed) &&
        !IMetadataSearchManagerWK::GetInstance()->StartSearch(m_search.Get())) {
        Fail();
        return FireLater(E_STATE_FAILED);
    }
    m_phase = Phase::Searching;
    m_waited = 0;
    m_interval = m_patience.first;
    Pin();
    AskLater(wasFound ? 0 : m_interval);
}

void SearchSession::Abort() {
    if (!m_search)
        return;
    const Phase before = std::exchange(m_phase, Phase::Idle);
    const bool isHeard = before == Phase::Searching || before == Phase::Found;
    m_question.Stop();
    if (isHeard)
        IMetadataSearchManagerWK::GetInstance()->AbortSearch(m_search.Get());
    DropWindow();
    m_hasQuery = false;
    Settle(kQuery, PutQuery(0));
    SetTheRest({});
    if (isHeard)
        FireLater(E_STATE_IDLE);
}

void SearchSession::Fail() {
    m_question.Stop();
    if (m_phase == Phase::Searching)
        Cancel();
    m_phase = Phase::Failed;
    DropWindow();
}

void SearchSession::AskLater(unsigned milliseconds) {
    m_question.Start(milliseconds, [this, milliseconds] {
        m_waited += milliseconds;
        // A handler may drop the last object that holds this.
        const auto keep = shared_from_this();
        Ask();
        UnpinIfSettled();
    });
}

void SearchSession::Ask() {
    bool complete = false;
    if (!m_results || !ISearchResultsCacheWK::GetInstance()->QueryResults(m_results.Get(), complete, m_offset,
                                                                          m_length, m_totalSize)) {
        Fail();
        return FireLater(E_STATE_FAILED);
    }
    if (complete) {
        m_phase = Phase::Found;
        FirePending();
        // A handler of an earlier event may have asked for something else.
        if (m_phase == Phase::Found && !m_question.IsRunning())
            Fire(E_STATE_FINISHED);
        return;
    }
    DropWindow();
    if (m_waited >= m_patience.limit) {
        HBBTV_LOG_OBJECT(ERROR, "the search did not end within %u ms", m_patience.limit);
        Fail();
        return FireLater(E_STATE_FAILED);
    }
    m_interval = std::min(m_interval * 2, m_patience.longest);
    AskLater(m_interval);
}

void SearchSession::FireLater(EState state) {
    Pin();
    m_pending.push_back(state);
    if (m_delivery.IsRunning())
        return;
    m_delivery.Start(0, [this] {
        const auto keep = shared_from_this();
        FirePending();
        UnpinIfSettled();
    });
}

void SearchSession::FirePending() {
    m_delivery.Stop();
    // What a handler adds comes later.
    for (const EState state : std::exchange(m_pending, {}))
        Fire(state);
}

void SearchSession::Fire(EState state) {
    JSHbbTVEventHandler* const manager = m_manager->manager;
    JSContextRef context = manager != nullptr && m_pin ? manager->ContextFor(kEvent) : nullptr;
    HBBTV_LOG_OBJECT(INFO, "search %u: state %d%s", m_search.Get(), state,
                     context != nullptr ? "" : ", unheard");
    if (context != nullptr) {
        manager->DispatchEvent(kEvent, "search", m_pin.Get(), "state", JSValueMakeNumber(context, state),
                               nullptr);
    }
}

void SearchSession::Pin() {
    if (!m_pin)
        m_pin = ProtectedValue(PageContext(), m_pageObject);
}

void SearchSession::UnpinIfSettled() {
    if (!m_question.IsRunning() && !m_delivery.IsRunning())
        m_pin.Release();
}

const SearchSession::Found* SearchSession::At(uint32_t index) {
    const auto known = m_found.find(index);
    if (known != m_found.end())
        return &known->second;
    bool isThere = false;
    uint32_t programmeId = 0;
    Found found;
    uint32_t eventId = 0;
    uint32_t rating = 0;
    if (!ISearchResultsCacheWK::GetInstance()->ItemAtIndex(m_results.Get(), index, isThere, programmeId) ||
        !isThere ||
        !IProgrammeCacheWK::GetInstance()->Get(programmeId, &found.channelId, &eventId, &found.info.name,
                                               &found.info.description, &found.info.programmeId,
                                               &found.info.startTime, &found.info.duration, &rating))
        return nullptr;
    found.info.eventId = static_cast<int32_t>(eventId);
    found.info.parentalRating = static_cast<uint8_t>(std::min<uint32_t>(rating, UINT8_MAX));
    found.ccid = CcidOf(found.channelId);
    return &m_found.emplace(index, std::move(found)).first->second;
}

const std::string& SearchSession::CcidOf(uint32_t channelId) {
    const auto [entry, isNew] = m_ccids.try_emplace(channelId, CChannelImpl::kNoCcid);
    if (isNew) {
        IJSChannelCacheWK::GetInstance()->GetChannelInfo(
            channelId, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
            &entry->second, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    }
    return entry->second;
}

}  // namespace OipfJavaScript
