#include "JavaScript/Src/CMetadataSearchImpl.h"

#include <array>
#include <ctime>
#include <string_view>
#include <utility>
#include <vector>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "InjectedBundle/gen/js/jiChannelList.h"
#include "InjectedBundle/gen/js/jiQuery.h"
#include "InjectedBundle/gen/js/jiSearchResults.h"
#include "JavaScript/Src/CChannelImpl.h"
#include "JavaScript/Src/CChannelListImpl.h"
#include "JavaScript/Src/CQueryImpl.h"
#include "JavaScript/Src/CSearchResultsImpl.h"
#include "Platform/Inc/JSCPrivate.h"

namespace OipfJavaScript {

namespace {

using namespace std::string_view_literals;

constexpr std::array<std::pair<std::string_view, EQueryType>, 12> kFields = {{
    {"Programme.name"sv, E_QUERY_NAME},
    {"Programme.longName"sv, E_QUERY_LONG_NAME},
    {"Programme.description"sv, E_QUERY_DESCRIPTION},
    {"Programme.longDescription"sv, E_QUERY_LONG_DESCRIPTION},
    {"Programme.startTime"sv, E_QUERY_START_TIME},
    {"Programme.duration"sv, E_QUERY_DURATION},
    {"Programme.channelID"sv, E_QUERY_CHANNEL_ID},
    {"Programme.episode"sv, E_QUERY_EPISODE},
    {"Programme.totalEpisodes"sv, E_QUERY_TOTAL_EPISODES},
    {"Programme.programmeID"sv, E_QUERY_PROGRAMME_ID},
    {"Programme.programmeIDType"sv, E_QUERY_PROGRAMME_ID_TYPE},
    {"Programme.parentalRating"sv, E_QUERY_PARENTAL_RATING},
}};

std::optional<EQueryType> FieldOf(std::string_view name) {
    for (const auto& [known, type] : kFields) {
        if (name == known)
            return type;
    }
    return std::nullopt;
}

// What belongs to the search's object, out of scripts' sight but not out of the collector's.
JSStringRef ResultKey() {
    static const auto* const key = new JSStringHandle("result");
    return key->Get();
}

JSStringRef QueryKey() {
    static const auto* const key = new JSStringHandle("query");
    return key->Get();
}

// The search of a page's results: as long as those can be used, an event can name it.
JSStringRef SearchKey() {
    static const auto* const key = new JSStringHandle("search");
    return key->Get();
}

TConstraints OnChannels(const std::vector<uint32_t>& ids) {
    TConstraints constraints;
    // A channel that the receiver does not know has the number 0, which no programme's channel has.
    for (const uint32_t id : ids)
        constraints.emplace(E_QUERY_CHANNEL_ID, id);
    return constraints;
}

// The television's time, where it has one.
uint32_t Now() {
    unsigned long utc = 0;
    int offset = 0;
    if (!CDAEBrowserAPIWK::GetInstance()->GetTime(utc, offset))
        utc = static_cast<unsigned long>(std::time(nullptr));
    return static_cast<uint32_t>(utc);
}

}  // namespace

JSValueRef CMetadataSearchImpl::getCustomResult(JSContextRef context, JSObjectRef search) const {
    if (const JSValueRef known = JSObjectGetPrivateProperty(context, search, ResultKey()))
        return known;
    JSObjectRef results = MakeObject<jiSearchResults>(context, m_session);
    JSObjectSetPrivateProperty(context, results, SearchKey(), search);
    JSObjectSetPrivateProperty(context, search, ResultKey(), results);
    return results;
}

JSValueRef CMetadataSearchImpl::getCustomQuery(JSContextRef context, JSObjectRef search) const {
    return m_session->HasQuery() ? JSObjectGetPrivateProperty(context, search, QueryKey()) : nullptr;
}

JSValueRef CMetadataSearchImpl::customSetQuery(const CallArguments& call) {
    if (call.count != 1 || !JSValueIsObject(call.context, call.values[0]))
        return Call::RefuseArguments(jiMetadataSearch::ID, "t_SetQuery", call);
    const jiQuery* query = jiQuery::FromJS("t_SetQuery", call.context, call.values[0]);
    if (query == nullptr)
        return JSValueMakeNull(call.context);
    if (m_session->SetQuery(query->Implementation().Id()))
        JSObjectSetPrivateProperty(call.context, call.thisObject, QueryKey(), call.values[0]);
    return JSValueMakeUndefined(call.context);
}

void CMetadataSearchImpl::AddChannelConstraint(jiChannelList* channels) {
    m_session->AddConstraints(OnChannels(channels->Implementation().CacheIds()));
}

void CMetadataSearchImpl::AddChannelConstraint(std::optional<jiChannel*> channel) {
    if (channel)
        m_session->AddConstraints(OnChannels({(*channel)->Implementation().CacheId()}));
    else
        m_session->RemoveConstraints(E_QUERY_CHANNEL_ID);
}

template <typename Operand>
std::unique_ptr<jiQuery> CMetadataSearchImpl::Create(JSContextRef context, const std::string& field,
                                                     int32_t comparison, const Operand& value) {
    const std::optional<EQueryType> type = FieldOf(field);
    if (type && comparison >= 0 && comparison <= static_cast<int32_t>(E_MODE_CONTAINS)) {
        RetainedId<IQueryCacheWK> query(
            IQueryCacheWK::GetInstance()->Add(*type, static_cast<EQueryMode>(comparison), value));
        if (query)
            return MakeBinding<jiQuery>(context, std::move(query));
    }
    HBBTV_LOG_OBJECT(WARNING, "no query of %s by %d", field.c_str(), comparison);
    return nullptr;
}

std::unique_ptr<jiQuery> CMetadataSearchImpl::CreateQuery(JSContextRef context, const std::string& field,
                                                          int32_t comparison, const std::string& value) {
    return Create(context, field, comparison, value);
}

std::unique_ptr<jiQuery> CMetadataSearchImpl::CreateQuery(JSContextRef context, const std::string& field,
                                                          int32_t comparison, uint32_t value) {
    return Create(context, field, comparison, value);
}

void CMetadataSearchImpl::FindProgrammesFromStream(JSContextRef context, jiChannel* channel,
                                                   std::optional<uint32_t> startTime,
                                                   std::optional<uint32_t> count) {
    // What is on at that time has begun before it.
    RetainedId<IQueryCacheWK> query(
        IQueryCacheWK::GetInstance()->Add(E_QUERY_END_TIME, E_MODE_GREATER, startTime ? *startTime : Now()));
    // From here on as one that a page has set.
    if (m_session->Replace(query.Get(), OnChannels({channel->Implementation().CacheId()}),
                           {{E_QUERY_START_TIME, true}}, count))
        JSObjectSetPrivateProperty(context, m_session->PageObject(), QueryKey(),
                                   MakeObject<jiQuery>(context, context, std::move(query)));
}

}  // namespace OipfJavaScript
